#include <algorithm>

#include "catalogue/ko_file_parse.h"
#include "catalogue/row_grammar.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"

namespace {

void CheckText(const std::string& text) {
    Require(text.size() < kConfigTextSize && text == TrimConfigText(text), "a trimmed text");
}

void CheckCommands(const KoFileParse& c, std::int32_t module) {
    const auto words = c.GetModHoldCmds(module);
    Require(std::adjacent_find(words.begin(), words.end(), std::greater_equal<>()) == words.end(),
            "command words come in order, each once");
    for (const std::string& word : words) {
        CheckText(word);
        CheckText(c.GetCmdParaFmt(module, word));
        CheckText(c.GetCmdPrintFmt(module, word));
        CheckText(c.GetCmdDescrip(module, word));
        c.GetCmdInstruct(module, word);
        for (const std::string& tag : c.GetCmdPrintTags(module, word)) {
            Require(tag.find(',') == std::string::npos, "tags are split");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    KoFileParse c;
    auto read = &KoFileParse::ParseModulePtr;
    for (const std::string& part : SplitInput(data, size, 2)) {
        file.Write(part);
        KoFile reader;
        reader.Init(file.Path(), "r");
        Require((c.*read)(&reader) == 0, "every file is read to its end");
        read = &KoFileParse::ParseCmdPtr;
    }
    Require(c.GetModNames().size() == c.GetModCmds().size(), "a word each");
    for (const std::string& name : c.GetModNames()) {
        const std::int32_t module = c.GetModInstruct(name);
        Require(c.AllCmds().count(static_cast<unsigned>(module)) == 1, "a table");
        Require(module != -1 || c.GetModHoldCmds(module).size() == 0, "no number, none");
        CheckText(c.GetModToCmd(name));
        CheckText(c.GetModDescrip(name));
        CheckCommands(c, module);
    }
    return 0;
}
