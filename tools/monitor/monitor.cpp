#include <cstdio>
#include <map>

#include "catalogue/cmds_by_number.h"
#include "tools/call/reply.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/interval_timer.h"
#include "tools/monitor/page_observer.h"
#include "tools/report.h"
#include "tools/text.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;
using Ms = std::chrono::milliseconds;

// Follows the messages from one to the next.
class Monitor {
public:
    Monitor(const CommandLine& line, const KoFileParse& catalogue)
        : m_line(line), m_cmds(catalogue) {}

    void Tell(const PageCopy& page) {
        const unsigned int flags = page.header.flags;
        const bool isReply = (flags & kReplyReady) != 0;
        const bool isRequest = !isReply && (flags & kRequestPosted) != 0;
        const bool isAlone = m_waiting && !isReply;
        const char* kind = isReply ? "reply" : isRequest ? "request" : "nothing";
        Report report(kind, std::chrono::system_clock::now());
        report.AddFaultIf(isAlone, "no reply was seen to the request before");
        m_requestsAlone += isAlone ? 1 : 0;
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
        report.Print(m_line.json.has_value());
    }

    void Summarise() const {
        Report report("summary", std::chrono::system_clock::now());
        report.Add("exchanges", m_exchanges);
        if (m_exchanges != 0) {
            auto median = m_latencies.begin();
            for (auto upTo = median->second; upTo * 2 < m_exchanges; upTo += median->second) {
                ++median;
            }
            report.Add("least_ms", m_latencies.begin()->first);
            report.Add("median_ms", median->first);
            report.Add("longest_ms", m_latencies.rbegin()->first);
        }
        report.Add("requests_alone", m_requestsAlone + (m_waiting ? 1 : 0));
        report.Add("replies_alone", m_repliesAlone);
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

    // Which values it has is known when the request was seen.
    void TellReply(const Bytes& bytes, Report& report) {
        android::Parcel reply;
        reply.setData(bytes.data(), bytes.size());
        report.Add("status", reply.readInt32());
        report.AddFaultIf(!m_waiting, "no request was seen before");
        if (!m_waiting) {
            ++m_repliesAlone;
            return;
        }
        const auto ms = std::chrono::duration_cast<Ms>(Clock::now() - m_requestTime).count();
        ++m_exchanges;
        ++m_latencies[ms];
        report.Add("latency_ms", ms);
        if (m_request.cmd != nullptr) {
            std::vector<ReplyRecord> records;
            reply.setData(bytes.data(), bytes.size());
            const Outcome outcome = ReadReply(*m_request.cmd, reply, records);
            report.AddFaultIf(outcome.status == kExitPage, outcome.reason);
            report.Add("records", RecordsJson(*m_request.cmd, records, m_int64));
        }
    }

    const CommandLine& m_line;
    const JsonInt64 m_int64 = m_line.json.value_or(JsonInt64::kNumber);
    const CmdsByNumber m_cmds;
    bool m_waiting = false;           // the last message is a request:
    CmdsByNumber::Request m_request;  // this one
    Clock::time_point m_requestTime;
    std::map<std::int64_t, std::uint64_t> m_latencies;  // ms, and how often
    std::uint64_t m_exchanges = 0;
    std::uint64_t m_requestsAlone = 0;
    std::uint64_t m_repliesAlone = 0;
};

}  // namespace

int RunMonitor(const CommandLine& line) {
    KoFileParse catalogue;
    PageObserver page;
    if (!LoadCatalogue(FindCatalogue(line.catalogue), catalogue)) {
        return kExitNotSent;
    }
    const Outcome opened = page.Open();
    if (opened.status != kExitDone) {
        Complain(opened.reason);
        return opened.status;
    }
    IntervalTimer timer(Ms{1});
    Monitor monitor(line, catalogue);
    // A reply that is there at the start is none of this time.
    bool isNew = page.Look() && page.Last().header.flags != kReplyReady;
    for (std::size_t left = line.count; left != 0; isNew = page.Look()) {
        if (isNew) {
            monitor.Tell(page.Last());
            --left;
        }
        if (left == 0 || std::ferror(stdout) != 0 || timer.Wait() != 0) {
            break;
        }
    }
    monitor.Summarise();
    return kExitDone;
}
