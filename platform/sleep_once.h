#pragma once

#include <chrono>

// Sleeps for `time`. False when a signal handler ended the sleep early; the rest is not made up
// for.
bool SleepOnce(std::chrono::nanoseconds time);
