#include <sys/wait.h>
#include <termios.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/test_root.h"

namespace {

// The console on a terminal of its own, beside a service, with the example catalogue.
class TerminalTest : public testing::Test {
protected:
    static termios Settings(const Child& child) {
        termios settings = {};
        EXPECT_EQ(0, tcgetattr(child.Terminal(), &settings));
        return settings;
    }

    ExampleRoot m_root;
    Service m_service;
    Child m_console{"ko_cmd_debug", {}, Child::Io::kTerminal};
};

}  // namespace

TEST_F(TerminalTest, RunsRawAndPutsTheSettingsBack) {
    m_console.ReadUntil("TV $");
    const termios raw = Settings(m_console);
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
    EXPECT_EQ(kCooked, Settings(m_console).c_lflag & kCooked);
}

TEST(InterruptTest, TheKeyEndsTheConsoleAtEveryStage) {
    const std::string rule(27, '=');
    struct {
        std::vector<std::string> service;
        std::string keys;
        std::string seen;
    } const stages[] = {
        {{}, "", ""},
        {{}, "half a li", "half a li"},
        {{"--delay", "100000"}, "aud\ndec\n", "dec\n\r"},
        // Replies that nobody reads.
        {{"--records", "1000"}, "aud\ndec\ndec\ndec\ndec\ndec\ndec\ndec\ndec\n", rule},
    };
    for (const auto& stage : stages) {
        const ExampleRoot root;
        const Service service(stage.service);
        Child console("ko_cmd_debug", {}, Child::Io::kTerminal);
        console.ReadUntil("TV $");
        console.Type(stage.keys);
        console.ReadUntil(stage.seen);
        console.Type("\x03");
        const int status = console.Wait();
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << stage.keys;
    }
}

// Every processor is kept busy meanwhile. The first suspend comes from the key. A suspend that the
// kernel discarded, because it came while the console sent itself SIGCONT, is asked for again as an
// engineer would; a resume is never given twice.
TEST_F(TerminalTest, NoResumeIsLostUnderLoad) {
    m_console.ReadUntil("TV $");
    std::atomic<bool> stop{false};
    std::vector<std::thread> load(std::thread::hardware_concurrency());
    for (std::thread& thread : load) {
        thread = std::thread([&stop] {
            while (!stop) {
            }
        });
    }
    int repeated = 0;
    for (int i = 0; i < KO_SUSPENDS && !HasFailure(); ++i) {
        if (i == 0) {
            m_console.Type("\x1a");
        } else {
            kill(m_console.Pid(), SIGTSTP);
        }
        while (!m_console.WaitChange(WUNTRACED, 2000) && repeated < 10) {
            ++repeated;
            kill(m_console.Pid(), SIGTSTP);
        }
        EXPECT_LT(repeated, 10) << i;
        EXPECT_EQ(0, kill(m_console.Pid(), SIGCONT));
        EXPECT_TRUE(m_console.WaitChange(WCONTINUED, kPatienceMs)) << i;
        // A console that was stopped again answers no key.
        m_console.Type("x\b");
        m_console.ReadUntil("x\b \b");
    }
    stop = true;
    for (std::thread& thread : load) {
        thread.join();
    }
    EXPECT_FALSE(m_console.WaitChange(WUNTRACED, 100)) << "stopped again after the last resume";
    m_console.Type("aud\n");
    m_console.ReadUntil("audio@TV $");
    std::printf("%d suspends, %d asked for twice\n", KO_SUSPENDS, repeated);
}
