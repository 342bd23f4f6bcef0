#include "tests/support/log_daemon.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>

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

std::string LogDaemon::Take() const {
    char bytes[4096];
    const ssize_t size = recv(m_socket.Get(), bytes, sizeof(bytes), MSG_DONTWAIT);
    return {bytes, size < 0 ? 0 : static_cast<std::size_t>(size)};
}

std::string LogDaemon::TakeRows() const {
    std::string rows;
    for (std::string entry; !(entry = Take()).empty();) {
        const char* tag = &entry.at(kHeaderSize + 1);
        const char* message = tag + std::string_view(tag).size() + 1;
        rows += std::to_string(entry[kHeaderSize]) + " " + tag + " " + message + "\n";
    }
    return rows;
}
