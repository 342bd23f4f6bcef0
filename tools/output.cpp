#include "tools/output.h"

#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "tools/ending_signals.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

int g_error = 0;  // of the write that failed

// Has SIGALRM come every so many microseconds; 0 for no more.
void RepeatAlarm(int us) {
    const itimerval timer = {{0, us}, {0, us}};
    setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace

bool WriteOutput(std::string_view text) {
    // One interruption would not do: an ending signal may come right before the call.
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGALRM, &action, nullptr);
    RepeatAlarm(50'000);
    while (g_error == 0 && !text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR || EndingSignalIsPending()) {
            g_error = errno;
        }
    }
    RepeatAlarm(0);
    return g_error == 0;
}

int OutputStatus() {
    if (g_error == 0) {
        return kExitDone;
    }
    Complain(std::string("standard output: ") + std::strerror(g_error));
    return kExitFailed;
}
