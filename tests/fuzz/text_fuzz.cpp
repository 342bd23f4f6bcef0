#include <iconv.h>

#include <algorithm>
#include <cstring>

#include "platform/string16.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// The C library judges what is well-formed; this conversion is built into it, so that static
// programs have it too.
bool IsUtf8(std::string text) {
    static const iconv_t converter = iconv_open("WCHAR_T", "UTF-8");
    std::wstring points(text.size(), L'\0');
    char* in = text.data();
    char* out = reinterpret_cast<char*>(points.data());
    std::size_t inLeft = text.size();
    std::size_t outLeft = points.size() * sizeof(wchar_t);
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) {
        return false;
    }
    // It lets the surrogates' and larger numbers pass.
    return std::none_of(points.begin(), points.end(), [](wchar_t point) {
        return (point >= 0xD800 && point < 0xE000) || point > 0x10FFFF;
    });
}

std::string Narrow(const android::String16& wide) {
    const android::String8 narrow(wide);
    return {narrow.string(), narrow.size()};
}

}  // namespace

// The input is taken once as UTF-8 and once as UTF-16 units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const android::String16 wide(reinterpret_cast<const char*>(data), size);
    const std::string back = Narrow(wide);
    Require(IsUtf8(back), "text comes out well-formed");
    Require(back == text || !IsUtf8(text), "well-formed text is kept");
    std::u16string raw(size / 2, u'\0');
    std::memcpy(raw.data(), data, raw.size() * sizeof(char16_t));
    Require(IsUtf8(Narrow(android::String16(raw))), "units come out as well-formed text");
    return 0;
}
