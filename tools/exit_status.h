#pragma once

#include <iterator>

// What ko_cmd_tool tells a script.
enum ExitStatus : int {
    kExitDone,
    kExitFailed,
    kExitUsage,
    kExitNotSent,
    kExitNoAnswer,
    kExitRefused,
    kExitPage,
    kExitBusy,
};

// As the help has them, by the status.
inline constexpr const char* kExitStatusTexts[] = {
    "done",
    "the result could not be printed",
    "wrong command line",
    "no such catalogue, module or command, or a refused argument or format",
    "sent, but no reply in time",
    "the service refused",
    "the page is unusable, or the reply is too long or not in its format",
    "the page stayed in use: nothing was sent",
};
static_assert(std::size(kExitStatusTexts) == kExitBusy + 1, "every status has its text");

// A set of them, for a command's help.
template <typename... Statuses>
constexpr unsigned int StatusSet(Statuses... statuses) {
    return (0U | ... | (1U << statuses));
}
