#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/unique_fd.h"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Cuts an input into `count` parts at its first bytes 0xFF, which no text of the console's holds;
// parts that are missing are empty.
std::vector<std::string> SplitInput(const std::uint8_t* data, std::size_t size, std::size_t count);

// Ends the run with the condition's text: the fuzzer keeps the input, the replay fails.
void Require(bool condition, const char* what);

// A file in memory that is written anew for each input and read by path like any other.
class MemoryFile {
public:
    MemoryFile();
    void Write(const std::string& bytes) const;
    const std::string& Path() const { return m_path; }

private:
    UniqueFd m_fd;
    std::string m_path;
};
