#pragma once

#include <strings.h>

// A word of the prompt itself, which comes before any word of the catalogue. Case does not count.
struct PromptWord {
    const char* word;
    const char* shortWord;

    bool IsTyped(const char* line) const {
        return strcasecmp(line, word) == 0 || strcasecmp(line, shortWord) == 0;
    }
};

inline constexpr PromptWord kHelpWord = {"help", "?"};
inline constexpr PromptWord kQuitWord = {"quit", "q"};
