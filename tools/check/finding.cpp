#include "tools/check/finding.h"

#include <algorithm>
#include <utility>

#include "tools/text.h"

void FindingList::Error(std::size_t line, std::string_view message,
                        std::initializer_list<std::string> values, const std::string& remedy) {
    m_findings.push_back({m_file, line, Severity::kError, FormatText(message, values), remedy});
}

void FindingList::Warning(std::size_t line, std::string_view message,
                          std::initializer_list<std::string> values, const std::string& remedy) {
    m_findings.push_back({m_file, line, Severity::kWarning, FormatText(message, values), remedy});
}

std::string FindingList::Place(std::size_t line) const {
    return m_file + ":" + std::to_string(line);
}

std::vector<Finding> FindingList::Take() {
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return std::move(m_findings);
}

std::string Counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string FindingLine(const Finding& finding) {
    return finding.file + ":" + std::to_string(finding.line) +
           (finding.severity == Severity::kError ? ": error: " : ": warning: ") + finding.message +
           "; " + finding.remedy;
}
