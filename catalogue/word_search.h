#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "common/ko_mw_array.h"

// The position of the first word that equals the typed one, byte for byte; nothing when there is
// none. A module is selected by its position among the modules' words.
inline std::optional<unsigned int> FindWord(const Array<std::string>& words,
                                            const std::string& typed) {
    const auto found = std::find(words.begin(), words.end(), typed);
    if (found == words.end()) {
        return std::nullopt;
    }
    return static_cast<unsigned int>(std::distance(words.begin(), found));
}
