#pragma once

#include <chrono>
#include <csignal>
#include <vector>

// A fixed interval until an ending signal comes. These signals are blocked from construction on,
// unless the process ignores them, and stay pending. One in a process.
class IntervalTimer {
public:
    // `others` are further signals to wait for.
    explicit IntervalTimer(std::chrono::milliseconds interval, const std::vector<int>& others = {});

    // Waits for the end of the interval; those that have passed since the last call are skipped.
    // Returns 0, or the signal that came first.
    int Wait();

    // Returns a signal, or 0 if none comes within the limit.
    int TakeSignal(std::chrono::nanoseconds limit = {});

private:
    using Clock = std::chrono::steady_clock;

    const std::chrono::milliseconds m_interval;
    Clock::time_point m_last = Clock::now();
    sigset_t m_signals;
};
