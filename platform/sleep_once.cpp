#include "platform/sleep_once.h"

#include <sched.h>

#include <ctime>

bool SleepOnce(std::chrono::nanoseconds time) {
    if (time == std::chrono::nanoseconds::zero()) {
        sched_yield();
        return true;
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec step = {};
    step.tv_sec = static_cast<std::time_t>(seconds.count());
    step.tv_nsec = static_cast<long>((time - seconds).count());
    return nanosleep(&step, nullptr) == 0;
}
