#include "tools/check/check.h"

#include <cstdio>

#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

template <typename Block>
bool CheckFile(const CheckedFile<Block>& file, FindingList& findings) {
    if (file.result.fault != LoadFault::kNone) {
        findings.Error(1, "the console goes without any module: " + FaultText(file.result),
                       "it needs both files");
        return false;
    }
    std::vector<std::string> keys;
    for (const auto& field : KeysOf<decltype(Block::record)>()) {
        keys.emplace_back(field.key.word);
    }
    CheckRows(file.head, keys, findings);
    for (const Block& block : file.blocks) {
        CheckRows(block, keys, findings);
        CheckValues(block, findings);
    }
    return true;
}

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::vector<Finding> CheckCatalogue(const CataloguePaths& paths) {
    FindingList moduleFindings(paths.modules);
    FindingList commandFindings(paths.commands);
    CheckedCatalogue checked;
    ReadCatalogue(paths, checked);
    const bool modules = CheckFile(checked.modules, moduleFindings);
    const bool commands = CheckFile(checked.commands, commandFindings);
    if (modules && commands) {
        CheckFates(checked, moduleFindings, commandFindings);
        CheckNumbers(checked, moduleFindings, commandFindings);
    }
    std::vector<Finding> findings = moduleFindings.Take();
    for (Finding& finding : commandFindings.Take()) {
        findings.push_back(std::move(finding));
    }
    return findings;
}

int RunCheck(const CommandLine& line) {
    if (line.catalogue && !line.words.empty()) {
        Complain("the folder is given twice");
        return kExitUsage;
    }
    const auto folder = line.words.empty() ? line.catalogue : std::optional(line.words[0]);
    std::size_t errors = 0;
    std::size_t warnings = 0;
    for (const Finding& finding : CheckCatalogue(FindCatalogue(folder))) {
        PrintLine(FindingLine(finding));
        ++(finding.severity == Severity::kError ? errors : warnings);
    }
    std::printf("%s, %s\n", Counted(errors, "error").c_str(), Counted(warnings, "warning").c_str());
    return errors == 0 ? kExitDone : kExitFailed;
}
