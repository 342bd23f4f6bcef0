#include <fcntl.h>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "platform/unique_fd.h"
#include "request/page_mapping.h"
#include "request/parcel_fields.h"
#include "request/share_page_client.h"
#include "service/tv_service_page.h"
#include "tests/support/test_root.h"

namespace {

using State = SharePageClient::State;

// A page file with each half on a mapping of its own, as in two processes, and a third to scribble
// with.
class PageTest : public testing::Test {
protected:
    PageTest() {
        EXPECT_TRUE(m_service.Open(kTestPage));
        m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR)).Get());
        m_scribbler = PageMapping(UniqueFd(open(kTestPage, O_RDWR)).Get());
    }

    // Answers the next request with raw bytes, a header length and flags of its own choice.
    void AnswerOnce(const std::string& bytes, std::uint32_t length) {
        android::Parcel request;
        ASSERT_TRUE(m_service.WaitRequest(std::chrono::seconds(60), request));
        std::copy(bytes.begin(), bytes.end(), m_scribbler.Get()->data);
        StoreHeader(*m_scribbler.Get(), kReplyReady, length);
    }

    TestRoot m_root;
    TvServicePage m_service{std::chrono::nanoseconds(0)};
    PageMapping m_mapping;
    PageMapping m_scribbler;
};

// The console's exchange on the test's page: what it printed and returned.
class ExchangeTest : public PageTest {
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

TEST_F(ExchangeTest, AShortPageFailsTheExchangeWithoutASound) {
    for (const int size : {0, 8, 4095}) {
        ASSERT_EQ(0, truncate(kTestPage, size));
        EXPECT_EQ(std::make_pair(-1, std::string()), Exchange()) << size;
    }
    ASSERT_EQ(0, truncate(kTestPage, kPageSize));
    std::thread service([&] {
        android::Parcel request;
        ASSERT_TRUE(m_service.WaitRequest(std::chrono::seconds(60), request));
        ASSERT_EQ(0, truncate(kTestPage, 0));
    });
    EXPECT_EQ(std::make_pair(-1, std::string()), Exchange());
    service.join();
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

TEST_F(PageTest, APageThatVanishesUnderTheGuardKillsNobody) {
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

TEST_F(PageTest, PostingClearsAReplyFlagLeftBehind) {
    StoreHeader(*m_mapping.Get(), kReplyReady, 4);
    SharePageClient client(m_mapping.Get(), kTestPage, std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {0xab, 0, 0, 0};
    ASSERT_TRUE(client.Post(request, 4));
    SharePageHeader header = {};
    EXPECT_EQ(State::kWaiting, client.Look(header));
    EXPECT_EQ(0x0000000400000001U, m_mapping.Get()->header.load());
    EXPECT_EQ(State::kTimedOut, client.Wait(std::chrono::steady_clock::now()));
}

// Each side checks that it reads exactly what the other wrote, with lengths and bytes that change
// each time.
TEST_F(PageTest, AMillionExchangesMixNothing) {
    constexpr std::uint32_t kExchanges = KO_EXCHANGES;
    const auto message = [](std::uint32_t number) {
        std::vector<std::uint8_t> bytes(1 + (number * 7919U) % 97U,
                                        static_cast<std::uint8_t>(number));
        bytes.front() = static_cast<std::uint8_t>(number >> 8);
        return bytes;
    };
    const auto equal = [](const android::Parcel& parcel, const std::vector<std::uint8_t>& bytes) {
        return std::equal(bytes.begin(), bytes.end(), parcel.data(),
                          parcel.data() + parcel.dataSize());
    };
    std::thread service([&] {
        for (std::uint32_t i = 0; i < kExchanges; ++i) {
            android::Parcel request;
            ASSERT_TRUE(m_service.WaitRequest(std::chrono::seconds(60), request));
            ASSERT_TRUE(equal(request, message(2 * i))) << i;
            android::Parcel reply;
            const auto bytes = message(2 * i + 1);
            reply.setData(bytes.data(), bytes.size());
            ASSERT_TRUE(m_service.PostReply(reply));
        }
    });
    SharePageClient client(m_mapping.Get(), kTestPage, std::chrono::nanoseconds(0));
    for (std::uint32_t i = 0; i < kExchanges; ++i) {
        const auto bytes = message(2 * i);
        ASSERT_TRUE(client.Post(bytes.data(), bytes.size()));
        ASSERT_EQ(State::kReady, client.Wait());
        android::Parcel reply;
        ASSERT_TRUE(client.TakeReply(reply));
        ASSERT_TRUE(equal(reply, message(2 * i + 1))) << i;
    }
    service.join();
}
