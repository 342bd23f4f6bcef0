#include <cstring>

#include "format/utf8.h"
#include "platform/string16.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// A copy of its own, so that the sanitizer sees a read behind it.
android::String16 Widen(const std::string& text) {
    const std::vector<char> bytes(text.begin(), text.end());
    return android::String16(bytes.data(), bytes.size());
}

std::string Narrow(const android::String16& wide) {
    const android::String8 narrow(wide);
    return {narrow.string(), narrow.size()};
}

}  // namespace

// The input is taken once as 8-bit text and once as UTF-16 units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string valid = ValidUtf8(text);
    Require(ValidUtf8(valid) == valid, "what has been replaced is well-formed");
    Require(Narrow(Widen(valid)) == valid, "well-formed text is kept");
    Narrow(Widen(text));
    std::vector<char16_t> units(size / 2);
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    const std::string narrow = Narrow(android::String16(units.data(), units.size()));
    Require(ValidUtf8(narrow) == narrow, "units come out as well-formed text");
    return 0;
}
