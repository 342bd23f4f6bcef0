#include "catalogue/ko_file_parse.h"
#include "catalogue/row_grammar.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"

namespace {

void Load(KoFileParse& catalogue, const MemoryFile& file, int (KoFileParse::*readBlocks)(KoFile*)) {
    KoFile reader;
    reader.Init(file.Path(), "r");
    Require((catalogue.*readBlocks)(&reader) == 0, "every file is read to its end");
}

void CheckText(const std::string& text) {
    Require(text.size() < kConfigTextSize && text == TrimConfigText(text),
            "texts are short and trimmed");
}

void CheckCommands(const KoFileParse& catalogue, std::int32_t module) {
    std::string before;
    bool first = true;
    for (const std::string& word : catalogue.GetModHoldCmds(module)) {
        Require(first || before < word, "command words come in order, each once");
        first = false;
        before = word;
        CheckText(word);
        CheckText(catalogue.GetCmdParaFmt(module, word));
        CheckText(catalogue.GetCmdPrintFmt(module, word));
        CheckText(catalogue.GetCmdDescrip(module, word));
        catalogue.GetCmdInstruct(module, word);
        for (const std::string& tag : catalogue.GetCmdPrintTags(module, word)) {
            Require(tag.find(',') == std::string::npos, "tags are split");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile modules;
    static const MemoryFile commands;
    const auto parts = SplitInput(data, size, 2);
    modules.Write(parts[0]);
    commands.Write(parts[1]);
    KoFileParse catalogue;
    Load(catalogue, modules, &KoFileParse::ParseModulePtr);
    Load(catalogue, commands, &KoFileParse::ParseCmdPtr);
    Require(catalogue.GetModNames().size() == catalogue.GetModCmds().size(),
            "a word for each module");
    for (const std::string& name : catalogue.GetModNames()) {
        const std::int32_t module = catalogue.GetModInstruct(name);
        Require(catalogue.AllCmds().count(static_cast<unsigned int>(module)) == 1,
                "a table for each module");
        Require(module != -1 || catalogue.GetModHoldCmds(module).size() == 0,
                "no commands without a number");
        CheckText(catalogue.GetModToCmd(name));
        CheckText(catalogue.GetModDescrip(name));
        CheckCommands(catalogue, module);
    }
    return 0;
}
