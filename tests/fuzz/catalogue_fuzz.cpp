#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "catalogue/row_grammar.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"
#include "tools/check.h"

// Whatever the two files hold, the catalogue loads and answers every query; and one in which the
// checker finds no error has reached the console whole. What a file shows is read here as a person
// would: a row in brackets opens a block, and "key = value" below it belongs to it.

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

std::string Entry(const std::string& key, const std::string& text) {
    Require(text.size() < kConfigTextSize && text == TrimConfigText(text), "a trimmed text");
    return key + "=" + text;
}

Block AskCommand(const KoFileParse& c, int module, const std::string& word) {
    const auto& cmd = c.AllCmds().at(static_cast<unsigned>(module)).at(word);
    std::string tags;
    for (const std::string& tag : c.GetCmdPrintTags(module, word)) {
        Require(tag.find(',') == std::string::npos, "tags are split");
        tags += (tags.empty() ? "print tags=" : ",") + tag;
    }
    return {"[" + cmd.m_strName + "]",
            tags,
            Entry("command", word),
            Entry("belong module", cmd.m_strBelongMod),
            Entry("para format", c.GetCmdParaFmt(module, word)),
            Entry("print format", c.GetCmdPrintFmt(module, word)),
            Entry("description", c.GetCmdDescrip(module, word)),
            "instruction=" + std::to_string(c.GetCmdInstruct(module, word))};
}

}  // namespace

// Parts: modules file, commands file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile files[2];
    const auto parts = SplitInput(data, size, 2);
    KoFileParse c;
    auto read = &KoFileParse::ParseModulePtr;
    for (const int i : {0, 1}) {
        files[i].Write(parts[static_cast<unsigned>(i)]);
        KoFile reader;
        reader.Init(files[i].Path(), "r");
        Require((c.*read)(&reader) == 0, "every file is read to its end");
        read = &KoFileParse::ParseCmdPtr;
    }
    Require(c.GetModNames().size() == c.GetModCmds().size(), "a word each");
    std::vector<Block> modules;
    std::vector<Block> commands;
    for (const std::string& name : c.GetModNames()) {
        const int module = c.GetModInstruct(name);
        const auto words = c.GetModHoldCmds(module);
        Require(module != -1 || words.size() == 0, "no number, none");
        Require(
            std::adjacent_find(words.begin(), words.end(), std::greater_equal<>()) == words.end(),
            "command words come in order, each once");
        modules.push_back({"[" + name + "]", Entry("command", c.GetModToCmd(name)),
                           Entry("description", c.GetModDescrip(name)),
                           "instruction=" + std::to_string(module)});
        for (const std::string& word : words) {
            commands.push_back(AskCommand(c, module, word));
        }
    }
    const auto findings = CheckCatalogue({files[0].Path(), files[1].Path()});
    const auto isError = [](const Finding& f) { return f.severity == Severity::kError; };
    if (std::none_of(findings.begin(), findings.end(), isError)) {
        RequireAll(Show(parts[0]), modules);
        RequireAll(Show(parts[1]), commands);
    }
    return 0;
}
