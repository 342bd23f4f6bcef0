#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

namespace fs = std::filesystem;

constexpr char kRule[] = "===========================\n";

// The console in the module of the example catalogue that most cases use.
class Console : public Child {
public:
    Console() : Child("ko_cmd_debug", {}, Io::kPipes) {
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

TEST(ServiceFaultTest, AServiceThatDiesAndComesBackAnswersWhole) {
    const ExampleRoot root;
    PlayedPage dying;
    Console console;
    console.Type("setvol 0 35\n");
    dying.TakeRequest();
    dying.Die();
    {
        const Service back({"--accept-old"});
        EXPECT_EQ(kVolume35, console.Answer("setvol 0 35"));
    }
    console.Type("mute 1\n");
    while (PageRows().compare(0, 2, "01") != 0) {
    }
    // What the dead service wrote over the request leaves it without meaning.
    dying.Scribble("UUUUUU");
    {
        const Service back;
        EXPECT_EQ("request failure! ret:0xfffffffd\ncall failed\n", console.Answer("mute 1"));
        EXPECT_EQ(kVolume35, console.Command("setvol 0 35"));
    }
    console.Type("setvol 0 35\n");
    const Service afterwards({"--accept-old"});
    EXPECT_EQ(kVolume35, console.Answer("setvol 0 35"));
}

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
    page.TakeRequest();
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
        Child console("ko_cmd_debug", {}, Child::Io::kTerminal);
        console.ReadUntil("TV $");
        console.CloseInput();
        console.CloseOutput();
        const int status = console.Wait();
        EXPECT_EQ(!ignored, WIFSIGNALED(status) && WTERMSIG(status) == SIGHUP) << status;
        EXPECT_EQ(ignored, WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
}
