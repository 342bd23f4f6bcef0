#pragma once

#include <chrono>

// Sleeps for `time`; a time of 0 only lets other threads run. False when a signal handler ended the
// sleep early; the rest is not made up for.
bool SleepOnce(std::chrono::nanoseconds time);
