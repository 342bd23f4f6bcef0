#pragma once

#include <string>

#include "tools/exit_status.h"

// How something ended: kExitDone; or what the tool exits with, and why, in one printable line.
struct Outcome {
    ExitStatus status = kExitDone;
    std::string reason;
};
