#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "tools/json.h"

// A line about something that happened, as JSON or as text with the same names and values.
class Report {
public:
    Report(const std::string& message, std::chrono::system_clock::time_point time);

    // `value` is JSON; the text has it without quotes around it.
    void Add(const std::string& name, const std::string& value);

    void AddFaultIf(bool found, const std::string& fault);
    bool HasFaults() const { return !m_faults.empty(); }

    // Prints it to standard output at once, the faults last.
    void Print(bool json);

private:
    std::string m_text;
    JsonObject m_json;
    std::vector<std::string> m_faults;
};
