#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "page/share_page_client.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

// What replies become stands in cases/console/replies.case; here is what no console shows.

namespace {

using State = SharePageClient::State;

constexpr std::uint8_t kRequest[4] = {0xab, 0, 0, 0};

class PageTest : public testing::Test {
protected:
    SharePageClient Client(const std::string& path) const {
        return {m_page.Get(), path, std::chrono::nanoseconds(0)};
    }

    TestRoot m_root;
    PlayedPage m_page;
};

}  // namespace

TEST_F(PageTest, WhatCannotBePostedLeavesThePage) {
    g_pSharePage = m_page.Get();
    KoCmdDebug console;
    android::Parcel empty;
    android::Parcel large;
    const std::vector<std::uint8_t> bytes(kDataCapacity + 1);
    large.setData(bytes.data(), bytes.size());
    testing::internal::CaptureStdout();
    EXPECT_EQ(-1, console.CopyCmdToBuf("c", empty));
    EXPECT_EQ(-1, console.CopyCmdToBuf("c", large));
    EXPECT_EQ("requestData is the null\n", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(m_page.Service().PostReply(empty));
    EXPECT_FALSE(m_page.Service().PostReply(large));
    EXPECT_EQ(0, m_page.Get()->header.load());
    g_pSharePage = static_cast<SharePage*>(MAP_FAILED);
}

TEST_F(PageTest, APageThatVanishesUnderTheGuardKillsNobody) {
    // A name that tells nothing leaves the guard alone to notice.
    SharePageClient client = Client("no such file");
    ASSERT_TRUE(client.Post(kRequest, sizeof(kRequest)));
    ASSERT_EQ(0, truncate(kTestPage, 0));
    EXPECT_FALSE(client.Post(kRequest, sizeof(kRequest)));
    EXPECT_EQ(State::kFailed, client.Wait());
    android::Parcel parcel;
    EXPECT_FALSE(m_page.Service().WaitRequest(std::chrono::nanoseconds(0), parcel));
    parcel.writeInt32(0);
    EXPECT_FALSE(m_page.Service().PostReply(parcel));
}

TEST_F(PageTest, AFileThatBecomesShorterThanThePageEndsTheExchange) {
    SharePageClient client = Client(kTestPage);
    m_page.Reply("\x10\x20\x30\x40", 4);
    ASSERT_EQ(State::kReady, client.Wait());
    // The mapping still reads, as zeros.
    ASSERT_EQ(0, truncate(kTestPage, 8));
    android::Parcel reply;
    EXPECT_FALSE(client.TakeReply(reply));
    EXPECT_FALSE(client.Post(kRequest, sizeof(kRequest)));
}

TEST_F(PageTest, PostingClearsAReplyFlagLeftBehind) {
    StoreHeader(*m_page.Get(), kReplyReady, 4);
    SharePageClient client = Client(kTestPage);
    ASSERT_TRUE(client.Post(kRequest, sizeof(kRequest)));
    EXPECT_EQ(0x0000000400000001U, m_page.Get()->header.load());
    SharePageHeader header = {};
    EXPECT_EQ(State::kWaiting, client.Look(header));
    EXPECT_EQ(State::kTimedOut, client.Wait(std::chrono::steady_clock::now()));
}
