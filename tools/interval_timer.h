#pragma once

#include <chrono>
#include <csignal>
#include <vector>

// A steady schedule until SIGINT, SIGTERM or SIGHUP comes. These signals are blocked from
// construction on, unless the process ignores them. One in a process.
class IntervalTimer {
public:
    // `others` are signals that end nothing, for Wait to return.
    explicit IntervalTimer(std::chrono::milliseconds interval, const std::vector<int>& others = {});

    // Waits for the end of the interval; those that have passed since the last call are skipped.
    // Returns 0, or the signal that came first.
    int Wait();

private:
    using Clock = std::chrono::steady_clock;

    const std::chrono::milliseconds m_interval;
    Clock::time_point m_last = Clock::now();
    sigset_t m_signals;
};
