#pragma once

#include <string>
#include <vector>

// The prompt takes the number that a word begins with and cuts what is out of range. A script gets
// no such help: an argument is wholly what its letter says, or it is refused.

// Why the words are not the arguments of these letters, which are known and take one each; empty if
// they are.
std::string ArgumentsFault(const std::string& letters, const std::vector<std::string>& words);

// Why the word is no argument for the known letter, such as "is out of range"; empty if it is one.
std::string ArgumentFault(char letter, const std::string& word);
