#include <sys/mman.h>
#include <unistd.h>

#include <thread>

#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "request/parcel_fields.h"
#include "request/share_page_client.h"
#include "tests/support/page_test_base.h"

namespace {

using State = SharePageClient::State;

// The console's exchange on the test's page: what it printed and returned.
class ExchangeTest : public PageTestBase {
protected:
    ExchangeTest() {
        m_root.WriteModules("[mod]\ncommand=m\ninstruction=1\n");
        m_root.WriteCommands(
            "[c]\ncommand=c\nbelong module=mod\ninstruction=ab\nprint format=ds\nprint tags=n,t\n");
        testing::internal::CaptureStdout();
        m_console.LoadConfig();
        m_console.Proc("m");
        testing::internal::GetCapturedStdout();
        g_pSharePage = m_mapping.Get();
    }
    ~ExchangeTest() override { g_pSharePage = static_cast<SharePage*>(MAP_FAILED); }

    std::pair<int, std::string> Exchange() {
        android::Parcel request;
        request.writeInt32(0xab);
        testing::internal::CaptureStdout();
        const int result = m_console.CopyCmdToBuf("c", request);
        return {result, testing::internal::GetCapturedStdout()};
    }

    KoCmdDebug m_console;
};

constexpr char kRule[] = "===========================\n";

}  // namespace

TEST_F(ExchangeTest, RepliesAreReadInsideTheirLength) {
    const std::string ok(4, '\0');
    const std::string record("\x07\0\0\0\x02\0\0\0h\0i\0\0\0\0\0", 16);
    const std::string rules = std::string(kRule) + kRule;
    struct {
        const char* what;
        std::string bytes;
        std::uint32_t length;
        int result;
        std::string printed;
    } const cases[] = {
        {"a record", ok + record, 20, 0, std::string(kRule) + "n:7\tt:hi\t\n" + kRule},
        {"status only", ok, 4, 0, rules},
        {"cut record", ok + record, 10, 0, std::string(kRule) + "n:7\tt:\t\n" + kRule},
        {"failing status", std::string(4, '\xff'), 4, -1, "request failure! ret:0xffffffff\n"},
        {"failing status with values", "\x10" + ok.substr(1) + record, 20, -1,
         "request failure! ret:0x10\n"},
        {"one byte past the page", ok, 4089, -1, ""},
        {"the largest length", ok, 0xFFFFFFFF, -1, ""},
        {"string count past the end", ok + std::string("\x07\0\0\0\xff\xff\xff\x7f", 8), 12, 0,
         std::string(kRule) + "n:7\tt:\t\n" + kRule},
    };
    for (const auto& c : cases) {
        std::thread service([&] { AnswerOnce(c.bytes, c.length); });
        EXPECT_EQ(std::make_pair(c.result, c.printed), Exchange()) << c.what;
        service.join();
    }
}

TEST_F(ExchangeTest, AFullReplyIsReadToItsLastByte) {
    std::string bytes(kDataCapacity, '\0');
    std::thread service([&] { AnswerOnce(bytes, kDataCapacity); });
    const auto [result, printed] = Exchange();
    service.join();
    EXPECT_EQ(0, result);
    EXPECT_EQ(static_cast<std::ptrdiff_t>((kDataCapacity - 4) / 12 + 1 + 2),
              std::count(printed.begin(), printed.end(), '\n'));
}

TEST_F(ExchangeTest, ARequestThatCannotBePostedFails) {
    android::Parcel empty;
    testing::internal::CaptureStdout();
    EXPECT_EQ(-1, m_console.CopyCmdToBuf("c", empty));
    EXPECT_EQ("requestData is the null\n", testing::internal::GetCapturedStdout());
    android::Parcel large;
    const std::vector<std::uint8_t> bytes(kDataCapacity + 1);
    large.setData(bytes.data(), bytes.size());
    EXPECT_EQ(-1, m_console.CopyCmdToBuf("c", large));
    EXPECT_EQ(0, m_mapping.Get()->header.load());
}

TEST_F(PageTestBase, APageThatVanishesUnderTheGuardKillsNobody) {
    // A name that tells nothing leaves the guard alone to notice.
    SharePageClient client(m_mapping.Get(), "no such file", std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {};
    ASSERT_TRUE(client.Post(request, 4));
    ASSERT_EQ(0, truncate(kTestPage, 0));
    EXPECT_FALSE(client.Post(request, 4));
    EXPECT_EQ(State::kFailed, client.Wait());
    android::Parcel parcel;
    EXPECT_FALSE(m_service.WaitRequest(std::chrono::nanoseconds(0), parcel));
    EXPECT_FALSE(m_service.PostReply(parcel));
}

TEST_F(PageTestBase, PostingClearsAReplyFlagLeftBehind) {
    StoreHeader(*m_mapping.Get(), kReplyReady, 4);
    SharePageClient client(m_mapping.Get(), kTestPage, std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {0xab, 0, 0, 0};
    ASSERT_TRUE(client.Post(request, 4));
    SharePageHeader header = {};
    EXPECT_EQ(State::kWaiting, client.Look(header));
    EXPECT_EQ(0x0000000400000001U, m_mapping.Get()->header.load());
    EXPECT_EQ(State::kTimedOut, client.Wait(std::chrono::steady_clock::now()));
}
