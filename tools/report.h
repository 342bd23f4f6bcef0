#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/json.h"

// A line about something that happened, as JSON or as text.
class Report {
public:
    // The text begins with the time of day.
    Report(const std::string& message, std::chrono::system_clock::time_point time);

    // Sets a value in JSON, and appends to the text.
    void Add(const std::string& name, const Json& value, const std::string& text = "");

    void AddFaultIf(bool found, const std::string& fault);
    bool HasFaults() const { return m_json.contains("faults"); }

    // Writes it to standard output at once. Result as of WriteOutput.
    bool Print(bool json) const;

private:
    Json m_json;
    std::string m_text;
};
