#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <initializer_list>

#include "console/ko_cmd_debug.h"
#include "platform/sleep_once.h"
#include "platform/standard_streams.h"

// How a signal can get lost.
//
// The watcher is the only thread that takes the three signals. SIGTSTP is taken as soon as it
// comes; SIGCONT and SIGINT are let in before each poll of the state word, one at a time and with
// SIGTSTP kept out, so that no handler interrupts another. After a continue the first poll
// therefore sees the resume and never the suspend before it.
//
// Two losses are the kernel's own. SIGCONT discards a SIGTSTP that is still pending, and after a
// resume the console sends itself SIGCONT every 10 ms: pressed within that fraction of a
// microsecond, the suspend key must be pressed again. SIGSTOP discards a SIGCONT that is still
// pending: a continue that does not wait for the stop, as shells do, may have to be sent again.

namespace {

constexpr std::chrono::milliseconds kPollStep{10};

sigset_t SignalSet(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals) {
        sigaddset(&set, signal);
    }
    return set;
}

// The thread's mask with only this one of the three signals let in.
sigset_t MaskFor(int signal) {
    sigset_t mask = {};
    pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    sigaddset(&mask, SIGTSTP);
    sigdelset(&mask, signal);
    return mask;
}

// Runs the handler of a signal that the mask lets in and that has come since the last call. One
// system call, as the watcher makes it all the time.
void LetIn(const sigset_t& mask) {
    const timespec now = {};
    ppoll(nullptr, 0, &now, &mask);
}

// Takes back a SIGCONT that the process has sent itself: its handler would wipe out a suspend that
// came after the state word was read. One from outside came after any such suspend, which would
// have discarded it, and counts.
void DropOwnResume() {
    const sigset_t resume = SignalSet({SIGCONT});
    const timespec now = {};
    siginfo_t info = {};
    if (sigtimedwait(&resume, &info, &now) == SIGCONT && info.si_pid != getpid()) {
        g_sigState = kSigResume;
    }
}

void SendSignal(pid_t process, int signal, const char* failure) {
    if (kill(process, signal) != 0) {
        PrintSystemError(failure);
    }
}

}  // namespace

void KoCmdDebug::CatchSignals() {
    const sigset_t caught = SignalSet({SIGINT, SIGTSTP, SIGCONT});
    pthread_sigmask(SIG_BLOCK, &caught, nullptr);
    std::signal(SIGINT, QuitHandler);
    std::signal(SIGTSTP, SuspendHandler);
    std::signal(SIGCONT, ResumeHandler);
}

void KoCmdDebug::LeaveSignals() {
    for (const int signal : {SIGINT, SIGTSTP, SIGCONT}) {
        std::signal(signal, SIG_DFL);
    }
    const sigset_t left = SignalSet({SIGINT, SIGTSTP, SIGCONT});
    pthread_sigmask(SIG_UNBLOCK, &left, nullptr);
}

void KoCmdDebug::QuitHandler(int) {
    g_sigState = kSigQuit;
}

void KoCmdDebug::SuspendHandler(int) {
    g_sigState = kSigSuspend;
}

void KoCmdDebug::ResumeHandler(int) {
    g_sigState = kSigResume;
}

void KoCmdDebug::SignalDectThread(const void*) {
    const sigset_t resume = MaskFor(SIGCONT);
    const sigset_t quit = MaskFor(SIGINT);
    const sigset_t suspend = SignalSet({SIGTSTP});
    pthread_sigmask(SIG_UNBLOCK, &suspend, nullptr);
    for (;;) {
        LetIn(resume);
        LetIn(quit);
        switch (g_sigState) {
            case kSigResume:
                OnResume();
                DropOwnResume();
                break;
            case kSigSuspend:
                OnSuspend();
                // The stop takes effect in the first change of the mask at the latest, so this
                // returns after the continue, and the sleep below keeps the first resume action
                // away from it.
                LetIn(resume);
                break;
            case kSigQuit:
                OnQuit();
                break;
            default:
                break;
        }
        SleepOnce(kPollStep);
    }
}

void KoCmdDebug::OnQuit() {
    const KoMutex::Autolock lock(g_mutex);
    if (g_pCmdDebug->m_pfnRelease != nullptr) {
        g_pCmdDebug->m_pfnRelease(nullptr);
    }
    SendSignal(g_pCmdDebug->m_pid, SIGKILL, "OnQuit process failed\n");
}

void KoCmdDebug::OnSuspend() {
    const KoMutex::Autolock lock(g_mutex);
    SendSignal(g_pCmdDebug->m_pid, SIGSTOP, "OnSuspend process failed\n");
}

void KoCmdDebug::OnResume() {
    const KoMutex::Autolock lock(g_mutex);
    SendSignal(g_pCmdDebug->m_pid, SIGCONT, "OnResume process failed\n");
}
