#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "platform/unique_fd.h"
#include "tests/support/child.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

namespace fs = std::filesystem;

constexpr char kRule[] = "===========================\n";

// The console in the module of the example catalogue that most cases use.
class Console : public Child {
public:
    Console() : Child(kConsole) {
        Type("aud\n");
        ReadUntil("audio@TV $");
    }

    // Types a line and returns what it prints, up to the next prompt.
    std::string Command(const std::string& line) {
        Type(line + "\n");
        return Answer(line);
    }

    // The same for a line that is typed already.
    std::string Answer(const std::string& line) {
        ReadUntil(line + "\n\r");
        const std::string text = ReadUntil("audio@TV $");
        return text.substr(0, text.size() - 10);
    }
};

const std::string kVolume35 = std::string(kRule) + "output:0\tvolume:35\t\n" + kRule;
constexpr char kFailed[] = "call failed\n";

}  // namespace

// The rows of the protocol's table, in its order.
TEST(PageFaultTest, AConsoleUsesWhatTheKernelStillMaps) {
    const ExampleRoot root;
    Console console;
    EXPECT_EQ(kFailed, console.Command("setvol 0 35")) << "created and not yet sized";
    auto service = std::make_unique<Service>();
    EXPECT_EQ(kVolume35, console.Command("setvol 0 35"));
    for (const int size : {4095, 1}) {
        ASSERT_EQ(0, truncate(kTestPage, size));
        EXPECT_EQ(kVolume35, console.Command("setvol 0 35")) << size;
    }
    ASSERT_EQ(0, truncate(kTestPage, 0));
    EXPECT_EQ(kFailed, console.Command("setvol 0 35"));
    ASSERT_EQ(0, truncate(kTestPage, kPageSize));
    EXPECT_EQ(kVolume35, console.Command("setvol 0 35"));
    root.Write("short", "x");
    fs::rename("short", kTestPage);
    EXPECT_EQ(kVolume35, console.Command("setvol 0 35")) << "replaced by a short one";
    fs::remove(kTestPage);
    EXPECT_EQ(kVolume35, console.Command("setvol 0 35")) << "the name is gone, the page is not";
}

TEST(PageFaultTest, AConsoleWhosePageIsNoLongerTheServicesWaits) {
    const ExampleRoot root;
    PlayedPage page;
    Console console;
    const std::string reply(sizeof(std::int32_t), '\0');
    console.Type("mute 1\n");
    EXPECT_NE("", page.TakeRequest(console));
    ASSERT_EQ(0, truncate(kTestPage, 0));
    ASSERT_EQ(0, truncate(kTestPage, kPageSize));
    page.Reply(reply, reply.size());
    EXPECT_NE(kFailed, console.Answer("mute 1")) << "cut and sized again between two looks";
    fs::remove(kTestPage);
    const Service other;
    console.Type("mute 1\n");
    std::vector<std::uint8_t> request;
    EXPECT_TRUE(page.Service().WaitRequest(std::chrono::milliseconds(kPatienceMs), request));
    page.Reply(reply, reply.size());
    EXPECT_NE(kFailed, console.Answer("mute 1")) << "the page of another service's";
}

TEST(StreamFaultTest, AHangUpEndsTheConsole) {
    const ExampleRoot root;
    for (const bool ignored : {true, false}) {
        std::signal(SIGHUP, ignored ? SIG_IGN : SIG_DFL);
        Child console(kConsole, Child::Io::kTerminal);
        console.ReadUntil("TV $");
        console.CloseInput();
        console.CloseOutput();
        const int status = console.Wait();
        EXPECT_EQ(!ignored, WIFSIGNALED(status) && WTERMSIG(status) == SIGHUP) << status;
        EXPECT_EQ(ignored, WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
}

// The rows of a process's mappings can be read only as long as it lives. Each is over the limit, so
// that the console sleeps in the middle of them when nobody takes its messages.
TEST(CatalogueFaultTest, AFileThatBreaksOffIsNoCatalogue) {
    const ExampleRoot root;
    const std::string name(255, 'x');
    const UniqueFd mapped(open(root.Write(name, name).c_str(), O_RDONLY | O_CLOEXEC));
    const pid_t other = fork();
    if (other == 0) {
        for (int i = 0; i < 5000; ++i) {
            static_cast<void>(mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, mapped.Get(), 0));
        }
        raise(SIGSTOP);
    }
    waitpid(other, nullptr, WUNTRACED);
    fs::remove("root/vendor/etc/atv/dbg/cmds.conf");
    fs::create_symlink("/proc/" + std::to_string(other) + "/maps",
                       "root/vendor/etc/atv/dbg/cmds.conf");
    Child console(kConsole);
    console.CloseInput();
    const int full = fcntl(console.Terminal(), F_GETPIPE_SZ);
    const std::string state = "/proc/" + std::to_string(console.Pid()) + "/stat";
    for (int held = 0; held < full / 2 || ReadFile(state).find(") S ") == std::string::npos;) {
        ASSERT_EQ(0, ioctl(console.Terminal(), FIONREAD, &held));
        ASSERT_EQ(std::string::npos, ReadFile(state).find(") Z "));
    }
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    console.ReadUntil("\nfile path error or open file failure\nParseCmds fail\n");
}
