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

// While this lives, a system call that blocks is interrupted every 50 ms: a signal that comes right
// before the call would not interrupt it.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, nullptr);
        sigset_t alarm;
        sigemptyset(&alarm);
        sigaddset(&alarm, SIGALRM);
        pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
        SetTimer(50'000);
    }
    ~Interruptions() { SetTimer(0); }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

private:
    static void SetTimer(int us) {
        const itimerval timer = {{0, us}, {0, us}};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
};

}  // namespace

bool WriteOutput(std::string_view text) {
    const Interruptions interruptions;
    while (g_error == 0 && !text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR || EndingSignalIsPending()) {
            g_error = errno;
        }
    }
    return g_error == 0;
}

int OutputStatus() {
    if (g_error == 0) {
        return kExitDone;
    }
    Complain(std::string("standard output: ") + std::strerror(g_error));
    return kExitFailed;
}
