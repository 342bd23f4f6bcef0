#include <cstdint>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>

#include "platform/string16.h"

// Prints what random texts convert to in either direction, a row for each, the same texts in every
// build: a build with Android's own strings judges the one with ours.

namespace {

std::mt19937 g_random(20'240'229);  // its numbers are the same everywhere

std::uint32_t Below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(g_random()) % limit;
}

// A number of any width, so that small ones and the ends of the ranges are as frequent as others.
std::uint32_t Point() {
    static constexpr std::uint32_t kEdges[] = {0,      0x7F,    0x80,     0x7FF,   0x800,  0xD7FF,
                                               0xD800, 0xDBFF,  0xDC00,   0xDFFF,  0xE000, 0xFFFD,
                                               0xFFFF, 0x10000, 0x10FFFF, 0x110000};
    return Below(3) == 0 ? kEdges[Below(std::size(kEdges))] : Below(2U << Below(21));
}

// Well-formed but for surrogates; or with sequences of a wrong length, stray and missing bytes.
std::string Text() {
    static constexpr std::uint32_t kMarks[] = {0, 0xC0, 0xE0, 0xF0};
    const bool faults = Below(2) == 0;
    std::string text;
    for (std::uint32_t count = Below(12); count > 0; --count) {
        const std::uint32_t point = Point();
        unsigned bytes = point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
        bytes = faults && Below(4) == 0 ? 1 + Below(4) : bytes;
        text += static_cast<char>(kMarks[bytes - 1] | (point >> (6 * (bytes - 1))));
        for (unsigned i = bytes - 1; i-- > 0;) {
            text += static_cast<char>(0x80 | ((point >> (6 * i)) & 0x3F));
        }
        if (faults && Below(4) == 0) {
            text.back() = static_cast<char>(Below(256));
        }
    }
    return text.substr(0, text.size() - (faults && !text.empty() ? Below(2) : 0));
}

template <typename Text>
void PrintHex(const Text& text, const char* end) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::printf("%x ", static_cast<unsigned>(text.string()[i]) & 0xFFFFU);
    }
    std::printf("%s", end);
}

}  // namespace

int main() {
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = Text();
        PrintHex(android::String16(text.data(), text.size()), "| ");
        std::u16string units(Below(12), u'\0');
        for (char16_t& unit : units) {
            unit = static_cast<char16_t>(Below(4) == 0 ? 0xD800 + Below(0x800) : Point());
        }
        PrintHex(android::String8(android::String16(units.data(), units.size())), "\n");
    }
    return 0;
}
