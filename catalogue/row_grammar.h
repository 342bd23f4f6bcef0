#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ko_file.h"

// The grammar of one row of a catalogue file. Nothing here prints or keeps anything; what is
// returned as a std::string_view lies in the row that was given. Any thread.

// Titles and keys must be shorter than this, in bytes; a value with its "=" too.
constexpr std::size_t kConfigTextSize = 256;

constexpr bool IsConfigBlank(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// Removes blanks, tabs, line feeds, vertical tabs, form feeds and carriage returns from both ends.
constexpr std::string_view TrimConfigText(std::string_view text) {
    while (!text.empty() && IsConfigBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsConfigBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The text as it counts: trimmed, and up to a NUL byte, at which everything ends that is later
// printed or compared with typed words.
constexpr std::string_view ConfigText(std::string_view text) {
    return TrimConfigText(text.substr(0, text.find('\0')));
}

// True when the row, trimmed, begins with "[" and ends with "]". It is a title when it is also
// shorter than kConfigTextSize.
constexpr bool IsInBrackets(std::string_view row) {
    // Tells nearly all rows apart: a large catalogue asks this for hundreds of thousands.
    if (!row.empty() && row.front() != '[' && !IsConfigBlank(row.front())) {
        return false;
    }
    const std::string_view text = ConfigText(row);
    return text.size() >= 2 && text.front() == '[' && text.back() == ']';
}

// The block's name: the text between the brackets of a row that has them.
constexpr std::string_view TitleName(std::string_view row) {
    const std::string_view text = ConfigText(row);
    return text.substr(1, text.size() - 2);
}

// A row cut at its first "=".
struct RowParts {
    std::size_t keyLength;    // bytes of the raw key; npos when the row has no "="
    std::size_t valueLength;  // bytes of the raw value and its "="
    std::string_view key;     // both as they count
    std::string_view value;

    bool HasKey() const { return keyLength != std::string_view::npos; }
    bool KeyFits() const { return keyLength < kConfigTextSize; }
    bool ValueFits() const { return valueLength < kConfigTextSize; }
};

// `rest` is what the row has after the bytes that are given: it counts for the lengths alone.
constexpr RowParts CutRow(std::string_view row, const KoFile::RowRest& rest = {}) {
    const std::size_t equals = row.find('=');
    if (equals == std::string_view::npos) {
        return rest.equals == std::string_view::npos
                   ? RowParts{equals, 0, {}, {}}
                   : RowParts{row.size() + rest.equals, rest.size - rest.equals, {}, {}};
    }
    // Looked for once in the whole row: hardly any has a NUL byte.
    const bool hasNul = row.find('\0') != std::string_view::npos;
    const auto counting = [hasNul](std::string_view text) {
        return hasNul ? ConfigText(text) : TrimConfigText(text);
    };
    return {equals, row.size() + rest.size - equals, counting(row.substr(0, equals)),
            counting(row.substr(equals + 1))};
}

// True when the key of the row, which is within its limit, counts as the key word. A key that is a
// leading part of the key word and has no white space around it counts too: the comparison is
// bounded by the raw length, and white space leaves room for the end of the text to be compared.
constexpr bool KeyMatches(std::string_view keyWord, const RowParts& row) {
    return row.key == keyWord.substr(0, row.keyLength);
}

// A hexadecimal number with optional sign and "0x", clamped to 32 bits.
struct HexNumber {
    std::int32_t value;      // 0 when there is no digit
    std::size_t usedLength;  // characters converted; 0 when there is no digit
    bool clamped;
};
HexNumber ParseHexNumber(const std::string& text);
