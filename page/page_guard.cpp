#include "page/page_guard.h"

#include <csetjmp>
#include <csignal>

namespace {

// Where the handler escapes to; null while the thread touches no page.
thread_local sigjmp_buf* t_escape = nullptr;

void OnBusError(int signal) {
    if (t_escape != nullptr) {
        siglongjmp(*t_escape, 1);
    }
    // Not ours, a fault elsewhere or a signal from outside: the default action comes with the
    // handler's return.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool InstallHandler() {
    struct sigaction action = {};
    action.sa_handler = OnBusError;
    return sigaction(SIGBUS, &action, nullptr) == 0;
}

}  // namespace

bool RunGuarded(void (*access)(void*), void* argument) {
    static const bool installed = InstallHandler();
    sigjmp_buf escape;
    if (!installed || sigsetjmp(escape, 1) != 0) {
        t_escape = nullptr;
        return false;
    }
    t_escape = &escape;
    access(argument);
    t_escape = nullptr;
    return true;
}
