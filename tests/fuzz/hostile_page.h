#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "page/page_mapping.h"
#include "platform/unique_fd.h"

// A page with a hostile user: while this object lives, a thread of its own writes versions of the
// page over each other through a mapping of its own, byte by byte; with `cut` it also cuts the file
// to nothing and sizes it again.
class HostilePage {
public:
    HostilePage(std::vector<std::string> versions, bool cut);
    ~HostilePage();
    HostilePage(const HostilePage&) = delete;
    HostilePage& operator=(const HostilePage&) = delete;

    // The file of all hostile pages of the process.
    static const std::string& Path();

private:
    void Scribble() const;

    std::vector<std::string> m_versions;
    bool m_cut;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
