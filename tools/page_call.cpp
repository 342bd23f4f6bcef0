#include "tools/page_call.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

#include "page/share_page_client.h"
#include "platform/device_root.h"
#include "platform/unique_fd.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds kPollStep{10};
constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

// For the handler: the page that holds the request; null until one was posted.
SharePage* volatile g_postedPage = nullptr;

void Say(const char* text) {
    // Nothing can be done about a message that cannot be written.
    static_cast<void>(!write(STDERR_FILENO, text, std::strlen(text)));
}

void OnStop(int signal) {
    SharePageHeader header = {};
    if (g_postedPage == nullptr) {
        Say("ko_cmd_tool: ended by a signal; nothing was sent\n");
    } else if (SharePageClient(g_postedPage).Look(header) == PageResult::kDone &&
               (header.flags & kReplyReady) == 0) {
        Say("ko_cmd_tool: ended by a signal; the request stays in the page\n");
    } else {
        Say("ko_cmd_tool: ended by a signal; the request was answered\n");
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Has signals that end the process say what becomes of the request, while it lives.
class StopReport {
public:
    StopReport() {
        sigemptyset(&m_signals);
        for (std::size_t i = 0; i < kStopSignals.size(); ++i) {
            struct sigaction action = {};
            action.sa_handler = OnStop;
            sigaction(kStopSignals[i], nullptr, &m_previous[i]);
            // One that is ignored, as under nohup, stays so.
            if (m_previous[i].sa_handler == SIG_DFL) {
                sigaction(kStopSignals[i], &action, nullptr);
            }
            sigaddset(&m_signals, kStopSignals[i]);
        }
    }
    ~StopReport() {
        for (std::size_t i = 0; i < kStopSignals.size(); ++i) {
            sigaction(kStopSignals[i], &m_previous[i], nullptr);
        }
        g_postedPage = nullptr;
    }
    StopReport(const StopReport&) = delete;
    StopReport& operator=(const StopReport&) = delete;

    // Posts the request in one step as far as a signal can see.
    PageResult Post(SharePageClient& client, SharePage* page, const android::Parcel& request) {
        sigset_t before;
        sigprocmask(SIG_BLOCK, &m_signals, &before);
        const PageResult posted = client.Post(request.data(), request.dataSize());
        g_postedPage = posted == PageResult::kDone ? page : nullptr;
        sigprocmask(SIG_SETMASK, &before, nullptr);
        return posted;
    }

private:
    sigset_t m_signals;
    std::array<struct sigaction, kStopSignals.size()> m_previous;
};

int Fail(ExitStatus status, const std::string& reason) {
    Complain(std::string("the page ") + kSharePageFile + ": " + reason);
    return status;
}

std::string Within(milliseconds timeout) {
    return " within " + std::to_string(timeout.count()) + " ms";
}

// kDone when no earlier request waits for its answer.
PageResult AwaitEarlier(SharePageClient& client, Clock::time_point deadline, bool force) {
    SharePageHeader header = {};
    const PageResult looked = client.Look(header);
    const bool waiting = (header.flags & kRequestPosted) != 0 && (header.flags & kReplyReady) == 0;
    return looked == PageResult::kDone && waiting && !force ? client.Wait(deadline) : looked;
}

}  // namespace

int PageCall::Open() {
    const UniqueFd file(open(kSharePageFile, O_RDWR | O_CLOEXEC));
    m_mapping = file.IsOpen() ? PageMapping(file.Get()) : PageMapping();
    if (m_mapping.Get() == nullptr) {
        return Fail(kExitPage, std::strerror(errno));
    }
    m_lock = PageLock(file.Get());
    return kExitDone;
}

int PageCall::Exchange(const android::Parcel& request, milliseconds timeout, bool force,
                       std::vector<std::uint8_t>& reply) {
    const auto deadline = Clock::now() + timeout;
    StopReport report;
    const PageTurn turn(m_lock, deadline);
    if (!turn.Taken()) {
        return Fail(kExitBusy, "others used it" + Within(timeout) + "; nothing was sent");
    }
    SharePageClient client(m_mapping.Get(), kPollStep);
    PageResult result = AwaitEarlier(client, deadline, force);
    if (result == PageResult::kNotAnswered) {
        return Fail(kExitNoAnswer, "an earlier request in it is not answered either" +
                                       Within(timeout) +
                                       ": no service seems to run; nothing was sent");
    }
    if (result == PageResult::kDone) {
        result = report.Post(client, m_mapping.Get(), request);
    }
    if (result == PageResult::kDone) {
        result = client.Wait(deadline);
    }
    if (result == PageResult::kNotAnswered) {
        return Fail(kExitNoAnswer, "no answer" + Within(timeout) + "; the request stays there");
    }
    if (result == PageResult::kDone) {
        result = client.TakeReply(reply);
    }
    return result == PageResult::kDone ? kExitDone : Fail(kExitPage, PageResultText(result));
}
