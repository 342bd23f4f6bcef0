#pragma once

#include <unistd.h>

#include <utility>

// Owns one file descriptor; -1 means none.
class UniqueFd {
public:
    explicit UniqueFd(int fd = -1) : m_fd(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }

    int Get() const { return m_fd; }
    bool IsOpen() const { return m_fd >= 0; }

private:
    int m_fd;
};
