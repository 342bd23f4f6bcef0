#include "tools/call/argument_check.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <type_traits>
#include <variant>

#include "format/argument_text.h"
#include "format/format_letters.h"
#include "format/parcel_fields.h"
#include "format/utf8.h"

namespace {

constexpr char kNoNumber[] = "is no number of this type";
constexpr char kOutOfRange[] = "is out of range";

// A number that its type can only hold as zero.
bool IsTooSmall(const std::string& word) {
    return word.find_first_of("123456789") < word.find_first_of("eE");
}

// Reads the word as the console's encoder does, from text that goes on with a blank.
template <typename Number>
std::string NumberFault(Number number, const std::string& word) {
    std::istringstream text(word + " ");
    const bool hexadecimal = std::is_same_v<Number, std::int32_t> && SetInt32Base(text, word);
    if (!TakeValue(text, number)) {
        // A number out of range reads as the nearest limit.
        return number == Number{} ? kNoNumber : kOutOfRange;
    }
    if (text.tellg() != static_cast<std::streamoff>(word.size())) {
        return kNoNumber;
    }
    return number == Number{} && !hexadecimal && IsTooSmall(word) ? kOutOfRange : "";
}

std::string NumberFault(const android::String16&, const std::string&) {
    return "";
}

std::string TextFault(const std::string& word) {
    if (word.empty()) {
        return "is empty, and no argument can be";
    }
    if (word.find_first_of(" \t\n\v\f\r") != std::string::npos) {
        return "holds a blank, and no argument can";
    }
    return ValidUtf8(word) != word ? "is not UTF-8" : "";
}

}  // namespace

std::string ArgumentLetters(const std::string& paraFormat) {
    std::string letters = paraFormat;
    letters.erase(std::remove_if(letters.begin(), letters.end(), IsWithoutValue), letters.end());
    return letters;
}

std::string ArgumentFault(char letter, const std::string& word) {
    std::string textFault = TextFault(word);
    if (!textFault.empty()) {
        return textFault;
    }
    return std::visit([&word](const auto& zero) { return NumberFault(zero, word); },
                      ZeroOf(letter));
}
