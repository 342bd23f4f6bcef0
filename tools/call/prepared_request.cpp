#include "tools/call/prepared_request.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "catalogue/word_search.h"
#include "console/ko_cmd_debug.h"
#include "format/argument_text.h"
#include "format/format_letters.h"
#include "format/printable.h"
#include "tools/call/argument_check.h"
#include "tools/catalogue_source.h"
#include "tools/nearest.h"
#include "tools/text.h"
#include "tools/type_names.h"

namespace {

using CmdInfo = KoFileParse::KoCmdInfo;
using Words = std::vector<std::string>;

// The name of the module that the word selects at the prompt, or else the word itself.
std::string ModuleName(const KoFileParse& catalogue, const std::string& word) {
    const auto position = FindWord(catalogue.GetModCmds(), word);
    return position ? catalogue.GetModNames()[*position] : word;
}

// What may name a module.
Words ModuleWords(const KoFileParse& catalogue) {
    Words words;
    for (const auto& [name, module] : catalogue.AllModules()) {
        words.push_back(module.m_strCmd);
        words.push_back(name);
    }
    return words;
}

const CmdInfo* FindCommand(const KoFileParse& catalogue, const std::string& module,
                           const std::string& word) {
    const std::string name = ModuleName(catalogue, module);
    const auto found = catalogue.AllModules().find(name);
    if (found == catalogue.AllModules().end()) {
        ComplainUnknown("unknown module " + Quoted(module), module, ModuleWords(catalogue));
        return nullptr;
    }
    const auto number = static_cast<unsigned int>(found->second.m_instruct);
    const KoFileParse::CmdTable& table = catalogue.AllCmds().at(number);
    const auto cmd = table.find(word);
    if (cmd == table.end()) {
        const auto words = catalogue.GetModHoldCmds(found->second.m_instruct);
        ComplainUnknown("unknown command " + Quoted(word) + " of the module " + Quoted(name), word,
                        {words.begin(), words.end()});
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

// A word that looks like an option behind the place where those end.
std::string OptionHint(const std::string& word) {
    return word.compare(0, 2, "--") == 0 ? "; options stand before MODULE" : "";
}

// Why the words are not the arguments; empty when they are.
std::string ArgumentsFault(const std::string& letters, const Words& words) {
    for (std::size_t i = 0; i < std::min(letters.size(), words.size()); ++i) {
        const std::string fault = ArgumentFault(letters[i], words[i]);
        if (!fault.empty()) {
            return Position(i, letters[i]) + ": " + Quoted(words[i]) + " " + fault +
                   OptionHint(words[i]);
        }
    }
    if (words.size() < letters.size()) {
        return Position(words.size(), letters[words.size()]) + " is missing";
    }
    if (words.size() > letters.size()) {
        const std::string& word = words[letters.size()];
        return "argument " + std::to_string(letters.size() + 1) + ": " + Quoted(word) +
               " is left over" + OptionHint(word);
    }
    return "";
}

// False after a message and what the prompt shows then: the command, its arguments and description.
bool ArgumentsFit(const CmdInfo& cmd, const Words& words) {
    const std::string letters = ArgumentLetters(cmd.m_strParaFmt);
    const std::string fault = ArgumentsFault(letters, words);
    if (fault.empty()) {
        return true;
    }
    Complain(fault);
    Complain(Quoted(cmd.m_strCmd) + " takes " +
             (letters.empty() ? "no argument" : Joined(TypeNames(letters), ", ")) + ": " +
             Printable(cmd.m_strDescrip));
    return false;
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

Outcome Send(const PreparedCall& call, const CallLimits& limits, android::Parcel& reply,
             std::vector<ReplyRecord>& records) {
    Outcome outcome = CallService(call.request, limits, reply);
    return outcome.status == kExitDone ? ReadReply(*call.cmd, reply, records) : outcome;
}
