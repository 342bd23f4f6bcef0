#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

#include <gtest/gtest.h>

#include "platform/unique_fd.h"

// Plays the platform's log daemon on a TestRoot while it lives. It holds ten entries at least; what
// more comes before they are taken is lost.
class LogDaemon {
public:
    LogDaemon() {
        constexpr sockaddr_un kAddress = {AF_UNIX, "root/dev/socket/logdw"};
        const auto* address = reinterpret_cast<const sockaddr*>(&kAddress);
        EXPECT_EQ(0, bind(m_socket.Get(), address, sizeof(kAddress)));
    }

    // Takes all entries: a row for each with the priority, the tag and the message.
    std::string TakeRows() const {
        constexpr std::size_t kPriority = 11;  // its offset
        std::string rows;
        char bytes[4096] = {};
        while (recv(m_socket.Get(), bytes, sizeof(bytes) - 1, MSG_DONTWAIT) > 0) {
            const std::string tag = bytes + kPriority + 1;
            const char* message = bytes + kPriority + 1 + tag.size() + 1;
            rows += std::to_string(bytes[kPriority]) + " " + tag + " " + message + "\n";
        }
        return rows;
    }

private:
    UniqueFd m_socket{socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
};
