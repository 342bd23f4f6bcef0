#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "catalogue/row_grammar.h"
#include "tests/fuzz/fuzz_input.h"
#include "tools/check/check.h"

// Whatever the two files hold, the catalogue loads and answers every query; and one in which the
// checker finds no error has reached the console whole. What a file shows is read here as a person
// would: a row in brackets opens a block, and "key = value" below it belongs to it.

namespace {

using Rows = std::set<std::string>;  // titles, and "key=value" with decimal numbers

std::string Trim(const std::string& text) {
    return std::string(TrimConfigText(text));
}

// A person takes no shortened key for one.
Rows Show(const std::string& text) {
    static const Rows kKeys = {"command",      "instruction", "belong module", "para format",
                               "print format", "print tags",  "description"};
    Rows shown;
    std::istringstream rows(text);
    for (std::string row; std::getline(rows, row);) {
        row = Trim(row);
        const std::size_t equals = row.find('=');
        if (row.size() > 1 && row.front() == '[' && row.back() == ']') {
            shown.insert(row);
        } else if (equals != std::string::npos && kKeys.count(Trim(row.substr(0, equals))) == 1) {
            const std::string key = Trim(row.substr(0, equals));
            const std::string value = Trim(row.substr(equals + 1));
            shown.insert(key + "=" +
                         (key == "instruction"
                              ? std::to_string(std::strtoll(value.c_str(), nullptr, 16))
                              : value));
        }
    }
    return shown;
}

std::string Entry(const std::string& key, const std::string& text) {
    Require(text.size() < kConfigTextSize && text == TrimConfigText(text), "a trimmed text");
    return key + "=" + text;
}

void AskCommand(const KoFileParse& c, int module, const std::string& word, Rows& had) {
    const auto& cmd = c.AllCmds().at(static_cast<unsigned>(module)).at(word);
    std::string tags;
    for (const std::string& tag : c.GetCmdPrintTags(module, word)) {
        Require(tag.find(',') == std::string::npos, "tags are split");
        tags += (tags.empty() ? "print tags=" : ",") + tag;
    }
    had.insert({"[" + cmd.m_strName + "]", tags, Entry("command", word),
                Entry("belong module", cmd.m_strBelongMod),
                Entry("para format", c.GetCmdParaFmt(module, word)),
                Entry("print format", c.GetCmdPrintFmt(module, word)),
                Entry("description", c.GetCmdDescrip(module, word)),
                "instruction=" + std::to_string(c.GetCmdInstruct(module, word))});
}

}  // namespace

// Parts: modules file, commands file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile files[2];
    const auto parts = SplitInput(data, size, 2);
    KoFileParse c;
    auto read = &KoFileParse::ParseModulePtr;
    for (const std::size_t i : {0U, 1U}) {
        files[i].Write(parts[i]);
        KoFile reader;
        reader.Init(files[i].Path(), "r");
        Require((c.*read)(&reader) == 0, "every file is read to its end");
        read = &KoFileParse::ParseCmdPtr;
    }
    Rows modules;
    Rows commands;
    for (const std::string& name : c.GetModNames()) {
        const int module = c.GetModInstruct(name);
        const auto words = c.GetModHoldCmds(module);
        Require(module != -1 || words.size() == 0, "no number, none");
        modules.insert({"[" + name + "]", Entry("command", c.GetModToCmd(name)),
                        Entry("description", c.GetModDescrip(name)),
                        "instruction=" + std::to_string(module)});
        for (const std::string& word : words) {
            AskCommand(c, module, word, commands);
        }
    }
    const auto findings = CheckCatalogue({files[0].Path(), files[1].Path()});
    const auto isError = [](const Finding& f) { return f.severity == Severity::kError; };
    if (std::none_of(findings.begin(), findings.end(), isError)) {
        const Rows shown[] = {Show(parts[0]), Show(parts[1])};
        Require(
            std::includes(modules.begin(), modules.end(), shown[0].begin(), shown[0].end()) &&
                std::includes(commands.begin(), commands.end(), shown[1].begin(), shown[1].end()),
            "every row is there");
    }
    return 0;
}
