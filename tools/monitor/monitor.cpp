#include <sys/resource.h>

#include <map>
#include <utility>

#include "catalogue/cmds_by_number.h"
#include "tools/call/prepared_request.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/interval_timer.h"
#include "tools/monitor/page_observer.h"
#include "tools/output.h"
#include "tools/report.h"
#include "tools/text.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;
using Ms = std::chrono::milliseconds;

// A page that nobody looked at for longer may have had a reply and the next request meanwhile.
constexpr Ms kMaxPause{5};

Report NewReport(const std::string& message) {
    return {message, std::chrono::system_clock::now()};
}

// "band=3, gain dB=-1.5; band=4, gain dB=2"
std::string RecordsText(const Json& records) {
    std::string text;
    for (const Json& record : records) {
        const char* separator = text.empty() ? "" : "; ";
        for (const auto& [name, value] : record.items()) {
            text += separator + ShownText(name, false) + "=" + JsonText(value);
            separator = ", ";
        }
    }
    return text;
}

// Pairs requests with their replies, and reports each pair, and what has no other half.
class Monitor {
public:
    // Borrows all.
    Monitor(const CommandLine& line, const CmdsByNumber& cmds, PageObserver& page)
        : m_line(line), m_cmds(cmds), m_page(page) {}

    void Look() {
        const auto now = Clock::now();
        const bool isNew = m_page.Poll();
        // From before the earlier look until after this one.
        const auto pause = std::chrono::duration_cast<Ms>(Clock::now() - m_lookTime.value_or(now));
        const Ms lookedAway = pause > kMaxPause ? pause : Ms{0};
        m_lookedAway = (m_isWaiting ? m_lookedAway : Ms{0}) + lookedAway;
        // A reply that is there at the start is none of this time.
        if (isNew && (m_lookTime || m_page.Last().header.flags != kReplyReady)) {
            Take(m_page.Last(), lookedAway);
        }
        m_lookTime = now;
    }

    // False once as many lines as asked for are printed, or standard output has failed.
    bool WantsMore() const { return m_linesLeft != 0; }

    void Finish() {
        if (m_isWaiting) {
            m_lookedAway = Ms{0};
            End("request", " -> no reply seen");
        }
        Report summary = NewReport("");
        summary.Add("message", "summary", " summary");
        const auto add = [&summary](const std::string& name, auto value) {
            summary.Add(name, value, " " + name + "=" + std::to_string(value));
        };
        add("exchanges", m_counts["exchange"]);
        if (!m_latencies.empty()) {
            add("min_ms", m_latencies.begin()->first);
            add("median_ms", MedianLatency());
            add("max_ms", m_latencies.rbegin()->first);
        }
        add("requests_without_reply", m_counts["request"]);
        add("replies_without_request", m_counts["reply"]);
        summary.Print(m_line.json.has_value());
    }

private:
    // A reply that came while nobody looked may be to another request than the one that was seen.
    void Take(const PageCopy& page, Ms lookedAway) {
        const unsigned int flags = page.header.flags;
        const bool isReply = (flags & kReplyReady) != 0;
        if (m_isWaiting && (!isReply || lookedAway.count() != 0)) {
            m_lookedAway = lookedAway;
            End("request", " -> no reply seen");
        }
        if (!m_isWaiting) {
            m_report = NewReport("exchange");
            m_request = {};
        }
        if (isReply) {
            TakeReply(page.Data());
            AddBytes("reply_bytes", page);
            End(m_isWaiting ? "exchange" : "reply", m_isWaiting ? "" : " (no request seen)");
        } else if ((flags & kRequestPosted) != 0) {
            TakeRequest(page.Data());
            AddBytes("request_bytes", page);
        } else if (AddBytes("page_bytes", page); m_report.HasFaults()) {
            End("page");
        }
    }

    void TakeRequest(const Bytes& bytes) {
        m_isWaiting = true;
        m_requestTime = Clock::now();
        m_request = m_cmds.Decode(bytes);
        const KoFileParse::KoCmdInfo* cmd = m_request.cmd;
        if (cmd == nullptr) {
            const std::string instruct = Hex(m_request.instruct);
            m_report.Add("instruction", instruct, " " + instruct);
            m_report.AddFaultIf(true, m_request.known ? "the arguments do not decode"
                                                      : "no command has this instruction");
            return;
        }
        m_report.Add("module", cmd->m_strBelongMod, " " + cmd->m_strBelongMod);
        m_report.Add("command", cmd->m_strCmd, " " + cmd->m_strCmd);
        Json arguments = Json::array();
        std::string text;
        for (const ParcelField& argument : m_request.arguments) {
            arguments.push_back(JsonValue(argument.value, m_int64));
            text += " " + JsonText(arguments.back());
        }
        m_report.Add("arguments", arguments, text);
    }

