#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

enum class Severity { kError, kWarning };

struct Finding {
    std::string file;
    std::size_t line;  // counted from 1
    Severity severity;
    std::string message;  // what is wrong
    std::string remedy;   // what to do about it
};

// The findings about one file, in the order in which they are made.
class FindingList {
public:
    explicit FindingList(std::string file) : m_file(std::move(file)) {}

    // Each adds a finding about the line. Each "{}" in the message stands for one of the values.
    void Error(std::size_t line, std::string_view message,
               std::initializer_list<std::string> values, const std::string& remedy);
    void Warning(std::size_t line, std::string_view message,
                 std::initializer_list<std::string> values, const std::string& remedy);

    // "mods.conf:3"; how a finding names another place.
    std::string Place(std::size_t line) const;

    // Hands the findings out in the order of the lines, those of one line as they were made, and
    // keeps none.
    std::vector<Finding> Take();

private:
    std::string m_file;
    std::vector<Finding> m_findings;
};

// "1 error", "2 errors".
std::string Counted(std::size_t count, const std::string& noun);

// One line without its end, "file:line: error: message; remedy".
std::string FindingLine(const Finding& finding);
