#include "tools/prepared_call.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "catalogue/word_search.h"
#include "console/ko_cmd_debug.h"
#include "format/argument_text.h"
#include "format/format_letters.h"
#include "tools/catalogue_source.h"
#include "tools/strict_argument.h"
#include "tools/text.h"

namespace {

using CmdInfo = KoFileParse::KoCmdInfo;
using Words = std::vector<std::string>;

// The name of the module that the word selects at the prompt, or else the word itself.
std::string ModuleName(const KoFileParse& catalogue, const std::string& word) {
    const auto position = FindWord(catalogue.GetModCmds(), word);
    return position ? catalogue.GetModNames()[*position] : word;
}

const CmdInfo* FindCommand(const KoFileParse& catalogue, const std::string& module,
                           const std::string& word) {
    const std::string name = ModuleName(catalogue, module);
    const auto found = catalogue.AllModules().find(name);
    if (found == catalogue.AllModules().end()) {
        Complain("unknown module " + Quoted(module));
        return nullptr;
    }
    const auto number = static_cast<unsigned int>(found->second.m_instruct);
    const KoFileParse::CmdTable& table = catalogue.AllCmds().at(number);
    const auto cmd = table.find(word);
    if (cmd == table.end()) {
        Complain("unknown command " + Quoted(word) + " of the module " + Quoted(name));
        return nullptr;
    }
    return &cmd->second;
}

bool LettersAreKnown(const CmdInfo& cmd, const char* key, const std::string& format) {
    for (const char letter : format) {
        if (FindFormatLetter(letter) == nullptr) {
            Complain("the " + std::string(key) + " " + Quoted(format) + " of " +
                     Quoted(cmd.m_strCmd) + " has the unknown letter " +
                     Quoted(std::string(1, letter)));
            return false;
        }
    }
    return true;
}

std::string Position(std::size_t index, char letter) {
    return "argument " + std::to_string(index + 1) + " (" + FindFormatLetter(letter)->typeName +
           ")";
}

bool ArgumentsFit(const CmdInfo& cmd, const Words& words) {
    const std::string letters = ArgumentLetters(cmd.m_strParaFmt);
    for (std::size_t i = 0; i < std::min(letters.size(), words.size()); ++i) {
        const std::string fault = ArgumentFault(letters[i], words[i]);
        if (!fault.empty()) {
            Complain(Position(i, letters[i]) + ": " + Quoted(words[i]) + " " + fault);
            return false;
        }
    }
    if (words.size() < letters.size()) {
        Complain(Position(words.size(), letters[words.size()]) + " is missing");
        return false;
    }
    if (words.size() > letters.size()) {
        Complain("argument " + std::to_string(letters.size() + 1) + ": " +
                 Quoted(words[letters.size()]) + " is left over: " + Quoted(cmd.m_strCmd) +
                 " takes " + std::to_string(letters.size()));
        return false;
    }
    return true;
}

// The arguments as the prompt hands them to the encoder, but for the last blank.
std::string ArgumentText(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += " " + word;
    }
    return text;
}

bool Encode(const CmdInfo& cmd, const std::string& text, android::Parcel& request) {
    const StdoutToStderr redirect;
    std::istringstream args(text + " ");
    KO_BOOL valid = 1;
    return request.writeInt32(cmd.m_instruct) == 0 &&
           KoCmdDebug::ParseCmdImp(cmd.m_strParaFmt, valid, request, args) == 0 && valid != 0;
}

}  // namespace

bool Prepare(const CommandLine& line, PreparedCall& call) {
    if (!LoadCatalogue(FindCatalogue(line.catalogue), call.catalogue)) {
        return false;
    }
    call.cmd = FindCommand(call.catalogue, line.words[0], line.words[1]);
    if (call.cmd == nullptr || !LettersAreKnown(*call.cmd, "para format", call.cmd->m_strParaFmt) ||
        !LettersAreKnown(*call.cmd, "print format", call.cmd->m_strPrintFmt)) {
        return false;
    }
    const Words arguments(std::next(line.words.begin(), 2), line.words.end());
    if (!ArgumentsFit(*call.cmd, arguments)) {
        return false;
    }
    const std::string text = ArgumentText(arguments);
    if (text.size() > kArgumentTextLimit) {
        Complain("the arguments have " + std::to_string(text.size()) +
                 " characters with their blanks; the console takes " +
                 std::to_string(kArgumentTextLimit));
        return false;
    }
    if (!Encode(*call.cmd, text, call.request)) {
        Complain("the console's encoder refuses the arguments");
        return false;
    }
    return true;
}
