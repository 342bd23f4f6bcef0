#include <sys/wait.h>
#include <termios.h>

#include <csignal>
#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/test_root.h"

namespace {

// The console on a terminal of its own, beside a service, with the example catalogue.
class TerminalTest : public testing::Test {
protected:
    termios Settings() const {
        termios settings = {};
        EXPECT_EQ(0, tcgetattr(m_console.Terminal(), &settings));
        return settings;
    }

    ExampleRoot m_root;
    Service m_service;
    Child m_console{kConsole, Child::Io::kTerminal};
};

}  // namespace

TEST_F(TerminalTest, RunsRawAndPutsTheSettingsBack) {
    m_console.ReadUntil("TV $");
    const termios raw = Settings();
    EXPECT_EQ(0U, raw.c_lflag & (ICANON | ECHO));
    EXPECT_NE(0U, raw.c_lflag & ISIG);
    EXPECT_EQ(1, raw.c_cc[VMIN]);
    EXPECT_EQ(0, raw.c_cc[VTIME]);
    m_console.Type("au\t\n\x1b[A");
    m_console.ReadUntil("aud\n\raudio@TV $aud");
    m_console.Type("\b\b\bq\nq\n");
    EXPECT_EQ("\b \b\b \b\b \bq\n\rTV $q\n\r", m_console.ReadRest());
    EXPECT_EQ(0, m_console.Wait());
    constexpr tcflag_t kCooked = ICANON | ECHO;
    EXPECT_EQ(kCooked, Settings().c_lflag & kCooked);
}

TEST(InterruptTest, TheKeyEndsTheConsoleAtEveryStage) {
    const std::string rule(27, '=');
    // The service's options, the keys, and what is to be seen before the interrupt.
    const std::string stages[][3] = {
        {"", "", ""},
        {"", "half a li", "half a li"},
        {"--delay 100000", "aud\ndec\n", "dec\n\r"},
        // Replies that nobody reads.
        {"--records 1000", "aud\ndec\ndec\ndec\ndec\ndec\ndec\ndec\ndec\n", rule},
    };
    for (const auto& [options, keys, seen] : stages) {
        const ExampleRoot root;
        const Service service(options);
        Child console(kConsole, Child::Io::kTerminal);
        console.ReadUntil("TV $");
        console.Type(keys);
        console.ReadUntil(seen);
        console.Type("\x03");
        const int status = console.Wait();
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << keys;
    }
}

// Every processor is kept busy meanwhile. The first suspend comes from the key. A suspend that the
// kernel discarded, because it came while the console sent itself SIGCONT, is asked for again as an
// engineer would; a resume is never given twice.
TEST_F(TerminalTest, NoResumeIsLostUnderLoad) {
    m_console.ReadUntil("TV $");
    auto load =
        std::make_unique<Child>("for i in $(seq $(nproc)); do while :; do :; done & done; wait");
    int repeated = 0;
    for (int i = 0; i < KO_SUSPENDS && !HasFailure(); ++i) {
        if (i == 0) {
            m_console.Type("\x1a");
        } else {
            kill(m_console.Pid(), SIGTSTP);
        }
        while (!WIFSTOPPED(m_console.Wait(WUNTRACED, 2000)) && repeated < 10) {
            ++repeated;
            kill(m_console.Pid(), SIGTSTP);
        }
        EXPECT_LT(repeated, 10) << i;
        EXPECT_EQ(0, kill(m_console.Pid(), SIGCONT));
        EXPECT_TRUE(WIFCONTINUED(m_console.Wait(WCONTINUED))) << i;
        // A console that was stopped again answers no key.
        m_console.Type("x\b");
        m_console.ReadUntil("x\b \b");
    }
    load.reset();
    EXPECT_EQ(-1, m_console.Wait(WUNTRACED, 100)) << "stopped again after the last resume";
    m_console.Type("aud\n");
    m_console.ReadUntil("audio@TV $");
    std::printf("%d suspends, %d asked for twice\n", KO_SUSPENDS, repeated);
}
