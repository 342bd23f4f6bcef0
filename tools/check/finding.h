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
    std::string text;
};

// The findings about one file, in the order in which they are made.
class FindingList {
public:
    explicit FindingList(std::string file) : m_file(std::move(file)) {}

    // Each adds a finding about the line. The text says what is wrong, then what to do about it;
    // each "{}" in it stands for one of the values.
    void Error(std::size_t line, std::string_view text,
               std::initializer_list<std::string> values = {});
    void Warning(std::size_t line, std::string_view text,
                 std::initializer_list<std::string> values = {});

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
