#pragma once

#include <algorithm>
#include <array>
#include <csignal>

// The signals that end the tool. One that is ignored at the start, as under nohup, stays ignored.
inline constexpr std::array kEndingSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// Whether one of them is blocked and has come.
inline bool EndingSignalIsPending() {
    sigset_t pending;
    sigpending(&pending);
    return std::any_of(kEndingSignals.begin(), kEndingSignals.end(),
                       [&](int signal) { return sigismember(&pending, signal) == 1; });
}
