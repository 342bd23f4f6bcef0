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

}  // namespace

std::string_view TrimConfigText(std::string_view text) {
    while (!text.empty() && IsWhiteSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
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

bool KeyMatches(std::string_view keyWord, std::string_view rawKey) {
    // Tells most rows apart at once: a large catalogue asks this millions of times.
    if (!rawKey.empty() && rawKey.front() != keyWord.front() && !IsWhiteSpace(rawKey.front())) {
        return false;
    }
    // The comparison is bounded by the raw length: white space around the key leaves room for the
    // end of the text to be compared too, so only a key without any may be shorter than the key
    // word.
    const std::string_view key = TrimConfigText(UpToNul(rawKey));
    return key == (key.size() < rawKey.size() ? keyWord : keyWord.substr(0, rawKey.size()));
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
