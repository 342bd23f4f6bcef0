#pragma once

#include <chrono>
#include <csignal>
#include <vector>

// The steady schedule of a view that goes on until SIGINT, SIGTERM or SIGHUP. They are blocked from
// then on, unless the process ignores them. One in a process.
class IntervalTimer {
public:
    // `others` are signals that end nothing, for Wait to return.
    explicit IntervalTimer(std::chrono::milliseconds interval, const std::vector<int>& others = {});

    // Waits for the next beat; those that have passed since the last one are left out. 0, or the
    // signal that came first.
    int Wait();

    // Whether a signal to end has come that Wait has not returned.
    static bool IsOver();

private:
    using Clock = std::chrono::steady_clock;

    const std::chrono::milliseconds m_interval;
    Clock::time_point m_last = Clock::now();
    sigset_t m_signals;
};
