#pragma once

#include <cstddef>
#include <istream>
#include <string>

// How arguments are read from the text after a command's word.

// What the console takes of it, in bytes: the blank before each argument, and the arguments.
constexpr std::size_t kArgumentTextLimit = 254;

// Takes one value off the text by the stream's own rules. False when there is none, or when the
// text ends right after it: a blank after the last argument keeps a complete one from the end.
template <typename Value>
bool TakeValue(std::istream& text, Value& value) {
    text >> value;
    return text.good();
}

// Sets the base in which the text of an int32 argument is read: hexadecimal when the word begins
// with "0x" or "0X", which no sign may stand before. True then.
inline bool SetInt32Base(std::istream& text, const std::string& word) {
    const bool hexadecimal =
        word.size() >= 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
    text.setf(hexadecimal ? std::ios_base::hex : std::ios_base::dec, std::ios_base::basefield);
    return hexadecimal;
}
