#include "tools/report.h"

#include <cstdio>

#include "tools/text.h"

Report::Report(const std::string& message, std::chrono::system_clock::time_point time)
    : m_text(IsoTime(time).substr(11, 12) + " " + message) {
    m_json.Add("time", JsonString(IsoTime(time)));
    m_json.Add("message", JsonString(message));
}

void Report::Add(const std::string& name, const std::string& value) {
    const std::size_t quote = value[0] == '"' ? 1 : 0;
    m_json.Add(name, value);
    m_text += " " + name + "=" + value.substr(quote, value.size() - 2 * quote);
}

void Report::AddFaultIf(bool found, const std::string& fault) {
    if (found) {
        m_faults.push_back(JsonString(fault));
    }
}

void Report::Print(bool json) {
    if (HasFaults()) {
        Add("faults", JsonArray(m_faults));
    }
    const auto print = json ? PrintJsonLine : PrintLine;
    print(json ? m_json.Text() : m_text);
    std::fflush(stdout);
}
