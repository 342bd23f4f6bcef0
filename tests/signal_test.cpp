#include <pthread.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>

#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "tests/support/test_root.h"

namespace {

void SendFromOutside(int signal) {
    if (fork() == 0) {
        kill(getppid(), signal);
        _exit(0);
    }
    wait(nullptr);
}

void AwaitState(std::int32_t state) {
    while (g_sigState != state) {
        sched_yield();
    }
}

// A console without a catalogue starts its watcher and leaves this thread free to hold it up in its
// resume action, while a suspend and a continue come. Ends when the continue has counted.
[[noreturn]] void RunConsole() {
    alarm(60);
    KoCmdDebug::GetInstance().Exec();
    {
        const KoMutex::Autolock lock(g_mutex);
        SendFromOutside(SIGCONT);
        AwaitState(kSigResume);
        SendFromOutside(SIGTSTP);
        AwaitState(kSigSuspend);
        SendFromOutside(SIGCONT);
    }
    AwaitState(kSigResume);
    _exit(0);
}

// Ends with the number of signals that do not have their default effect.
[[noreturn]] void RunWithoutWatcher() {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    // No address space has that room, so no thread can be made.
    pthread_attr_setstacksize(&attributes, std::numeric_limits<std::size_t>::max() / 8 * 7);
    pthread_setattr_default_np(&attributes);
    KoCmdDebug::GetInstance().Exec();
    sigset_t mask;
    pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    int changed = 0;
    for (const int signal : {SIGINT, SIGTSTP, SIGCONT}) {
        changed += sigismember(&mask, signal) != 0 || std::signal(signal, SIG_DFL) != SIG_DFL;
    }
    _exit(changed);
}

}  // namespace

TEST(SignalTest, WithoutAWatcherTheSignalsHaveTheirDefaultEffect) {
    const TestRoot root;
    EXPECT_EXIT(RunWithoutWatcher(), testing::ExitedWithCode(0), "^can't start the watcher");
}

// A watcher that was not yet held up may stop first, as it should: then the signals are sent again.
TEST(SignalTest, AContinueBehindASuspendIsNotTakenForTheConsolesOwn) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer keeps handlers back while a thread waits for a mutex";
#endif
    const TestRoot root;
    int status = 0;
    for (int tries = 0; tries < 20 && (tries == 0 || WIFSTOPPED(status)); ++tries) {
        const pid_t pid = fork();
        if (pid == 0) {
            RunConsole();
        }
        waitpid(pid, &status, WUNTRACED);
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    EXPECT_TRUE(WIFEXITED(status)) << status;
}
