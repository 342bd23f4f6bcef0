#include "tests/fuzz/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include "tests/fuzz/fuzz_input.h"

MemoryFile::MemoryFile()
    : m_fd(memfd_create("input", 0)), m_path("/proc/self/fd/" + std::to_string(m_fd.Get())) {}

void MemoryFile::Write(const std::string& bytes) const {
    const auto size = static_cast<off_t>(bytes.size());
    Require(ftruncate(m_fd.Get(), size) == 0 &&
                pwrite(m_fd.Get(), bytes.data(), bytes.size(), 0) == size,
            "the input is written");
}
