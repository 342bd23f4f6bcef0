#include <cstdint>
#include <cstdio>
#include <iterator>
#include <random>
#include <type_traits>
#include <vector>

#include "platform/string16.h"

// Prints what random texts convert to in either direction, a row for each, the same texts in every
// build: a build with Android's own strings judges the one with ours.

namespace {

constexpr int kTexts = 100'000;
constexpr unsigned kLongest = 12;

std::mt19937 g_random(20'240'229);  // its numbers are the same everywhere

std::uint32_t Below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(g_random()) % limit;
}

// A number of any width, so that small ones and the ends of the ranges are as frequent as others.
std::uint32_t Point() {
    static constexpr std::uint32_t kEdges[] = {0x7F,   0x80,   0x7FF,  0x800,  0xD7FF,   0xD800,
                                               0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF,   0x10000,
                                               0,      0xFFFD, 0x3FFF, 0x4000, 0x10FFFF, 0x110000};
    return Below(3) == 0 ? kEdges[Below(std::size(kEdges))] : Below(2U << Below(21));
}

// The number in so many bytes, of which the encoding may need fewer or more.
void AppendSequence(std::vector<char>& text, std::uint32_t point, unsigned bytes) {
    static constexpr std::uint32_t kMarks[] = {0, 0xC0, 0xE0, 0xF0};
    text.push_back(static_cast<char>(kMarks[bytes - 1] | (point >> (6 * (bytes - 1)))));
    for (unsigned i = bytes - 1; i-- > 0;) {
        text.push_back(static_cast<char>(0x80 | ((point >> (6 * i)) & 0x3F)));
    }
}

// Well-formed but for surrogates, or with any fault: sequences of a wrong length, stray and missing
// bytes.
std::vector<char> Text() {
    const std::uint32_t faults = Below(3);
    std::vector<char> text;
    for (std::uint32_t count = Below(kLongest); count > 0; --count) {
        const std::uint32_t point = Point();
        const unsigned bytes = point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
        AppendSequence(text, point, faults > 1 && Below(4) == 0 ? 1 + Below(4) : bytes);
        if (faults > 0 && Below(4) == 0) {
            text.pop_back();
        }
        if (faults > 1 && Below(4) == 0) {
            text.push_back(static_cast<char>(Below(256)));
        }
    }
    return text;
}

std::vector<char16_t> Units() {
    std::vector<char16_t> units;
    for (std::uint32_t count = Below(kLongest); count > 0; --count) {
        const std::uint32_t point = Point();
        if (point > 0xFFFF) {
            units.push_back(static_cast<char16_t>(0xD800 | (Below(0x400))));
            units.push_back(static_cast<char16_t>(0xDC00 | (point & 0x3FF)));
        } else {
            units.push_back(static_cast<char16_t>(point));
        }
    }
    return units;
}

template <typename Unit>
void PrintHex(const char* label, const Unit* units, std::size_t count) {
    std::printf("%s", label);
    for (std::size_t i = 0; i < count; ++i) {
        std::printf(" %x", static_cast<std::make_unsigned_t<Unit>>(units[i]));
    }
}

}  // namespace

int main() {
    for (int i = 0; i < kTexts; ++i) {
        const std::vector<char> text = Text();
        const android::String16 wide(text.data(), text.size());
        PrintHex("text", text.data(), text.size());
        PrintHex(" ->", wide.string(), wide.size());
        const std::vector<char16_t> units = Units();
        const android::String8 narrow(android::String16(units.data(), units.size()));
        PrintHex("\nunits", units.data(), units.size());
        PrintHex(" ->", narrow.string(), narrow.size());
        std::printf("\n");
    }
    return 0;
}
