#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The grammar of one row of a catalogue file. Nothing here prints or keeps anything; what is
// returned as a std::string_view lies in the row that was given. Any thread.

// Titles and keys must be shorter than this, in bytes; a value with its "=" too.
constexpr std::size_t kConfigTextSize = 256;

// Removes blanks, tabs, line feeds, vertical tabs, form feeds and carriage returns from both ends.
std::string_view TrimConfigText(std::string_view text);

// True when the row, trimmed, begins with "[" and ends with "]". It is a title when it is also
// shorter than kConfigTextSize.
bool IsInBrackets(std::string_view row);

// The block's name: what stands between the brackets of a row that has them.
std::string_view TitleName(std::string_view row);

// A row cut at its first "=".
struct RowParts {
    std::size_t keyLength;    // bytes of the raw key; npos when the row has no "="
    std::size_t valueLength;  // bytes of the raw value and its "="
    std::string_view key;     // trimmed and up to a NUL byte, as the value is
    std::string_view value;

    bool HasKey() const { return keyLength != std::string_view::npos; }
    bool KeyFits() const { return keyLength < kConfigTextSize; }
    bool ValueFits() const { return valueLength < kConfigTextSize; }
};
RowParts CutRow(std::string_view row);

// True when the key of the row, which is within its limit, counts as the key word. A key that is a
// leading part of the key word and has no white space around it counts too.
bool KeyMatches(std::string_view keyWord, const RowParts& row);

// A hexadecimal number with optional sign and "0x", clamped to 32 bits.
struct HexNumber {
    std::int32_t value;      // 0 when there is no digit
    std::size_t usedLength;  // characters converted; 0 when there is no digit
    bool clamped;
};
HexNumber ParseHexNumber(const std::string& text);
