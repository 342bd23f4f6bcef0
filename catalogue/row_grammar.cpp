#include "catalogue/row_grammar.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace {

bool IsWhiteSpace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// Texts end at a NUL byte, as everything that is later printed or compared with typed words does.
std::string_view UpToNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

std::string_view TrimStart(std::string_view text) {
    while (!text.empty() && IsWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

std::string_view TrimEnd(std::string_view text) {
    while (!text.empty() && IsWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace

std::string_view TrimConfigText(std::string_view text) {
    return TrimEnd(TrimStart(text));
}

bool IsInBrackets(std::string_view row) {
    // Nearly every row is told apart by its first byte.
    const std::string_view text = TrimStart(row);
    if (text.empty() || text.front() != '[') {
        return false;
    }
    const std::string_view whole = TrimEnd(UpToNul(text));
    return whole.size() >= 2 && whole.back() == ']';
}

std::string_view TitleName(std::string_view row) {
    const std::string_view text = TrimConfigText(UpToNul(row));
    return text.substr(1, text.size() - 2);
}

RowParts CutRow(std::string_view row) {
    const std::size_t equals = row.find('=');
    if (equals == std::string_view::npos) {
        return {equals, 0, {}, {}};
    }
    return {equals, row.size() - equals, TrimConfigText(UpToNul(row.substr(0, equals))),
            TrimConfigText(UpToNul(row.substr(equals + 1)))};
}

bool KeyMatches(std::string_view keyWord, const RowParts& row) {
    // The comparison is bounded by the raw length: white space around the key leaves room for the
    // end of the text to be compared too, so only a key without any may be shorter than the key
    // word.
    const bool mayBeShort = row.key.size() == row.keyLength;
    return row.key == (mayBeShort ? keyWord.substr(0, row.keyLength) : keyWord);
}

HexNumber ParseHexNumber(const std::string& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    char* end = nullptr;
    errno = 0;
    // The range is cut twice: by strtol where long has 32 bits, by the clamp where it has 64.
    const long value = std::strtol(text.c_str(), &end, 16);
    const long clampedValue = std::clamp<long>(value, Limits::min(), Limits::max());
    HexNumber number = {};
    number.value = static_cast<std::int32_t>(clampedValue);
    number.usedLength = static_cast<std::size_t>(end - text.c_str());
    number.clamped = errno == ERANGE || clampedValue != value;
    return number;
}
