#pragma once

#include <string>

// The prompt takes the number that a word begins with and cuts what is out of range. A script gets
// no such help: an argument is wholly what its letter says, or it is refused.

// The letters of a para format that take an argument; unknown ones count.
std::string ArgumentLetters(const std::string& paraFormat);

// Why the word is no argument for the known letter, such as "is out of range"; empty when it is
// one.
std::string ArgumentFault(char letter, const std::string& word);
