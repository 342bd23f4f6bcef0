#include "platform/sleep_once.h"

#include <sched.h>

bool SleepOnce(std::chrono::nanoseconds time) {
    if (time == std::chrono::nanoseconds::zero()) {
        sched_yield();
        return true;
    }
    const timespec step = TimeSpec(time);
    return nanosleep(&step, nullptr) == 0;
}

timespec TimeSpec(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec value = {};
    value.tv_sec = static_cast<std::time_t>(seconds.count());
    value.tv_nsec = static_cast<long>((time - seconds).count());
    return value;
}
