#include "tools/call/prepared_request.h"

#include <iterator>
#include <sstream>
#include <utility>
#include <vector>

#include "catalogue/word_search.h"
#include "console/ko_cmd_debug.h"
#include "format/argument_text.h"
#include "format/format_letters.h"
#include "format/printable.h"
#include "tools/call/argument_check.h"
#include "tools/catalogue_source.h"
#include "tools/format_names.h"
#include "tools/nearest.h"
#include "tools/stdout_to_stderr.h"
#include "tools/text.h"

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

// Why the encoder or the printer does not know the command's formats; empty if they do.
std::string FormatFault(const CmdInfo& cmd) {
    const std::pair<const char*, std::string> formats[] = {{"para format", cmd.m_strParaFmt},
                                                           {"print format", cmd.m_strPrintFmt}};
    for (const auto& [key, format] : formats) {
        for (const char letter : format) {
            if (FindFormatLetter(letter) == nullptr) {
                return FormatText(
                    "the {} {} of {} has the unknown letter {}",
                    {key, Quoted(format), Quoted(cmd.m_strCmd), Quoted({&letter, 1})});
            }
        }
    }
    return "";
}

// The arguments as the prompt hands them to the encoder, except for the last blank.
std::string ArgumentText(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += " " + word;
    }
    return text;
}

// Why the words are not the command's arguments, and what the prompt shows then: the command, its
// arguments and description. Empty if they are.
std::string WordsFault(const CmdInfo& cmd, const Words& words) {
    const std::string letters = LettersWithValue(cmd.m_strParaFmt);
    const std::string fault = ArgumentsFault(letters, words);
    if (!fault.empty()) {
        return FormatText("{}; {} takes {}: {}",
                          {fault, Quoted(cmd.m_strCmd),
                           letters.empty() ? "no argument" : Joined(TypeNames(letters), ", "),
                           Printable(cmd.m_strDescrip)});
    }
    const std::size_t size = ArgumentText(words).size();
    if (size > kArgumentTextLimit) {
        return FormatText("the arguments have {} bytes with their blanks; the maximum is {}",
                          {std::to_string(size), std::to_string(kArgumentTextLimit)});
    }
    return "";
}

// Returns why there is no request; empty if there is.
std::string Encode(const CmdInfo& cmd, const Words& words, android::Parcel& request) {
    std::string fault = FormatFault(cmd);
    fault = fault.empty() ? WordsFault(cmd, words) : fault;
    if (!fault.empty()) {
        return fault;
    }
    const StdoutToStderr redirect;
    std::istringstream args(ArgumentText(words) + " ");
    KO_BOOL valid = 1;
    const bool isEncoded = request.writeInt32(cmd.m_instruct) == 0 &&
                           KoCmdDebug::ParseCmdImp(cmd.m_strParaFmt, valid, request, args) == 0 &&
                           valid != 0;
    return isEncoded ? "" : "the console's encoder refuses the arguments";
}

}  // namespace

std::optional<Failure> FindCommands(const KoFileParse& catalogue, const Words& words,
                                    std::vector<const CmdInfo*>& cmds) {
    const std::string name = ModuleName(catalogue, words[0]);
    const auto module = catalogue.AllModules().find(name);
    if (module == catalogue.AllModules().end()) {
        return Failure{kExitNotSent, WithNearest("unknown module " + Quoted(words[0]), words[0],
                                                 ModuleWords(catalogue))};
    }
    Words others;
    for (const auto& [word, cmd] :
         catalogue.AllCmds().at(static_cast<unsigned int>(module->second.m_instruct))) {
        if (words.size() == 1 || word == words[1]) {
            cmds.push_back(&cmd);
        }
        others.push_back(word);
    }
    if (cmds.empty() && words.size() > 1) {
        return Failure{kExitNotSent, WithNearest("unknown command " + Quoted(words[1]) +
                                                     " of the module " + Quoted(name),
                                                 words[1], others)};
    }
    return std::nullopt;
}

std::optional<Failure> Prepare(const CommandLine& line, PreparedRequest& prepared) {
    if (auto failure = LoadCatalogue(FindCatalogue(line.catalogue), prepared.catalogue)) {
        return failure;
    }
    std::vector<const CmdInfo*> cmds;
    if (auto failure = FindCommands(prepared.catalogue, line.words, cmds)) {
        return failure;
    }
    prepared.cmd = cmds.front();
    const Words arguments(std::next(line.words.begin(), 2), line.words.end());
    const std::string reason = Encode(*prepared.cmd, arguments, prepared.bytes);
    return reason.empty() ? std::nullopt : std::optional(Failure{kExitNotSent, reason});
}

std::optional<Failure> Send(const PreparedRequest& prepared, const ExchangeLimits& limits,
                            Reply& reply) {
    if (auto failure = RunExchange(prepared.bytes, limits, reply.bytes)) {
        return failure;
    }
    return ReadReply(*prepared.cmd, reply);
}
