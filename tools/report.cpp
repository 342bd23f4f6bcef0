#include "tools/report.h"

#include "tools/output.h"
#include "tools/text.h"

Report::Report(const std::string& message, std::chrono::system_clock::time_point time)
    : m_json({{"time", IsoTime(time)}, {"message", message}}),
      m_text(IsoTime(time).substr(11, 12) + " " + message) {}

void Report::Add(const std::string& name, const Json& value) {
    const std::string text = JsonText(value);
    m_json[name] = value;
    m_text += " " + name + "=" + (value.is_string() ? text.substr(1, text.size() - 2) : text);
}

void Report::AddFaultIf(bool found, const std::string& fault) {
    if (found) {
        m_faults.push_back(fault);
    }
}

bool Report::Print(bool json) {
    if (HasFaults()) {
        Add("faults", m_faults);
    }
    return WriteOutput(json ? JsonLine(m_json) : OutputLine(m_text));
}
