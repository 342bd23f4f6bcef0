#include "tools/report.h"

#include "tools/output.h"
#include "tools/text.h"

Report::Report(const std::string& message, std::chrono::system_clock::time_point time)
    : m_json({{"time", IsoTime(time)}, {"message", message}}),
      m_text(IsoTime(time).substr(11, 12)) {}

void Report::Add(const std::string& name, const Json& value, const std::string& text) {
    m_json[name] = value;
    m_text += text;
}

void Report::AddFaultIf(bool found, const std::string& fault) {
    if (found) {
        m_json["faults"].push_back(fault);
        m_text += " (" + fault + ")";
    }
}

bool Report::Print(bool json) const {
    return WriteOutput(json ? JsonLine(m_json) : OutputLine(m_text));
}
