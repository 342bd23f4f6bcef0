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
#include "tools/text.h"

namespace {

constexpr char kNotValid[] = "is not valid";
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
        return number == Number{} ? kNotValid : kOutOfRange;
    }
    if (text.tellg() != static_cast<std::streamoff>(word.size())) {
        return kNotValid;
    }
    return number == Number{} && !hexadecimal && IsTooSmall(word) ? kOutOfRange : "";
}

std::string NumberFault(const android::String16&, const std::string&) {
    return "";
}

std::string TextFault(const std::string& word) {
    if (word.empty()) {
        return "must not be empty";
    }
    if (word.find_first_of(" \t\n\v\f\r") != std::string::npos) {
        return "must not contain a blank";
    }
    return ValidUtf8(word) != word ? "is not UTF-8" : "";
}

std::string Position(std::size_t index, char letter) {
    return FormatText("argument {} ({})",
                      {std::to_string(index + 1), FindFormatLetter(letter)->typeName});
}

// For a word that looks like an option after the place where those end.
std::string OptionHint(const std::string& word) {
    return word.compare(0, 2, "--") == 0 ? "; options go before MODULE" : "";
}

}  // namespace

std::string ArgumentsFault(const std::string& letters, const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < std::min(letters.size(), words.size()); ++i) {
        const std::string fault = ArgumentFault(letters[i], words[i]);
        if (!fault.empty()) {
            return FormatText("{}: {} {}{}", {Position(i, letters[i]), Quoted(words[i]), fault,
                                              OptionHint(words[i])});
        }
    }
    if (words.size() < letters.size()) {
        return Position(words.size(), letters[words.size()]) + " is missing";
    }
    if (words.size() > letters.size()) {
        const std::string& word = words[letters.size()];
        return FormatText("argument {}: {} is left over{}",
                          {std::to_string(letters.size() + 1), Quoted(word), OptionHint(word)});
    }
    return "";
}

std::string ArgumentFault(char letter, const std::string& word) {
    std::string textFault = TextFault(word);
    if (!textFault.empty()) {
        return textFault;
    }
    return std::visit([&word](const auto& zero) { return NumberFault(zero, word); },
                      ZeroOf(letter));
}
