#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

#include "catalogue/ko_file_parse.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"
#include "tools/check.h"

// A catalogue in which the checker finds no error must reach the console whole. What a file shows
// is read here as a person would: a row in brackets opens a block, and "key = value" below it
// belongs to it.

namespace {

struct ShownBlock {
    std::string name;
    std::map<std::string, std::string> keys;
};

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\v\f\r");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \t\v\f\r") - first + 1);
}

std::vector<ShownBlock> Show(const std::string& text) {
    std::vector<ShownBlock> blocks(1);  // the first takes what stands before any title
    std::istringstream rows(text);
    for (std::string row; std::getline(rows, row);) {
        const std::string shown = Trim(row);
        const std::size_t equals = shown.find('=');
        if (shown.size() > 1 && shown.front() == '[' && shown.back() == ']') {
            blocks.push_back({shown.substr(1, shown.size() - 2), {}});
        } else if (equals != std::string::npos) {
            blocks.back().keys[Trim(shown.substr(0, equals))] = Trim(shown.substr(equals + 1));
        }
    }
    return blocks;
}

bool HasErrors(const CataloguePaths& paths) {
    const std::vector<Finding> findings = CheckCatalogue(paths);
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::kError; });
}

// True when the key is not shown, or shown with the value that the console has.
bool Arrived(const ShownBlock& block, const char* key, const std::string& value) {
    const auto shown = block.keys.find(key);
    return shown == block.keys.end() || shown->second == value;
}

bool NumberArrived(const ShownBlock& block, std::int32_t number) {
    const auto shown = block.keys.find("instruction");
    return shown == block.keys.end() || std::strtoll(shown->second.c_str(), nullptr, 16) == number;
}

std::string Joined(const Array<std::string>& tags) {
    std::string text;
    for (const std::string& tag : tags) {
        text += (&tag == &*tags.begin() ? "" : ",") + tag;
    }
    return text;
}

void CheckModule(const KoFileParse& catalogue, const ShownBlock& block) {
    const Array<std::string> names = catalogue.GetModNames();
    Require(std::find(names.begin(), names.end(), block.name) != names.end(), "a module is there");
    Require(Arrived(block, "command", catalogue.GetModToCmd(block.name)) &&
                Arrived(block, "description", catalogue.GetModDescrip(block.name)) &&
                NumberArrived(block, catalogue.GetModInstruct(block.name)),
            "a module is whole");
}

void CheckCommand(const KoFileParse& catalogue, const ShownBlock& block) {
    const auto shown = [&block](const char* key) {
        const auto found = block.keys.find(key);
        return found != block.keys.end() ? found->second : std::string();
    };
    const std::int32_t module = catalogue.GetModInstruct(shown("belong module"));
    const std::string word = shown("command");
    const Array<std::string> words = catalogue.GetModHoldCmds(module);
    if (word.empty() || shown("belong module").empty()) {
        return;  // written with a shortened key, which a person does not take for one
    }
    Require(std::find(words.begin(), words.end(), word) != words.end(), "a command is there");
    Require(Arrived(block, "para format", catalogue.GetCmdParaFmt(module, word)) &&
                Arrived(block, "print format", catalogue.GetCmdPrintFmt(module, word)) &&
                Arrived(block, "print tags", Joined(catalogue.GetCmdPrintTags(module, word))) &&
                Arrived(block, "description", catalogue.GetCmdDescrip(module, word)) &&
                NumberArrived(block, catalogue.GetCmdInstruct(module, word)),
            "a command is whole");
}

}  // namespace

// Parts: modules file, commands file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile modules;
    static const MemoryFile commands;
    const auto parts = SplitInput(data, size, 2);
    modules.Write(parts[0]);
    commands.Write(parts[1]);
    if (HasErrors({modules.Path(), commands.Path()})) {
        return 0;
    }
    KoFileParse catalogue;
    KoFile reader;
    reader.Init(modules.Path(), "r");
    catalogue.ParseModulePtr(&reader);
    reader.Init(commands.Path(), "r");
    catalogue.ParseCmdPtr(&reader);
    const std::vector<ShownBlock> shownModules = Show(parts[0]);
    const std::vector<ShownBlock> shownCommands = Show(parts[1]);
    Require(shownModules.front().keys.empty() && shownCommands.front().keys.empty(),
            "no key stands alone");
    std::for_each(shownModules.begin() + 1, shownModules.end(),
                  [&](const ShownBlock& block) { CheckModule(catalogue, block); });
    std::for_each(shownCommands.begin() + 1, shownCommands.end(),
                  [&](const ShownBlock& block) { CheckCommand(catalogue, block); });
    return 0;
}
