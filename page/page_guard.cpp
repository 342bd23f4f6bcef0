#include "page/page_guard.h"

#include <csetjmp>
#include <csignal>

namespace {

// Where the handler escapes to; null while the thread touches no page.
thread_local sigjmp_buf* t_escape = nullptr;

struct sigaction g_previous = {};

void PassOn(int signal, siginfo_t* info, void* context) {
    if ((g_previous.sa_flags & SA_SIGINFO) != 0) {
        g_previous.sa_sigaction(signal, info, context);
    } else if (g_previous.sa_handler != SIG_DFL && g_previous.sa_handler != SIG_IGN) {
        g_previous.sa_handler(signal);
    } else {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

void OnBusError(int signal, siginfo_t* info, void* context) {
    // What a process sends has a code of 0 or less.
    if (t_escape != nullptr && info->si_code > 0) {
        siglongjmp(*t_escape, 1);
    }
    PassOn(signal, info, context);
}

bool InstallHandler() {
    struct sigaction action = {};
    action.sa_sigaction = OnBusError;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    return sigaction(SIGBUS, &action, &g_previous) == 0;
}

}  // namespace

bool RunGuarded(void (*access)(void*), void* argument) {
    static const bool installed = InstallHandler();
    sigset_t bus;
    sigset_t before;
    sigemptyset(&bus);
    sigaddset(&bus, SIGBUS);
    pthread_sigmask(SIG_UNBLOCK, &bus, &before);
    sigjmp_buf* const outer = t_escape;
    sigjmp_buf escape;
    const bool whole = installed && sigsetjmp(escape, 0) == 0;
    if (whole) {
        t_escape = &escape;
        access(argument);
    }
    t_escape = outer;
    // Also undoes what a handler of a sanitizer has blocked.
    if (!whole || sigismember(&before, SIGBUS) == 1) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    return whole;
}
