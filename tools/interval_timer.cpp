#include "tools/interval_timer.h"

#include <algorithm>

#include "platform/sleep_once.h"
#include "tools/ending_signals.h"

IntervalTimer::IntervalTimer(std::chrono::milliseconds interval, const std::vector<int>& others)
    : m_interval(interval) {
    std::vector<int> signals(others);
    signals.insert(signals.end(), kEndingSignals.begin(), kEndingSignals.end());
    sigemptyset(&m_signals);
    for (const int signal : signals) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) {
            sigaddset(&m_signals, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
}

int IntervalTimer::Wait() {
    const auto next = m_last + ((Clock::now() - m_last) / m_interval + 1) * m_interval;
    for (auto left = next - Clock::now(); left.count() > 0; left = next - Clock::now()) {
        if (const int signal = TakeSignal(left)) {
            return signal;
        }
    }
    m_last = next;
    return 0;
}

int IntervalTimer::TakeSignal(std::chrono::nanoseconds limit) {
    const timespec time = TimeSpec(limit);
    const int signal = sigtimedwait(&m_signals, nullptr, &time);
    if (std::count(kEndingSignals.begin(), kEndingSignals.end(), signal) != 0) {
        std::raise(signal);  // is pending again, for a write that blocks
    }
    return std::max(signal, 0);
}
