#include "format/utf8.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// What the first byte of a sequence tells: how many bytes follow, and the range of the second one
// in which the character is neither overlong, nor a surrogate, nor over U+10FFFF.
struct LeadByte {
    unsigned char first;
    unsigned char last;
    std::size_t following;
    unsigned char secondMin;
    unsigned char secondMax;
};

constexpr LeadByte kLeadBytes[] = {
    {0x00, 0x7F, 0, 0x00, 0x00}, {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

bool IsBetween(char byte, unsigned char low, unsigned char high) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= low && code <= high;
}

// The bytes after the first that belong to the row's sequence.
std::size_t Following(std::string_view text, const LeadByte& row) {
    std::size_t count = 0;
    while (count < row.following && count + 1 < text.size() &&
           IsBetween(text[count + 1], count == 0 ? row.secondMin : 0x80,
                     count == 0 ? row.secondMax : 0xBF)) {
        ++count;
    }
    return count;
}

}  // namespace

std::string_view TakeUtf8(std::string_view& text) {
    const auto* row = std::find_if(std::begin(kLeadBytes), std::end(kLeadBytes), [&](auto& r) {
        return IsBetween(text.front(), r.first, r.last);
    });
    const bool known = row != std::end(kLeadBytes);
    const std::size_t following = known ? Following(text, *row) : 0;
    const std::string_view taken = text.substr(0, 1 + following);
    text.remove_prefix(taken.size());
    return known && following == row->following ? taken : kReplacement;
}

std::string ValidUtf8(std::string_view text) {
    std::string valid;
    while (!text.empty()) {
        valid += TakeUtf8(text);
    }
    return valid;
}
