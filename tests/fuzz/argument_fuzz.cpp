#include <cstdlib>
#include <sstream>

#include "console/ko_cmd_debug.h"
#include "format/parcel_fields.h"
#include "tests/fuzz/fuzz_input.h"
#include "tools/call/argument_check.h"

namespace {

// Whether both are the same number of the letter's type, as the C library reads the whole texts.
bool IsSame(char letter, const std::string& a, const std::string& b) {
    switch (letter) {
        case 's':
            return a == b;
        case 'f':
            return std::strtof(a.c_str(), nullptr) == std::strtof(b.c_str(), nullptr);
        case 'F':
            return std::strtod(a.c_str(), nullptr) == std::strtod(b.c_str(), nullptr);
        default:
            return std::strtoll(a.c_str(), nullptr, a.find_first_of("xX") == 1 ? 16 : 10) ==
                   std::strtoll(b.c_str(), nullptr, 10);
    }
}

}  // namespace

// Parts: a letter, a word. What the strict check accepts the encoder encodes to exactly that value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 2);
    const std::string word = parts[1].c_str();
    const std::string letter = parts[0].substr(0, 1);
    if (letter.find_first_of("dDfFs") != 0 || !ArgumentFault(letter[0], word).empty()) {
        return 0;
    }
    std::istringstream args(word + " ");
    android::Parcel request;
    KO_BOOL valid = 1;
    Require(KoCmdDebug::ParseCmdImp(letter, valid, request, args) == 0 && valid == 1,
            "it is taken");
    android::Parcel sent;
    sent.setData(request.data(), request.dataSize());
    const auto fields = ReadFields(sent, letter);
    Require(
        fields && sent.dataAvail() == 0 && IsSame(letter[0], word, FieldText((*fields)[0].value)),
        "as that value");
    return 0;
}
