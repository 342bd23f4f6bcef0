#include <cstdio>
#include <map>

#include "catalogue/cmds_by_number.h"
#include "tools/beat.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/json.h"
#include "tools/page_observer.h"
#include "tools/reply.h"
#include "tools/text.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;
using Texts = std::vector<std::string>;

// One line of output; as text it has the same names and values as in JSON.
class Report {
public:
    explicit Report(const std::string& kind) {
        const std::string time = IsoTime(std::chrono::system_clock::now());
        m_json.Add("time", JsonString(time));
        m_json.Add("message", JsonString(kind));
        m_text = time.substr(11, 12) + " " + kind;
    }

    // `value` is JSON; the text has it without quotes around it.
    void Add(const std::string& name, const std::string& value) {
        const std::size_t quote = value[0] == '"' ? 1 : 0;
        m_json.Add(name, value);
        m_text += " " + name + "=" + value.substr(quote, value.size() - 2 * quote);
    }

    void AddFault(const std::string& fault) { m_faults.push_back(JsonString(fault)); }
    bool HasFaults() const { return !m_faults.empty(); }

    void Print(bool json) {
        if (HasFaults()) {
            Add("faults", JsonArray(m_faults));
        }
        const auto print = json ? PrintJsonLine : PrintLine;
        print(json ? m_json.Text() : m_text);
        std::fflush(stdout);
    }

private:
    std::string m_text;
    JsonObject m_json;
    Texts m_faults;
};

// Follows the messages from one to the next.
class Monitor {
public:
    Monitor(const CommandLine& line, const KoFileParse& catalogue)
        : m_line(line), m_cmds(catalogue) {}

    void Tell(const PageCopy& page) {
        const unsigned int flags = page.header.flags;
        const bool isReply = (flags & kReplyReady) != 0;
        const bool isRequest = !isReply && (flags & kRequestPosted) != 0;
        Report report(isReply ? "reply" : isRequest ? "request" : "nothing");
        if (m_waiting && !isReply) {
            ++m_requestsAlone;
            report.AddFault("no reply was seen to the request before");
        }
        if (isRequest) {
            TellRequest(page.Data(), report);
        } else if (isReply) {
            TellReply(page.Data(), report);
        }
        m_waiting = isRequest;
        const std::uint8_t* zero = page.header.zero;
        if (flags > kReplyReady || (zero[0] | zero[1] | zero[2]) != 0) {
            report.AddFault("forbidden flags");
        }
        if (page.header.length > kDataCapacity) {
            report.AddFault("forbidden length");
        }
        if (m_line.hex || report.HasFaults()) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(&page);
            report.Add("bytes", JsonString(HexBytes(bytes, page.Size())));
        }
        report.Print(m_line.json.has_value());
    }

    void Summarise() const {
        Report report("summary");
        report.Add("exchanges", std::to_string(m_exchanges));
        if (m_exchanges != 0) {
            auto median = m_latencies.begin();
            for (auto upTo = median->second; upTo * 2 < m_exchanges; upTo += median->second) {
                ++median;
            }
            report.Add("least_ms", std::to_string(m_latencies.begin()->first));
            report.Add("median_ms", std::to_string(median->first));
            report.Add("longest_ms", std::to_string(m_latencies.rbegin()->first));
        }
        report.Add("requests_alone", std::to_string(m_requestsAlone + (m_waiting ? 1 : 0)));
        report.Add("replies_alone", std::to_string(m_repliesAlone));
        report.Print(m_line.json.has_value());
    }

private:
    void TellRequest(const Bytes& bytes, Report& report) {
        m_requestTime = Clock::now();
        m_request = m_cmds.Decode(bytes);
        if (m_request.cmd != nullptr) {
            Texts arguments;
            for (const ParcelField& argument : m_request.arguments) {
                arguments.push_back(JsonValue(argument.value, m_int64));
            }
            report.Add("module", JsonString(m_request.cmd->m_strBelongMod));
            report.Add("command", JsonString(m_request.cmd->m_strCmd));
            report.Add("arguments", JsonArray(arguments));
        } else {
            report.AddFault(m_request.known ? "the arguments do not decode"
                                            : "no command has this instruction");
        }
        report.Add("instruction", JsonString(Hex(m_request.instruct)));
    }

    // Which values it has is known when the request was seen.
    void TellReply(const Bytes& bytes, Report& report) {
        android::Parcel reply;
        reply.setData(bytes.data(), bytes.size());
        report.Add("status", std::to_string(reply.readInt32()));
        if (!m_waiting) {
            ++m_repliesAlone;
            report.AddFault("no request was seen before");
            return;
        }
        const auto time =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_requestTime);
        ++m_exchanges;
        ++m_latencies[time.count()];
        report.Add("latency_ms", std::to_string(time.count()));
        if (m_request.cmd != nullptr) {
            std::vector<ReplyRecord> records;
            reply.setData(bytes.data(), bytes.size());
            const Outcome outcome = ReadReply(*m_request.cmd, reply, records);
            if (outcome.status == kExitPage) {
                report.AddFault(outcome.reason);
            }
            report.Add("records", JsonArray(RecordsJson(*m_request.cmd, records, m_int64)));
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
    Beat beat(std::chrono::milliseconds{1});
    Monitor monitor(line, catalogue);
    // A reply that is there at the start is none of this time.
    bool isNew = page.Look() && page.Last().header.flags != kReplyReady;
    for (std::size_t left = line.count; left != 0; isNew = page.Look()) {
        if (isNew) {
            monitor.Tell(page.Last());
            --left;
        }
        if (left == 0 || std::ferror(stdout) != 0 || beat.Wait() != 0) {
            break;
        }
    }
    monitor.Summarise();
    return kExitDone;
}