    void TakeReply(const Bytes& bytes) {
        if (bytes.size() < sizeof(std::int32_t)) {
            m_report.AddFaultIf(true, "the reply is too short for a status");
            return;
        }
        android::Parcel parcel;
        parcel.setData(bytes.data(), bytes.size());
        const std::int32_t status = parcel.readInt32();
        Reply reply = {bytes, {}};
        std::optional<Failure> failure;
        Json records = Json::array();
        if (m_request.cmd != nullptr && !(failure = ReadReply(*m_request.cmd, reply))) {
            records = RecordsJson(*m_request.cmd, reply.records, m_int64);
        }
        m_report.Add(
            "status", status,
            " -> " + (records.empty() ? "status " + std::to_string(status) : RecordsText(records)));
        if (m_isWaiting && m_lookedAway.count() == 0) {
            const auto latency = std::chrono::duration_cast<Ms>(Clock::now() - m_requestTime);
            m_report.Add("latency_ms", latency.count(),
                         " (" + std::to_string(latency.count()) + " ms)");
            if (IsShown()) {
                ++m_timed;
                ++m_latencies[latency.count()];
            }
        }
        if (status == 0 && !failure && m_request.cmd != nullptr) {
            m_report.Add("records", records);
        }
        m_report.AddFaultIf(failure && failure->status == kExitPage,
                            failure ? failure->reason : "");
    }

    void AddBytes(const std::string& name, const PageCopy& page) {
        const std::uint8_t* zero = page.header.zero;
        m_report.AddFaultIf(page.header.flags > kReplyReady || (zero[0] | zero[1] | zero[2]) != 0,
                            "forbidden flags");
        m_report.AddFaultIf(page.header.length > kDataCapacity, "forbidden length");
        if (m_line.hex || m_report.HasFaults()) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(&page);
            const std::string text = HexBytes(bytes, page.Size());
            m_report.Add(name, text, " [" + text + "]");
        }
    }

    // Whether the command line asks for the request that was seen last.
    bool IsShown() const { return m_line.words.empty() || m_request.known; }

    void End(const std::string& message, const std::string& text = "") {
        m_report.Add("message", message, text);
        m_report.AddFaultIf(m_lookedAway.count() != 0,
                            "looked away for " + std::to_string(m_lookedAway.count()) + " ms");
        if (WantsMore() && IsShown()) {
            ++m_counts[message];
            m_linesLeft = m_report.Print(m_line.json.has_value()) ? m_linesLeft - 1 : 0;
        }
        m_isWaiting = false;
    }

    std::int64_t MedianLatency() const {
        auto latency = m_latencies.begin();
        for (auto left = (m_timed - 1) / 2; left >= latency->second; ++latency) {
            left -= latency->second;
        }
        return latency->first;
    }

    const CommandLine& m_line;
    const JsonInt64 m_int64 = m_line.json.value_or(JsonInt64::kNumber);
    const CmdsByNumber& m_cmds;
    PageObserver& m_page;
    std::optional<Clock::time_point> m_lookTime;
    std::size_t m_linesLeft = m_line.count;
    Report m_report = NewReport("");  // of the last message
    bool m_isWaiting = false;         // the last message is a request:
    CmdsByNumber::Request m_request;  // this one
    Clock::time_point m_requestTime;
    Ms m_lookedAway{0};  // since the request was seen, or before the last poll
    std::map<std::string, std::uint64_t> m_counts;      // of lines
    std::uint64_t m_timed = 0;                          // exchanges whose latency is known
    std::map<std::int64_t, std::uint64_t> m_latencies;  // ms, and the exchanges that took them
};

}  // namespace

int RunMonitor(const CommandLine& line) {
    KoFileParse catalogue;
    std::vector<const KoFileParse::KoCmdInfo*> shown;
    PageObserver page;
    auto failure = LoadCatalogue(FindCatalogue(line.catalogue), catalogue);
    if (!failure && !line.words.empty()) {
        failure = FindCommands(catalogue, line.words, shown);
    }
    if (!failure) {
        failure = page.Open();
    }
    if (failure) {
        return Complain(*failure);
    }
    const CmdsByNumber cmds = line.words.empty() ? CmdsByNumber(catalogue) : CmdsByNumber(shown);
    // Runs as soon as its time has come, if it may: what it polls late it may miss.
    setpriority(PRIO_PROCESS, 0, -20);
    IntervalTimer timer(Ms{1});
    Monitor monitor(line, cmds, page);
    do {
        monitor.Look();
    } while (monitor.WantsMore() && timer.Wait() == 0);
    monitor.Finish();
    return OutputStatus();
}
