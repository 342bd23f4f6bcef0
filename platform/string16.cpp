#include "platform/string16.h"

#include <string_view>

// Android 10 and 14 agree on every result.
namespace android {
namespace {

// A byte inside a sequence counts as a sequence of its own where one begins with it.
std::size_t SequenceLength(unsigned char first) {
    if (first < 0xC0) {
        return 1;
    }
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// The whole byte for a sequence of one, which may be no ASCII.
char32_t DecodeSequence(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence.front());
    if (sequence.size() == 1) {
        return first;
    }
    char32_t point = first & (0x7FU >> sequence.size());
    for (const char byte : sequence.substr(1)) {
        point = (point << 6) | (static_cast<unsigned char>(byte) & 0x3FU);
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
    std::string_view text(utf8, length);
    m_units.reserve(length);
    while (!text.empty()) {
        const std::size_t size = SequenceLength(static_cast<unsigned char>(text.front()));
        if (size > text.size()) {
            m_units.clear();
            return;
        }
        const char32_t point = DecodeSequence(text.substr(0, size));
        text.remove_prefix(size);
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
            continue;
        }
        AppendUtf8(m_text, point);
    }
}

}  // namespace android
