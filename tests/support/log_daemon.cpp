#include "tests/support/log_daemon.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <filesystem>
#include <string_view>

#include <gtest/gtest.h>

namespace {

constexpr sockaddr_un kAddress = {AF_UNIX, "root/dev/socket/logdw"};
constexpr std::size_t kHeaderSize = 11;  // bytes before the priority

}  // namespace

LogDaemon::LogDaemon() : m_socket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    std::filesystem::create_directories("root/dev/socket");
    EXPECT_EQ(0,
              bind(m_socket.Get(), reinterpret_cast<const sockaddr*>(&kAddress), sizeof(kAddress)));
}

LogDaemon::~LogDaemon() {
    unlink(kAddress.sun_path);
}

// Each entry: buffer, thread, seconds, nanoseconds, then priority, tag and message.
std::string LogDaemon::TakeRows() const {
    std::string rows;
    char bytes[4096] = {};
    while (recv(m_socket.Get(), bytes, sizeof(bytes) - 1, MSG_DONTWAIT) > 0) {
        std::uint32_t when[2] = {};
        std::memcpy(when, bytes + 3, sizeof(when));
        EXPECT_EQ(0, bytes[0]) << "the main buffer";
        EXPECT_NE(0, bytes[1] | bytes[2]) << "a thread";
        EXPECT_LE(m_start, when[0]);
        EXPECT_GE(std::time(nullptr), when[0]);
        EXPECT_GT(1'000'000'000U, when[1]);
        const char* tag = bytes + kHeaderSize + 1;
        const char* message = tag + std::string_view(tag).size() + 1;
        rows += std::to_string(bytes[kHeaderSize]) + " " + tag + " " + message + "\n";
    }
    return rows;
}
