#include "tools/check/check.h"

#include <cstdio>

#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

template <typename Block>
bool CheckFile(CheckedFile<Block>& file) {
    if (file.result.fault != LoadFault::kNone) {
        file.findings.Error(1, "the console goes without any module: {}; it needs both files",
                            {FaultText(file.result)});
        return false;
    }
    std::vector<std::string> keys;
    for (const auto& field : KeysOf<decltype(Block::record)>()) {
        keys.emplace_back(field.key.word);
    }
    CheckRows(file.head, keys, file.findings);
    for (const Block& block : file.blocks) {
        CheckRows(block, keys, file.findings);
        CheckValues(block, file.findings);
    }
    return true;
}

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::vector<Finding> CheckCatalogue(const CataloguePaths& paths) {
    CheckedCatalogue checked(paths);
    const bool modules = CheckFile(checked.modules);
    const bool commands = CheckFile(checked.commands);
    if (modules && commands) {
        CheckFates(checked);
        CheckNumbers(checked);
    }
    std::vector<Finding> findings = checked.modules.findings.Take();
    for (Finding& finding : checked.commands.findings.Take()) {
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
