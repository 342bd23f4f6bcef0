#include "platform/string16.h"

#include <algorithm>
#include <string_view>

namespace android {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// What the first byte of a UTF-8 sequence tells: how many bytes follow, and the range that the
// second one must lie in so that the code point is neither overlong, nor a surrogate, nor beyond
// U+10FFFF.
struct LeadByte {
    unsigned char first;
    unsigned char last;
    int following;
    unsigned char secondMin;
    unsigned char secondMax;
};

constexpr LeadByte kLeadBytes[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

// Decodes the code point at `position` and moves behind it; an ill-formed sequence is consumed up
// to the byte that breaks it and gives one replacement character.
char32_t DecodeUtf8(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) {
        return lead;
    }
    const auto* row = std::find_if(std::begin(kLeadBytes), std::end(kLeadBytes),
                                   [lead](auto& r) { return lead >= r.first && lead <= r.last; });
    if (row == std::end(kLeadBytes)) {
        return kReplacement;
    }
    char32_t point = lead & (0x3FU >> row->following);
    for (int i = 0; i < row->following; ++i) {
        const unsigned char low = i == 0 ? row->secondMin : 0x80;
        const unsigned char high = i == 0 ? row->secondMax : 0xBF;
        if (position >= text.size()) {
            return kReplacement;
        }
        const auto next = static_cast<unsigned char>(text[position]);
        if (next < low || next > high) {
            return kReplacement;
        }
        point = (point << 6) | (next & 0x3FU);
        ++position;
    }
    return point;
}

void AppendUtf8(std::string& out, char32_t point) {
    if (point < 0x80) {
        out += static_cast<char>(point);
        return;
    }
    const int following = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    const unsigned leadMark = 0xF0U << (3 - following);
    out += static_cast<char>((leadMark | (point >> (6 * following))) & 0xFFU);
    for (int i = following - 1; i >= 0; --i) {
        out += static_cast<char>(0x80U | ((point >> (6 * i)) & 0x3FU));
    }
}

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

String16::String16(const char* utf8, std::size_t length) {
    const std::string_view text(utf8, length);
    m_units.reserve(length);
    for (std::size_t position = 0; position < text.size();) {
        const char32_t point = DecodeUtf8(text, position);
        if (point < 0x10000) {
            m_units += static_cast<char16_t>(point);
        } else {
            m_units += static_cast<char16_t>(0xD7C0 + (point >> 10));
            m_units += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
        }
    }
}

String8::String8(const String16& utf16) {
    const std::u16string_view units(utf16.string(), utf16.size());
    m_text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t point = units[i];
        if (IsHighSurrogate(point) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (units[++i] - 0xDC00U);
        } else if (IsHighSurrogate(point) || IsLowSurrogate(point)) {
            point = kReplacement;
        }
        AppendUtf8(m_text, point);
    }
}

}  // namespace android
