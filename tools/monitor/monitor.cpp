#include <map>

#include "catalogue/cmds_by_number.h"
#include "tools/call/reply.h"
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
using SystemClock = std::chrono::system_clock;
using Ms = std::chrono::milliseconds;

// What the summary says.
struct Counts {
    std::map<std::int64_t, std::uint64_t> latencies;  // ms, and the exchanges that took them
    std::uint64_t exchanges = 0;
    std::uint64_t requestsAlone = 0;
    std::uint64_t repliesAlone = 0;

    std::int64_t Median() const {
        auto latency = latencies.begin();
        for (auto upTo = latency->second; upTo * 2 < exchanges; upTo += latency->second) {
            ++latency;
        }
        return latency->first;
    }
};

// Follows the messages from one to the next.
class Monitor {
public:
    Monitor(const CommandLine& line, const KoFileParse& catalogue)
        : m_line(line), m_cmds(catalogue) {}

    // False if standard output has failed.
    bool Tell(const PageCopy& page) {
        const unsigned int flags = page.header.flags;
        const bool isReply = (flags & kReplyReady) != 0;
        const bool isRequest = !isReply && (flags & kRequestPosted) != 0;
        const bool isAlone = m_waiting && !isReply;
        Report report(isReply ? "reply" : isRequest ? "request" : "nothing", SystemClock::now());
        report.AddFaultIf(isAlone, "no reply was seen to the request before");
        m_counts.requestsAlone += isAlone ? 1 : 0;
        if (isRequest) {
            TellRequest(page.Data(), report);
        } else if (isReply) {
            TellReply(page.Data(), report);
        }
        m_waiting = isRequest;
        const std::uint8_t* zero = page.header.zero;
        report.AddFaultIf(flags > kReplyReady || (zero[0] | zero[1] | zero[2]) != 0,
                          "forbidden flags");
        report.AddFaultIf(page.header.length > kDataCapacity, "forbidden length");
        if (m_line.hex || report.HasFaults()) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(&page);
            report.Add("bytes", HexBytes(bytes, page.Size()));
        }
        return report.Print(m_line.json.has_value());
    }

    void Summarise() const {
        Report report("summary", SystemClock::now());
        report.Add("exchanges", m_counts.exchanges);
        if (m_counts.exchanges != 0) {
            report.Add("least_ms", m_counts.latencies.begin()->first);
            report.Add("median_ms", m_counts.Median());
            report.Add("longest_ms", m_counts.latencies.rbegin()->first);
        }
        report.Add("requests_alone", m_counts.requestsAlone + (m_waiting ? 1 : 0));
        report.Add("replies_alone", m_counts.repliesAlone);
        report.Print(m_line.json.has_value());
    }

private:
    void TellRequest(const Bytes& bytes, Report& report) {
        m_requestTime = Clock::now();
        m_request = m_cmds.Decode(bytes);
        if (m_request.cmd != nullptr) {
            Json arguments = Json::array();
            for (const ParcelField& argument : m_request.arguments) {
                arguments.push_back(JsonValue(argument.value, m_int64));
            }
            report.Add("module", m_request.cmd->m_strBelongMod);
            report.Add("command", m_request.cmd->m_strCmd);
            report.Add("arguments", arguments);
        }
        report.AddFaultIf(m_request.cmd == nullptr, m_request.known
                                                        ? "the arguments do not decode"
                                                        : "no command has this instruction");
        report.Add("instruction", Hex(m_request.instruct));
    }

    void TellReply(const Bytes& bytes, Report& report) {
        android::Parcel parcel;
        parcel.setData(bytes.data(), bytes.size());
        report.Add("status", parcel.readInt32());
        report.AddFaultIf(!m_waiting, "no request was seen before");
        if (!m_waiting) {
            ++m_counts.repliesAlone;
            return;
        }
        const auto latency = std::chrono::duration_cast<Ms>(Clock::now() - m_requestTime).count();
        ++m_counts.exchanges;
        ++m_counts.latencies[latency];
        report.Add("latency_ms", latency);
        if (m_request.cmd != nullptr) {
            TellRecords(bytes, report);
        }
    }

    void TellRecords(const Bytes& bytes, Report& report) const {
        Reply reply = {bytes, {}};
        const auto failure = ReadReply(*m_request.cmd, reply);
        if (failure) {
            report.AddFaultIf(failure->status == kExitPage, failure->reason);
        }
        report.Add("records", RecordsJson(*m_request.cmd, reply.records, m_int64));
    }

    const CommandLine& m_line;
    const JsonInt64 m_int64 = m_line.json.value_or(JsonInt64::kNumber);
    const CmdsByNumber m_cmds;
    bool m_waiting = false;           // the last message is a request:
    CmdsByNumber::Request m_request;  // this one
    Clock::time_point m_requestTime;
    Counts m_counts;
};

}  // namespace

int RunMonitor(const CommandLine& line) {
    KoFileParse catalogue;
    PageObserver page;
    if (const auto failure = LoadCatalogue(FindCatalogue(line.catalogue), catalogue)) {
        return Complain(*failure);
    }
    if (const auto failure = page.Open()) {
        return Complain(*failure);
    }
    IntervalTimer timer(Ms{1});
    Monitor monitor(line, catalogue);
    // A reply that is there at the start is none of this time.
    bool isNew = page.Poll() && page.Last().header.flags != kReplyReady;
    for (std::size_t left = line.count; left != 0; isNew = page.Poll()) {
        if (isNew) {
            left = monitor.Tell(page.Last()) ? left - 1 : 0;
        }
        if (left == 0 || timer.Wait() != 0) {
            break;
        }
    }
    monitor.Summarise();
    return OutputStatus();
}
