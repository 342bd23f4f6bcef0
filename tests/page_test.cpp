#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include <gtest/gtest.h>

#include "page/page_guard.h"
#include "page/page_lock.h"
#include "page/share_page_client.h"
#include "tests/support/played_page.h"
#include "tests/support/recorded_log.h"
#include "tests/support/test_root.h"

// What replies become is tested in programs/test_replies.py; here is what no console shows.

namespace {

class PageTest : public testing::Test {
protected:
    TestRoot m_root;
    PlayedPage m_page;
};

}  // namespace

TEST_F(PageTest, TheGuardNestsUnblocksItsSignalAndPassesOthersOn) {
    static volatile std::sig_atomic_t passedOn = 0;
    // A fault that was not escaped comes back for ever.
    std::signal(SIGBUS, [](int) {
        if (passedOn != 0) {
            _exit(1);
        }
        passedOn = 1;
    });
    sigset_t bus;
    sigemptyset(&bus);
    sigaddset(&bus, SIGBUS);
    pthread_sigmask(SIG_BLOCK, &bus, nullptr);
    ASSERT_EQ(0, truncate(kTestPage, 0));
    bool wentOn = false;
    volatile std::uint8_t flags = 0;
    const auto read = [&] { flags = LoadHeader(*m_page.Get()).flags; };
    EXPECT_FALSE(GuardPageAccess([&] {
        const bool inner = GuardPageAccess(read);
        wentOn = !inner;
        read();
        wentOn = false;
    }));
    EXPECT_TRUE(wentOn && passedOn == 0);
    sigset_t now;
    pthread_sigmask(SIG_UNBLOCK, &bus, &now);
    EXPECT_EQ(1, sigismember(&now, SIGBUS));
    std::raise(SIGBUS);
    EXPECT_EQ(1, passedOn);
}

TEST_F(PageTest, AReplyThatDoesNotFitIsRefused) {
    const std::vector<std::uint8_t> reply(kDataCapacity + 1);
    EXPECT_FALSE(m_page.Service().PostReply(reply.data(), reply.size()));
    EXPECT_EQ(0, LoadHeader(*m_page.Get()).flags);
    EXPECT_TRUE(m_page.Service().PostReply(reply.data(), kDataCapacity));
}

// Steps of an hour: what is taken now was not waited for.
TEST_F(PageTest, ANewRequestIsLeftToObserversFirst) {
    TvServicePage service(RunGuarded, std::chrono::hours(1));
    std::string error;
    const auto isTaken = [&] {
        std::vector<std::uint8_t> request;
        return service.WaitRequest(std::chrono::nanoseconds(0), request);
    };
    SharePageClient client(m_page.Get());
    constexpr std::uint8_t kMessage[4] = {};
    m_page.Die();
    ASSERT_EQ(PageResult::kDone, client.Post(kMessage, sizeof(kMessage)));
    ASSERT_TRUE(service.Open(kTestPage, error)) << error;
    EXPECT_TRUE(isTaken()) << "it was there before the service";
    EXPECT_TRUE(service.PostReply(kMessage, sizeof(kMessage)));
    ASSERT_EQ(PageResult::kDone, client.Post(kMessage, sizeof(kMessage)));
    EXPECT_FALSE(isTaken());
}

TEST_F(PageTest, WithoutLocksEveryTurnIsGrantedAndTheLogSaysSoOnce) {
    // A descriptor that cannot write gets no exclusive lock.
    PageLock lock(UniqueFd(open(kTestPage, O_RDONLY | O_CLOEXEC)).Get());
    g_logged.clear();
    lock.Take();
    lock.Take();
    EXPECT_EQ(1, std::count(g_logged.begin(), g_logged.end(), '\n')) << g_logged;
    EXPECT_NE(std::string::npos, g_logged.find("cannot lock the page")) << g_logged;
}

// The reply is there already, and the request's flag too: only a wait that sleeps before its first
// look lasts until the alarm, which comes again and again for a wait that began late.
TEST_F(PageTest, TheFirstLookComesAStepAfterPosting) {
    static volatile std::sig_atomic_t woken = 0;
    SharePageClient client(m_page.Get(), std::chrono::hours(1));
    StoreHeader(*m_page.Get(), kReplyReady | kRequestPosted, 4);
    std::signal(SIGALRM, [](int) { woken = 1; });
    const itimerval often = {{0, 10000}, {0, 10000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_EQ(PageResult::kDone, client.Wait(std::chrono::steady_clock::now()));
    EXPECT_EQ(1, woken);
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
}
