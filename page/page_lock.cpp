#include "page/page_lock.h"

#include <fcntl.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "page/share_page.h"
#include "platform/ko_log.h"

namespace {

static_assert(sizeof(off_t) == 8, "locks need _FILE_OFFSET_BITS=64 on a 32-bit system");

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

// Lets SIGALRM end a blocked wait of the calling thread from `time` on, again and again: one that
// came just before the wait began would be lost.
class WaitLimit {
public:
    explicit WaitLimit(Clock::duration time) {
        constexpr microseconds kRepeat{10'000};
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &m_previous);
        const auto first =
            std::max(std::chrono::duration_cast<microseconds>(time), microseconds{1});
        Arm(first, kRepeat);
    }
    ~WaitLimit() {
        Arm(microseconds{0}, microseconds{0});
        sigaction(SIGALRM, &m_previous, nullptr);
    }
    WaitLimit(const WaitLimit&) = delete;
    WaitLimit& operator=(const WaitLimit&) = delete;

private:
    static timeval TimeValue(microseconds time) {
        constexpr int kMicro = 1'000'000;
        timeval value = {};
        value.tv_sec = static_cast<std::time_t>(time.count() / kMicro);
        value.tv_usec = static_cast<suseconds_t>(time.count() % kMicro);
        return value;
    }

    static void Arm(microseconds first, microseconds repeat) {
        const itimerval timer = {TimeValue(repeat), TimeValue(first)};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }

    struct sigaction m_previous = {};
};

}  // namespace

PageLock::PageLock(int pageFile) : m_file(fcntl(pageFile, F_DUPFD_CLOEXEC, 0)) {}

bool PageLock::Take(Deadline deadline) {
    if (!m_file.IsOpen()) {
        return true;
    }
    int error = LockPage(m_file.Get(), PageLockByte::kClient, PageLockMode::kTry);
    if (error == EAGAIN && !TryUntil(deadline, error)) {
        return false;
    }
    if (error != 0) {
        KoLog::PrintLog(ATV_LOG_PRIO_WARN, kLogTag, __func__, __LINE__,
                        "the page cannot be locked, and is used without: %s", std::strerror(error));
        m_file = UniqueFd();
    }
    return true;
}

// Blocks: who only asked now and then would hardly find the page free between others' exchanges.
bool PageLock::TryUntil(Deadline deadline, int& error) {
    std::optional<WaitLimit> limit;
    if (deadline) {
        limit.emplace(*deadline - Clock::now());
    }
    do {
        if (deadline && Clock::now() >= *deadline) {
            return false;
        }
        error = LockPage(m_file.Get(), PageLockByte::kClient, PageLockMode::kWait);
    } while (error == EINTR);
    return true;
}

void PageLock::Release() {
    if (m_file.IsOpen()) {
        LockPage(m_file.Get(), PageLockByte::kClient, PageLockMode::kRelease);
    }
}
