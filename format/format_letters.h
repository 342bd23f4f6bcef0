#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

// The one alphabet of para formats and print formats. `S` is known but not supported: it takes no
// argument, no field and no value.
struct FormatLetter {
    char letter;
    const char* typeName;
    std::size_t leastSize;  // bytes in a parcel; 0 when the letter stands for no value
};

constexpr FormatLetter kFormatLetters[] = {
    {'d', "int32", 4},  {'D', "int64", 8},  {'f', "float", 4},
    {'F', "double", 8}, {'s', "string", 8}, {'S', "unsupported", 0},
};

// Printed wherever a format asks for `S`.
constexpr char kNoWideString[] = "current is no support 'S' format";

// Null for a character that is no format letter.
constexpr const FormatLetter* FindFormatLetter(char letter) {
    for (const FormatLetter& row : kFormatLetters) {
        if (row.letter == letter) {
            return &row;
        }
    }
    return nullptr;
}

// True for a letter that is known and takes no argument, no field and no value.
constexpr bool IsWithoutValue(char letter) {
    const FormatLetter* row = FindFormatLetter(letter);
    return row != nullptr && row->leastSize == 0;
}

// The letters of a format that have an argument, a field or a value; unknown ones count.
inline std::string LettersWithValue(std::string format) {
    format.erase(std::remove_if(format.begin(), format.end(), IsWithoutValue), format.end());
    return format;
}
