#include <cstdlib>
#include <sstream>

#include "console/ko_cmd_debug.h"
#include "format/parcel_fields.h"
#include "tests/fuzz/fuzz_input.h"
#include "tools/strict_argument.h"

namespace {

// The value that the C library reads in the whole word.
FieldValue Read(char letter, const std::string& word) {
    char* end = nullptr;
    FieldValue value;
    switch (letter) {
        case 'd':
            value = static_cast<std::int32_t>(
                std::strtoll(word.c_str(), &end, word.find_first_of("xX") == 1 ? 16 : 10));
            break;
        case 'D':
            value = std::int64_t{std::strtoll(word.c_str(), &end, 10)};
            break;
        case 'f':
            value = std::strtof(word.c_str(), &end);
            break;
        case 'F':
            value = std::strtod(word.c_str(), &end);
            break;
        default:
            return android::String16(word.c_str());
    }
    Require(*end == '\0', "the number is the whole word");
    return value;
}

}  // namespace

// Parts: a letter, a word. What the strict check accepts the encoder encodes to exactly that value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 2);
    const std::string word = parts[1].substr(0, parts[1].find('\0'));
    const char letter = parts[0].empty() ? 's' : parts[0].front();
    if (std::string_view("dDfFs").find(letter) == std::string_view::npos ||
        !ArgumentFault(letter, word).empty()) {
        return 0;
    }
    std::istringstream args(word + " ");
    android::Parcel request;
    KO_BOOL valid = 1;
    Require(
        KoCmdDebug::ParseCmdImp(std::string(1, letter), valid, request, args) == 0 && valid == 1,
        "the encoder takes it");
    android::Parcel expected;
    WriteField(expected, Read(letter, word));
    Require(
        std::string_view(reinterpret_cast<const char*>(request.data()), request.dataSize()) ==
            std::string_view(reinterpret_cast<const char*>(expected.data()), expected.dataSize()),
        "to that value");
    return 0;
}
