#include "tools/check/check.h"

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

namespace fs = std::filesystem;

template <typename Block>
bool CheckFile(CheckedFile<Block>& file) {
    if (file.result.fault != LoadFault::kNone) {
        file.findings.Error(1, "the console has no modules: {}", {FaultText(file.result)},
                            "write both files");
        return false;
    }
    CheckHead(file);
    for (const Block& block : file.blocks) {
        CheckRows(block, file);
        CheckValues(block, file.findings);
    }
    return true;
}

std::string FindingJson(const Finding& finding) {
    return JsonLine({{"file", finding.file},
                     {"line", finding.line},
                     {"severity", finding.severity == Severity::kError ? "error" : "warning"},
                     {"message", finding.message},
                     {"remedy", finding.remedy}});
}

// " in DIR" of the console's own files, which may be in two directories.
std::string FoundIn(const CataloguePaths& paths) {
    const std::string modules = fs::path(paths.modules).parent_path();
    const std::string commands = fs::path(paths.commands).parent_path();
    return " in " + modules + (commands != modules ? " and " + commands : "");
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
    const bool twice = line.catalogue && !line.words.empty();
    const auto directory = line.words.empty() ? line.catalogue : std::optional(line.words[0]);
    std::error_code none;
    if (twice ||
        (directory && fs::exists(*directory, none) && !fs::is_directory(*directory, none))) {
        Complain(twice ? "the directory is given twice"
                       : Quoted(*directory) + " is a file; name its directory");
        return kExitUsage;
    }
    const CataloguePaths paths = FindCatalogue(directory);
    std::size_t errors = 0;
    std::size_t warnings = 0;
    for (const Finding& finding : CheckCatalogue(paths)) {
        const std::string text =
            line.json ? FindingJson(finding) : OutputLine(FindingLine(finding));
        std::fputs(text.c_str(), stdout);
        ++(finding.severity == Severity::kError ? errors : warnings);
    }
    if (!line.json) {
        PrintLine(Counted(errors, "error") + ", " + Counted(warnings, "warning") +
                  (directory ? "" : FoundIn(paths)));
    }
    return errors == 0 ? kExitDone : kExitFailed;
}
