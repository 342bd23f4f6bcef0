#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/unique_fd.h"

// Plays the platform's log daemon on a TestRoot, for the programs that run while it lives. It holds
// ten entries at least; what more comes before they are taken is lost.
class LogDaemon {
public:
    LogDaemon() {
        constexpr sockaddr_un kAddress = {AF_UNIX, "root/dev/socket/logdw"};
        const auto* address = reinterpret_cast<const sockaddr*>(&kAddress);
        std::filesystem::create_directories("root/dev/socket");
        std::filesystem::remove(kAddress.sun_path);
        EXPECT_EQ(0, bind(m_socket.Get(), address, sizeof(kAddress)));
    }

    // Takes all entries: a row for each with the priority, the tag and the message. Each entry
    // holds: buffer, thread, seconds, nanoseconds, then what the row shows.
    std::string TakeRows() const {
        std::string rows;
        char bytes[4096] = {};
        while (recv(m_socket.Get(), bytes, sizeof(bytes) - 1, MSG_DONTWAIT) > 0) {
            std::uint32_t when[2] = {};
            std::memcpy(when, bytes + 3, sizeof(when));
            EXPECT_EQ(0, bytes[0]) << "the main buffer";
            EXPECT_NE(0, bytes[1] | bytes[2]) << "a thread";
            EXPECT_LE(m_start, when[0]);
            // Not std::time, which lags behind the clock of the entries.
            EXPECT_GE(Clock::to_time_t(Clock::now()), when[0]);
            EXPECT_GT(1'000'000'000U, when[1]);
            const std::string tag = bytes + kHeaderSize + 1;
            const char* message = bytes + kHeaderSize + 1 + tag.size() + 1;
            rows += std::to_string(bytes[kHeaderSize]) + " " + tag + " " + message + "\n";
        }
        return rows;
    }

private:
    using Clock = std::chrono::system_clock;

    static constexpr std::size_t kHeaderSize = 11;  // bytes before the priority

    UniqueFd m_socket{socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    std::time_t m_start = std::time(nullptr);
};
