#pragma once

#include <string>

// Words that one completion group offers at the most.
constexpr unsigned int kWordTableSize = 256;

// One completion group. `ppList` is borrowed: the array of `u32Count` words and the words
// themselves belong to whoever registered the group.
struct ModInfo {
    std::string strName;
    unsigned int u32Count;
    char** ppList;
};
