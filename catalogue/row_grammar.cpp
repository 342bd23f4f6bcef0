#include "catalogue/row_grammar.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

// Texts end at a NUL byte, as everything that is later printed or compared with typed words does.
std::string_view UpToNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

}  // namespace

std::string_view TrimConfigText(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool IsTitleRow(std::string_view row) {
    if (row.size() >= kConfigTextSize) {
        return false;
    }
    const std::string_view text = TrimConfigText(UpToNul(row));
    return text.size() >= 2 && text.front() == '[' && text.back() == ']';
}

std::string_view TitleName(std::string_view row) {
    const std::string_view text = TrimConfigText(UpToNul(row));
    return text.substr(1, text.size() - 2);
}

std::size_t RawKeyLength(std::string_view row) {
    return row.find('=');
}

bool KeyMatches(std::string_view keyWord, std::string_view row) {
    const std::size_t length = RawKeyLength(row);
    if (length >= kConfigTextSize) {
        return false;
    }
    // The comparison is bounded by the raw length: white space around the key leaves room for the
    // end of the text to be compared too, so only a key without any may be shorter than the key
    // word.
    const std::string_view key = TrimConfigText(UpToNul(row.substr(0, length)));
    return key.size() < length ? key == keyWord : key == keyWord.substr(0, length);
}

std::size_t RawValueLength(std::string_view row) {
    return row.size() - RawKeyLength(row);
}

std::string_view RowValue(std::string_view row) {
    if (RawValueLength(row) >= kConfigTextSize) {
        return {};
    }
    return TrimConfigText(UpToNul(row.substr(RawKeyLength(row) + 1)));
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
