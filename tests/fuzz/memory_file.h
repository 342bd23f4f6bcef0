#pragma once

#include <string>

#include "platform/unique_fd.h"

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
