#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/printable.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/format_names.h"
#include "tools/json.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

using CmdInfo = KoFileParse::KoCmdInfo;
using ModuleInfo = KoFileParse::KoModuleInfo;

// The commands that belong to the module, by their words. Modules may have the same instruction.
std::vector<const CmdInfo*> CmdsOf(const KoFileParse& catalogue, const ModuleInfo& module) {
    std::vector<const CmdInfo*> cmds;
    const auto number = static_cast<unsigned int>(module.m_instruct);
    for (const auto& [word, cmd] : catalogue.AllCmds().at(number)) {
        if (cmd.m_strBelongMod == module.m_strName) {
            cmds.push_back(&cmd);
        }
    }
    return cmds;
}

// "label type, ...", printable.
std::string ReplyText(const CmdInfo& cmd) {
    const std::vector<std::string> labels = Labels(cmd);
    std::vector<std::string> texts = TypeNames(cmd.m_strPrintFmt);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i].insert(0, labels[i].empty() ? "" : Printable(labels[i]) + " ");
    }
    return Joined(texts, ", ");
}

void PrintModule(const ModuleInfo& module, const std::vector<const CmdInfo*>& cmds) {
    std::printf("%s (%s) %s: %s\n", Printable(module.m_strCmd).c_str(),
                Printable(module.m_strName).c_str(), Hex(module.m_instruct).c_str(),
                Printable(module.m_strDescrip).c_str());
    if (cmds.empty()) {
        return;
    }
    std::vector<std::vector<std::string>> rows = {
        {"command", "instruction", "arguments", "reply", "description"}};
    for (const CmdInfo* cmd : cmds) {
        const std::string arguments = Joined(TypeNames(cmd->m_strParaFmt), ", ");
        const std::string reply = ReplyText(*cmd);
        rows.push_back({Printable(cmd->m_strCmd), Hex(cmd->m_instruct),
                        arguments.empty() ? "-" : arguments, reply.empty() ? "-" : reply,
                        Printable(cmd->m_strDescrip)});
    }
    PrintTable(rows, "  ");
}

Json CommandJson(const ModuleInfo& module, const CmdInfo& cmd) {
    const std::vector<std::string> labels = Labels(cmd);
    const std::vector<std::string> types = TypeNames(cmd.m_strPrintFmt);
    Json reply = Json::array();
    for (std::size_t i = 0; i < types.size(); ++i) {
        reply.push_back({{"label", labels[i]}, {"type", types[i]}});
    }
    return {{"module", module.m_strName},
            {"word", module.m_strCmd},
            {"module_instruction", Hex(module.m_instruct)},
            {"command", cmd.m_strCmd},
            {"instruction", Hex(cmd.m_instruct)},
            {"arguments", TypeNames(cmd.m_strParaFmt)},
            {"reply", reply},
            {"description", cmd.m_strDescrip}};
}

}  // namespace

int RunList(const CommandLine& line) {
    KoFileParse catalogue;
    if (const auto failure = LoadCatalogue(FindCatalogue(line.catalogue), catalogue)) {
        return Complain(*failure);
    }
    const char* gap = "";
    for (const auto& [name, module] : catalogue.AllModules()) {
        const std::vector<const CmdInfo*> cmds = CmdsOf(catalogue, module);
        if (!line.json) {
            std::fputs(gap, stdout);
            gap = "\n";
            PrintModule(module, cmds);
            continue;
        }
        for (const CmdInfo* cmd : cmds) {
            std::fputs(JsonLine(CommandJson(module, *cmd)).c_str(), stdout);
        }
    }
    return kExitDone;
}
