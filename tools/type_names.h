#pragma once

#include <string>
#include <vector>

#include "format/format_letters.h"

// The types of a format's values, letter by letter; "unknown" for a character that is none.
inline std::vector<std::string> TypeNames(const std::string& format) {
    std::vector<std::string> names;
    for (const char letter : format) {
        const FormatLetter* row = FindFormatLetter(letter);
        names.emplace_back(row != nullptr ? row->typeName : "unknown");
    }
    return names;
}
