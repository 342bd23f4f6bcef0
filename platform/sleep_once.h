#pragma once

#include <chrono>
#include <ctime>

// Sleeps for `time`; a time of 0 only lets other threads run. False when a signal handler ended the
// sleep early; the rest is not made up for.
bool SleepOnce(std::chrono::nanoseconds time);

// A length of time for system calls.
timespec TimeSpec(std::chrono::nanoseconds time);
