#include "tools/call/exchange.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "page/page_mapping.h"
#include "page/page_queue.h"
#include "page/share_page_client.h"
#include "platform/device_root.h"
#include "tools/call/stop_message.h"

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using MaybeFailure = std::optional<Failure>;

constexpr milliseconds kPollStep{10};
constexpr milliseconds kGoOnStep{50};  // from one call of goOn to the next

// Whether the file has a page that its disk has no block for. An access then fails as if the file
// were empty.
bool IsOnFullDisk(int file) {
    struct stat info = {};
    struct statvfs disk = {};
    return fstat(file, &info) == 0 && info.st_size != 0 && fstatvfs(file, &disk) == 0 &&
           disk.f_bavail == 0;
}

// One exchange on a mapped page, step by step.
class Exchange {
public:
    // Borrows the page and its file.
    Exchange(const ExchangeLimits& limits, SharePage* page, int file)
        : m_limits(limits), m_file(file), m_client(page, kPollStep), m_stopMessage(page) {}

    MaybeFailure Run(const android::Parcel& request, std::vector<std::uint8_t>& reply) {
        PageQueue turn(m_file);
        if (MaybeFailure failure = AwaitTurn(turn)) {
            return failure;
        }
        if (MaybeFailure failure = AwaitEarlierReply()) {
            return failure;
        }
        if (MaybeFailure failure = FailureOf(m_stopMessage.Post(m_client, request))) {
            return failure;
        }
        if (MaybeFailure failure = AwaitReply()) {
            return failure;
        }
        return FailureOf(m_client.TakeReply(reply));
    }

private:
    MaybeFailure FailureOf(PageResult result) const {
        if (result == PageResult::kDone) {
            return std::nullopt;
        }
        const bool isFull = result == PageResult::kPageGone && IsOnFullDisk(m_file);
        return PageFailure(kExitPage, isFull ? std::strerror(ENOSPC) : PageResultText(result));
    }

    MaybeFailure AwaitTurn(PageQueue& turn) {
        const int error =
            WaitWhile(EAGAIN, [&turn](Clock::time_point until) { return turn.Wait(until); });
        if (error == 0) {
            return std::nullopt;
        }
        return error == EAGAIN ? PageFailure(kExitBusy, "no turn" + Within() + "; nothing was sent")
                               : PageFailure(kExitPage, std::strerror(error));
    }

    MaybeFailure AwaitEarlierReply() {
        SharePageHeader header = {};
        PageResult result = m_client.Look(header);
        const bool isWaiting =
            (header.flags & kRequestPosted) != 0 && (header.flags & kReplyReady) == 0;
        if (result == PageResult::kDone && isWaiting && !m_limits.force) {
            result = WaitForReply();
        }
        if (result == PageResult::kNotAnswered) {
            return PageFailure(kExitBusy,
                               "an earlier request got " + NoReply() + "; nothing was sent");
        }
        return FailureOf(result);
    }

    MaybeFailure AwaitReply() {
        const PageResult result = WaitForReply();
        if (result == PageResult::kNotAnswered) {
            return PageFailure(kExitNoAnswer, NoReply() + "; the request stays in it");
        }
        return FailureOf(result);
    }

    // Calls `wait` with times until which it may wait. Returns its first result other than
    // `pending`; or `pending` after the timeout or if goOn ended it. As goOn may take long, `wait`
    // comes after it.
    template <typename Result, typename Wait>
    Result WaitWhile(Result pending, Wait wait) {
        Result result = pending;
        do {
            m_stopped = m_limits.goOn && !m_limits.goOn();
            result =
                wait(m_stopped ? Clock::now() : std::min(m_deadline, Clock::now() + kGoOnStep));
        } while (result == pending && !m_stopped && Clock::now() < m_deadline);
        return result;
    }

    PageResult WaitForReply() {
        return WaitWhile(PageResult::kNotAnswered,
                         [this](Clock::time_point until) { return m_client.Wait(until); });
    }

    std::string Within() const {
        return m_stopped ? " until stopped"
                         : " within " + std::to_string(m_limits.timeout.count()) + " ms";
    }

    // That no reply came, and whether a service has the page.
    std::string NoReply() const {
        std::string text = "no reply" + Within();
        switch (LockPage(m_file, PageLockByte::kService, PageLockMode::kQuery)) {
            case 0:
                return text + ", and no service has the page";
            case EAGAIN:
                return text + ", though a service has the page";
            default:
                return text;
        }
    }

    const ExchangeLimits& m_limits;
    const int m_file;
    const Clock::time_point m_deadline = Clock::now() + m_limits.timeout;
    bool m_stopped = false;  // by goOn
    SharePageClient m_client;
    StopMessage m_stopMessage;
};

}  // namespace

std::optional<Failure> RunExchange(const android::Parcel& request, const ExchangeLimits& limits,
                                   std::vector<std::uint8_t>& reply) {
    UniqueFd file;
    std::string reason;
    const PageMapping page = MapPageFile(O_RDWR, file, reason);
    if (page.Get() == nullptr) {
        return PageFailure(kExitPage, reason);
    }
    return Exchange(limits, page.Get(), file.Get()).Run(request, reply);
}

Failure PageFailure(ExitStatus status, const std::string& reason) {
    return {status, std::string("the page ") + kSharePageFile + ": " + reason};
}
