#pragma once

#include "platform/unique_fd.h"

// A client's lock on the page: its holder may post a request and take the reply. Without lock
// support every turn is granted, and the log has one entry that says so. One thread.
class PageLock {
public:
    // Grants every turn.
    PageLock() = default;

    // Locks the page file through a descriptor of its own, so that the caller may close `pageFile`
    // and the name may come to mean another file.
    explicit PageLock(int pageFile);

    // Waits until nobody else has the turn, without a limit: a client that only polled would rarely
    // find the page free between others' exchanges.
    void Take();
    void Release();

private:
    UniqueFd m_file;
    int m_error = 0;  // why there is no lock, until the log has it
};

// For the result of a lock that was asked for: logs an error other than 0, and returns 0, as the
// turn is granted all the same.
int GrantWithoutLock(int error);

// Holds a turn from construction to destruction.
class PageTurn {
public:
    explicit PageTurn(PageLock& lock) : m_lock(lock) { lock.Take(); }
    ~PageTurn() { m_lock.Release(); }
    PageTurn(const PageTurn&) = delete;
    PageTurn& operator=(const PageTurn&) = delete;

private:
    PageLock& m_lock;
};
