#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/exit_status.h"

// Why the tool could not do something. A std::optional<Failure> is empty after success.
struct Failure {
    ExitStatus status;                         // what the tool then exits with
    std::string reason;                        // one line
    std::optional<std::int32_t> refusal = {};  // with kExitRefused: the reply's status
};
