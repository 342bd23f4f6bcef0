#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Cuts an input into `count` parts at its first bytes 0xFF, which no text of the console's holds;
// parts that are missing are empty.
inline std::vector<std::string> SplitInput(const std::uint8_t* data, std::size_t size,
                                           std::size_t count) {
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0xFF && parts.size() < count) {
            parts.emplace_back();
        } else {
            parts.back() += static_cast<char>(data[i]);
        }
    }
    parts.resize(count);
    return parts;
}

// Ends the run with the condition's text: the fuzzer keeps the input, the replay fails.
void Require(bool condition, const char* what);
