#include <iconv.h>

#include <cstring>

#include "platform/string16.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// What the C library makes of the text: the judge of what is well-formed, and of the units.
bool Convert(const std::string& text, std::u16string& units) {
    static const iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
    std::string input = text;
    units.resize(text.size());
    char* in = input.data();
    char* out = reinterpret_cast<char*>(units.data());
    std::size_t inLeft = input.size();
    std::size_t outLeft = units.size() * sizeof(char16_t);
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    const bool good =
        iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    units.resize(units.size() - outLeft / sizeof(char16_t));
    return good;
}

std::string Narrow(const android::String16& wide) {
    const android::String8 narrow(wide);
    return {narrow.string(), narrow.size()};
}

}  // namespace

// The input is taken once as UTF-8 and once as UTF-16 units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const android::String16 wide(text.data(), text.size());
    const std::string back = Narrow(wide);
    std::u16string units;
    Require(Convert(back, units), "text comes out well-formed");
    if (Convert(text, units)) {
        Require(back == text && units == std::u16string(wide.string(), wide.size()),
                "well-formed text is kept");
    }
    std::u16string raw(size / 2, u'\0');
    std::memcpy(raw.data(), data, raw.size() * sizeof(char16_t));
    Require(Convert(Narrow(android::String16(raw)), units), "units come out as well-formed text");
    return 0;
}
