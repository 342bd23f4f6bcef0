#pragma once

#include <chrono>
#include <optional>

#include "platform/unique_fd.h"

// A client's lock on the page: who holds it may post a request and take the reply. Where locks are
// not to be had every turn is granted, and the log has one entry that says so. One thread.
class PageLock {
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    // Grants every turn.
    PageLock() = default;

    // Locks the file behind `pageFile` through a descriptor of its own, so that the caller may
    // close that one and the name may come to mean another file.
    explicit PageLock(int pageFile);

    // Waits until nobody else has the turn. False when others kept it until the deadline, for which
    // the process's SIGALRM and its timer are used.
    bool Take(Deadline deadline = std::nullopt);
    void Release();

private:
    bool TryUntil(Deadline deadline, int& error);

    UniqueFd m_file;
};

// Holds a turn from construction to destruction.
class PageTurn {
public:
    explicit PageTurn(PageLock& lock, PageLock::Deadline deadline = std::nullopt)
        : m_lock(lock), m_taken(lock.Take(deadline)) {}
    ~PageTurn() {
        if (m_taken) {
            m_lock.Release();
        }
    }
    PageTurn(const PageTurn&) = delete;
    PageTurn& operator=(const PageTurn&) = delete;

    // False when others kept the turn until the deadline.
    bool Taken() const { return m_taken; }

private:
    PageLock& m_lock;
    bool m_taken;
};
