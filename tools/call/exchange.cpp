#include "tools/call/exchange.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <vector>

#include "page/page_queue.h"
#include "page/share_page_client.h"
#include "platform/device_root.h"

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds kPollStep{10};
constexpr milliseconds kAskStep{50};
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

Outcome Fault(ExitStatus status, const std::string& reason) {
    return {status, std::string("the page ") + kSharePageFile + ": " + reason};
}

// The way to the service while one call lasts.
class Exchange {
public:
    explicit Exchange(const CallLimits& limits)
        : m_limits(limits), m_deadline(Clock::now() + limits.timeout) {}

    Outcome Run(const android::Parcel& request, std::vector<std::uint8_t>& reply);

private:
    Outcome RunInTurn(const android::Parcel& request, std::vector<std::uint8_t>& reply);

    // Lets `attempt` wait, in short pieces where somebody is to be asked whether to go on.
    template <typename Attempt>
    bool Try(Attempt attempt) {
        const auto& goOn = m_limits.goOn;
        do {
            if (attempt(goOn ? std::min(m_deadline, Clock::now() + kAskStep) : m_deadline)) {
                return true;
            }
            m_gaveUp = goOn && !goOn();
        } while (!m_gaveUp && Clock::now() < m_deadline);
        return false;
    }

    PageResult AwaitReply(SharePageClient& client) {
        PageResult result = PageResult::kNotAnswered;
        Try([&](Clock::time_point end) {
            result = client.Wait(end);
            return result != PageResult::kNotAnswered;
        });
        return result;
    }

    // kDone when no earlier request waits for its answer.
    PageResult AwaitEarlier(SharePageClient& client) {
        SharePageHeader header = {};
        const PageResult looked = client.Look(header);
        const bool waiting =
            (header.flags & kRequestPosted) != 0 && (header.flags & kReplyReady) == 0;
        return looked == PageResult::kDone && waiting && !m_limits.force ? AwaitReply(client)
                                                                         : looked;
    }

    std::string Within() const {
        return m_gaveUp ? " until the end"
                        : " within " + std::to_string(m_limits.timeout.count()) + " ms";
    }

    const CallLimits& m_limits;
    const Clock::time_point m_deadline;
    bool m_gaveUp = false;
    UniqueFd m_file;
    PageMapping m_mapping;
    StopReport m_report;  // looks at the mapping, so it goes first
};

Outcome Exchange::Run(const android::Parcel& request, std::vector<std::uint8_t>& reply) {
    Outcome mapped = MapPage(O_RDWR, PROT_READ | PROT_WRITE, m_file, m_mapping);
    if (mapped.status != kExitDone) {
        return mapped;
    }
    PageQueue turn(m_file.Get());
    int refused = EAGAIN;
    Try([&](Clock::time_point end) {
        refused = turn.Wait(end);
        return refused != EAGAIN;
    });
    if (refused == EAGAIN) {
        return Fault(kExitBusy, "others used it" + Within() + "; nothing was sent");
    }
    return refused == 0 ? RunInTurn(request, reply) : Fault(kExitPage, std::strerror(refused));
}

Outcome Exchange::RunInTurn(const android::Parcel& request, std::vector<std::uint8_t>& reply) {
    SharePageClient client(m_mapping.Get(), kPollStep);
    PageResult result = AwaitEarlier(client);
    if (result == PageResult::kNotAnswered) {
        return Fault(kExitNoAnswer, "an earlier request in it is not answered either" + Within() +
                                        ": no service seems to run; nothing was sent");
    }
    if (result == PageResult::kDone) {
        result = m_report.Post(client, m_mapping.Get(), request);
    }
    if (result == PageResult::kDone) {
        result = AwaitReply(client);
    }
    if (result == PageResult::kNotAnswered) {
        return Fault(kExitNoAnswer, "no answer" + Within() + "; the request stays there");
    }
    if (result == PageResult::kDone) {
        result = client.TakeReply(reply);
    }
    return result == PageResult::kDone ? Outcome() : Fault(kExitPage, PageResultText(result));
}

}  // namespace

Outcome MapPage(int flags, int protection, UniqueFd& file, PageMapping& mapping) {
    file = UniqueFd(open(kSharePageFile, flags | O_CLOEXEC));
    mapping = file.IsOpen() ? PageMapping(file.Get(), protection) : PageMapping();
    return mapping.Get() != nullptr ? Outcome() : Fault(kExitPage, std::strerror(errno));
}

Outcome CallService(const android::Parcel& request, const CallLimits& limits,
                    android::Parcel& reply) {
    std::vector<std::uint8_t> bytes;
    Outcome outcome = Exchange(limits).Run(request, bytes);
    reply.setData(bytes.data(), bytes.size());
    return outcome;
}
