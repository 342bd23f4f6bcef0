#pragma once

#include <string_view>

// Standard output of a command that goes on until a signal ends it: past the stream stdout, which
// must be empty, so that the ending signals also end a write that a stalled reader blocks.

// Writes all of the text at once. False if that, or a text before it, failed; nothing is written
// after a failure. A blocked write fails soon after an ending signal, which stays pending. Uses
// SIGALRM. Main thread.
bool WriteOutput(std::string_view text);

// What the command exits with: kExitDone, or kExitFailed after a message if a write failed.
int OutputStatus();
