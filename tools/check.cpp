#include "tools/check.h"

#include <cstdio>
#include <iterator>

#include "catalogue/row_grammar.h"
#include "tools/catalogue_blocks.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

template <typename Order>
std::optional<CatalogueBlocks> ReadFile(const std::string& path, const Order& order,
                                        FindingList& findings) {
    std::string reason;
    auto file = ReadBlocks(path, {std::begin(order), std::end(order)}, reason);
    if (!file) {
        findings.Error(1, "the console goes without any module: " + reason);
    }
    return file;
}

std::string Counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::vector<Finding> CheckCatalogue(const CataloguePaths& paths) {
    FindingList moduleFindings(paths.modules);
    FindingList commandFindings(paths.commands);
    const auto modules = ReadFile(paths.modules, kModuleKeyOrder, moduleFindings);
    const auto commands = ReadFile(paths.commands, kCmdKeyOrder, commandFindings);
    if (modules) {
        CheckRows(*modules, moduleFindings);
        CheckModuleValues(*modules, moduleFindings);
    }
    if (commands) {
        CheckRows(*commands, commandFindings);
        CheckCommandValues(*commands, commandFindings);
    }
    if (modules && commands) {
        CheckLookup(*modules, *commands, moduleFindings, commandFindings);
    }
    std::vector<Finding> findings = moduleFindings.Take();
    for (Finding& finding : commandFindings.Take()) {
        findings.push_back(std::move(finding));
    }
    return findings;
}

int RunCheck(const CommandLine& line) {
    std::size_t errors = 0;
    std::size_t warnings = 0;
    for (const Finding& finding : CheckCatalogue(FindCatalogue(line.catalogue))) {
        PrintLine(FindingLine(finding));
        ++(finding.severity == Severity::kError ? errors : warnings);
    }
    std::printf("%s, %s\n", Counted(errors, "error").c_str(), Counted(warnings, "warning").c_str());
    return errors == 0 ? kExitDone : kExitFailed;
}
