#include "tests/fuzz/fuzz_input.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/ko_log.h"

// The console's messages would bury the fuzzer's, and its log entries the machine's.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

void KoLog::PrintLog(ATV_LOG_PRIO_E, const char*, const char*, unsigned int, const char*, ...) {}

std::vector<std::string> SplitInput(const std::uint8_t* data, std::size_t size, std::size_t count) {
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

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

MemoryFile::MemoryFile()
    : m_fd(memfd_create("input", 0)), m_path("/proc/self/fd/" + std::to_string(m_fd.Get())) {}

void MemoryFile::Write(const std::string& bytes) const {
    const auto size = static_cast<off_t>(bytes.size());
    Require(ftruncate(m_fd.Get(), size) == 0 &&
                pwrite(m_fd.Get(), bytes.data(), bytes.size(), 0) == size,
            "the input is written");
}
