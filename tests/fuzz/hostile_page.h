#pragma once

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "page/page_guard.h"
#include "page/page_mapping.h"
#include "tests/fuzz/fuzz_input.h"

// The file behind the page of a driver; removed at the end of the process.
struct PageFile {
    PageFile() : fd(mkstemp(path.data())) { Resize(kPageSize); }
    ~PageFile() { unlink(path.c_str()); }
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;

    void Resize(std::size_t size) const {
        Require(ftruncate(fd.Get(), static_cast<off_t>(size)) == 0, "the file is sized");
    }

    std::string path = "/tmp/ko_fuzz.XXXXXX";
    UniqueFd fd;
};

// A page with a hostile user: while this object lives, a thread of its own writes versions of the
// page over each other through a mapping of its own, byte by byte; with `cut` it also cuts the file
// to nothing and sizes it again.
class HostilePage {
public:
    HostilePage(const PageFile& file, std::vector<std::string> versions, bool cut)
        : m_file(file), m_versions(std::move(versions)), m_cut(cut), m_thread([this] { Run(); }) {}
    ~HostilePage() {
        m_stop = true;
        m_thread.join();
    }
    HostilePage(const HostilePage&) = delete;
    HostilePage& operator=(const HostilePage&) = delete;

private:
    void Run() const {
        const PageMapping mapping(m_file.fd.Get());
        do {
            for (const std::string& version : m_versions) {
                auto* bytes = reinterpret_cast<volatile std::uint8_t*>(mapping.Get());
                GuardPageAccess([&] {
                    for (std::size_t i = 0; i < version.size() && i < kPageSize; ++i) {
                        bytes[i] = static_cast<std::uint8_t>(version[i]);
                    }
                });
                m_file.Resize(m_cut ? 0 : kPageSize);
                m_file.Resize(kPageSize);
            }
        } while (!m_stop);
    }

    const PageFile& m_file;
    std::vector<std::string> m_versions;
    bool m_cut;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
