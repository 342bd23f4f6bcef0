#pragma once

#include <ctime>
#include <string>

#include "platform/unique_fd.h"

// Plays the platform's log daemon on a TestRoot, for the programs that run while it lives. It holds
// ten entries at least; what more comes before they are taken is lost.
class LogDaemon {
public:
    LogDaemon();
    ~LogDaemon();
    LogDaemon(const LogDaemon&) = delete;
    LogDaemon& operator=(const LogDaemon&) = delete;

    // Takes all entries: a row for each with the priority, the tag and the message.
    std::string TakeRows() const;

private:
    UniqueFd m_socket;
    std::time_t m_start = std::time(nullptr);
};
