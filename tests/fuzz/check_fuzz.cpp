#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"
#include "tools/check.h"

// A catalogue in which the checker finds no error must reach the console whole. What a file shows
// is read here as a person would: a row in brackets opens a block, and "key = value" below it
// belongs to it.

namespace {

using Block = std::set<std::string>;  // its title and "key=value", numbers decimal

std::string Trim(std::string text) {
    text.erase(text.find_last_not_of(" \t\v\f\r") + 1);
    return text.erase(0, text.find_first_not_of(" \t\v\f\r"));
}

// A person takes no shortened key for one.
std::vector<Block> Show(const std::string& text) {
    static const Block kKeys = {"command",      "instruction", "belong module", "para format",
                                "print format", "print tags",  "description"};
    std::vector<Block> blocks;
    std::istringstream rows(text);
    for (std::string row; std::getline(rows, row);) {
        row = Trim(row);
        const std::size_t equals = row.find('=');
        if (row.size() > 1 && row.front() == '[' && row.back() == ']') {
            blocks.push_back({row});
        } else if (equals != std::string::npos) {
            Require(!blocks.empty(), "no key stands alone");
            const std::string key = Trim(row.substr(0, equals));
            std::string value = Trim(row.substr(equals + 1));
            if (key == "instruction") {
                value = std::to_string(std::strtoll(value.c_str(), nullptr, 16));
            }
            if (kKeys.count(key) == 1) {
                blocks.back().insert(key + "=" + value);
            }
        }
    }
    return blocks;
}

void RequireAll(const std::vector<Block>& shown, const std::vector<Block>& had) {
    for (const Block& block : shown) {
        const auto holds = [&block](const Block& whole) {
            return std::includes(whole.begin(), whole.end(), block.begin(), block.end());
        };
        Require(std::any_of(had.begin(), had.end(), holds), "a block is whole");
    }
}

}  // namespace

// Parts: modules file, commands file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile files[2];
    const auto parts = SplitInput(data, size, 2);
    files[0].Write(parts[0]);
    files[1].Write(parts[1]);
    const CataloguePaths paths = {files[0].Path(), files[1].Path()};
    const auto findings = CheckCatalogue(paths);
    const auto isError = [](const Finding& f) { return f.severity == Severity::kError; };
    if (std::any_of(findings.begin(), findings.end(), isError)) {
        return 0;
    }
    KoFileParse c;
    Require(LoadCatalogue(paths, c), "the console loads it");
    std::vector<Block> modules;
    for (const std::string& name : c.GetModNames()) {
        modules.push_back({"[" + name + "]", "command=" + c.GetModToCmd(name),
                           "description=" + c.GetModDescrip(name),
                           "instruction=" + std::to_string(c.GetModInstruct(name))});
    }
    RequireAll(Show(parts[0]), modules);
    std::vector<Block> commands;
    for (const auto& [number, table] : c.AllCmds()) {
        for (const auto& [word, cmd] : table) {
            std::string tags;
            for (const std::string& tag : cmd.m_printTags) {
                tags += (tags.empty() ? "print tags=" : ",") + tag;
            }
            commands.push_back(
                {"[" + cmd.m_strName + "]", "command=" + word, tags,
                 "belong module=" + cmd.m_strBelongMod, "para format=" + cmd.m_strParaFmt,
                 "print format=" + cmd.m_strPrintFmt, "description=" + cmd.m_strDescrip,
                 "instruction=" + std::to_string(cmd.m_instruct)});
        }
    }
    RequireAll(Show(parts[1]), commands);
    return 0;
}
