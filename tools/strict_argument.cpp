#include "tools/strict_argument.h"

#include <algorithm>
#include <cstdint>
#include <ios>
#include <sstream>

#include "format/utf8.h"

namespace {

constexpr char kNoNumber[] = "is no number of this type";
constexpr char kOutOfRange[] = "is out of range";

bool IsHexadecimal(const std::string& word) {
    return word.size() >= 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
}

// A number that its type can only hold as zero.
bool IsTooSmall(const std::string& word) {
    return word.find_first_of("123456789") < word.find_first_of("eE");
}

// Reads the word as the console's encoder does, from text that goes on with a blank.
template <typename Number>
std::string NumberFault(const std::string& word, std::ios_base::fmtflags base) {
    std::istringstream text(word + " ");
    text.setf(base, std::ios_base::basefield);
    Number number{};
    text >> number;
    if (text.fail()) {
        // A number out of range reads as the nearest limit.
        return number == Number{} ? kNoNumber : kOutOfRange;
    }
    if (text.tellg() != static_cast<std::streamoff>(word.size())) {
        return kNoNumber;
    }
    const bool hexadecimal = base == std::ios_base::hex;
    return number == Number{} && !hexadecimal && IsTooSmall(word) ? kOutOfRange : "";
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
    letters.erase(std::remove(letters.begin(), letters.end(), 'S'), letters.end());
    return letters;
}

std::string ArgumentFault(char letter, const std::string& word) {
    std::string textFault = TextFault(word);
    if (!textFault.empty()) {
        return textFault;
    }
    switch (letter) {
        case 'd':
            return NumberFault<std::int32_t>(
                word, IsHexadecimal(word) ? std::ios_base::hex : std::ios_base::dec);
        case 'D':
            return NumberFault<std::int64_t>(word, std::ios_base::dec);
        case 'f':
            return NumberFault<float>(word, std::ios_base::dec);
        case 'F':
            return NumberFault<double>(word, std::ios_base::dec);
        default:
            return "";
    }
}
