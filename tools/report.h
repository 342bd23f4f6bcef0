#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/json.h"

// A line about something that happened, as JSON or as text with the same names and values.
class Report {
public:
    Report(const std::string& message, std::chrono::system_clock::time_point time);

    // The text has a string without its quotes.
    void Add(const std::string& name, const Json& value);

    void AddFaultIf(bool found, const std::string& fault);
    bool HasFaults() const { return !m_faults.empty(); }

    // Writes it to standard output at once, the faults last. Result as of WriteOutput.
    bool Print(bool json);

private:
    Json m_json;
    std::string m_text;
    Json m_faults;
};
