#include <cstring>

#include "platform/string16.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// Well-formed by the shortest-form rule, told independently of the decoder under test: the code
// point is put together without any table, and its length and range are looked at afterwards.
bool IsUtf8(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80       ? 1
                                   : lead >> 5 == 6  ? 2
                                   : lead >> 4 == 14 ? 3
                                   : lead >> 3 == 30 ? 4
                                                     : 0;
        if (length == 0 || length > text.size() - i) {
            return false;
        }
        std::uint32_t point = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if (next >> 6 != 2) {
                return false;
            }
            point = point << 6 | (next & 0x3FU);
        }
        const std::size_t shortest = point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
        if (shortest != length || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) {
            return false;
        }
        i += length;
    }
    return true;
}

}  // namespace

// Parts: the input is taken once as UTF-8 and once as UTF-16 units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const android::String16 wide(text.data(), text.size());
    const android::String8 back(wide);
    const std::string result(back.string(), back.size());
    Require(IsUtf8(result), "text comes out well-formed");
    Require(!IsUtf8(text) || result == text, "well-formed text comes back as it was");

    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    const android::String8 narrow{android::String16(units)};
    Require(IsUtf8(std::string(narrow.string(), narrow.size())),
            "units come out as well-formed text");
    return 0;
}
