#pragma once

#include <string>
#include <string_view>
#include <vector>

// The word that the text was probably meant to be: it differs in at most two letters, or goes on
// where the text ends; of several the nearest, and of those the first. Case does not count. Empty
// when none is near or the text is over 64 bytes. Takes time for every word.
std::string Nearest(std::string_view text, const std::vector<std::string>& words);

// "did you mean \"fan\"?"; `otherwise` where the word is empty.
std::string DidYouMean(const std::string& word, const std::string& otherwise);

// The message, and after it the word that is nearest to the text, if any.
std::string WithNearest(const std::string& message, std::string_view text,
                        const std::vector<std::string>& words);
