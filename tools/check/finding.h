#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

enum class Severity { kError, kWarning };

struct Finding {
    std::string file;
    std::size_t line;  // counted from 1
    Severity severity;
    std::string text;
};

// The findings about one file, in the order in which they are made.
class FindingList {
public:
    explicit FindingList(std::string file) : m_file(std::move(file)) {}

    // Each adds a finding about the line: what is wrong, and what to do about it. Neither text
    // takes a line end.
    void Error(std::size_t line, const std::string& fault, const std::string& remedy);
    void Warning(std::size_t line, const std::string& fault, const std::string& remedy);

    // "mods.conf:3"; how a finding names another place.
    std::string Place(std::size_t line) const;

    // Hands the findings out in the order of the lines, those of one line as they were made, and
    // keeps none.
    std::vector<Finding> Take();

private:
    std::string m_file;
    std::vector<Finding> m_findings;
};

// One line without its end, "file:line: error: text".
std::string FindingLine(const Finding& finding);
