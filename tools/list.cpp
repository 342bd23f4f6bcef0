#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/printable.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/json.h"
#include "tools/table.h"
#include "tools/text.h"
#include "tools/type_names.h"

namespace {

using CmdInfo = KoFileParse::KoCmdInfo;
using ModuleInfo = KoFileParse::KoModuleInfo;

struct ListedModule {
    const ModuleInfo* info;
    std::vector<const CmdInfo*> cmds;  // those that belong to it, by their words
};

struct ReplyValue {
    std::string label;  // empty when it has none
    std::string type;
};

std::vector<ReplyValue> ReplyValues(const CmdInfo& cmd) {
    std::vector<ReplyValue> values;
    auto tag = cmd.m_printTags.begin();
    for (const std::string& type : TypeNames(cmd.m_strPrintFmt)) {
        const bool labelled = tag != cmd.m_printTags.end();
        values.push_back({labelled ? *tag++ : std::string(), type});
    }
    return values;
}

// In the order of the modules' names.
std::vector<ListedModule> ListModules(const KoFileParse& catalogue) {
    std::unordered_map<std::string, std::vector<const CmdInfo*>> cmds;  // by the module's name
    for (const auto& [number, table] : catalogue.AllCmds()) {
        for (const auto& [word, cmd] : table) {
            cmds[cmd.m_strBelongMod].push_back(&cmd);
        }
    }
    std::vector<ListedModule> modules;
    for (const auto& [name, info] : catalogue.AllModules()) {
        modules.push_back({&info, std::move(cmds[name])});
    }
    return modules;
}

// "label type, ...", printable.
std::string ReplyText(const CmdInfo& cmd) {
    std::vector<std::string> texts;
    for (const ReplyValue& value : ReplyValues(cmd)) {
        texts.push_back(value.label.empty() ? value.type
                                            : Printable(value.label) + " " + value.type);
    }
    return Joined(texts, ", ");
}

void PrintModules(const std::vector<ListedModule>& modules) {
    for (const ListedModule& module : modules) {
        std::printf("%s%s (%s) %s: %s\n", &module == &modules.front() ? "" : "\n",
                    Printable(module.info->m_strCmd).c_str(),
                    Printable(module.info->m_strName).c_str(), Hex(module.info->m_instruct).c_str(),
                    Printable(module.info->m_strDescrip).c_str());
        std::vector<std::vector<std::string>> rows;
        for (const CmdInfo* cmd : module.cmds) {
            const std::string arguments = Joined(TypeNames(cmd->m_strParaFmt), ", ");
            const std::string reply = ReplyText(*cmd);
            rows.push_back({Printable(cmd->m_strCmd), Hex(cmd->m_instruct),
                            arguments.empty() ? "-" : arguments, reply.empty() ? "-" : reply,
                            Printable(cmd->m_strDescrip)});
        }
        if (!rows.empty()) {
            rows.insert(rows.begin(),
                        {"command", "instruction", "arguments", "reply", "description"});
        }
        PrintTable(rows, "  ");
    }
}

Json CommandJson(const ModuleInfo& module, const CmdInfo& cmd) {
    Json reply = Json::array();
    for (const ReplyValue& value : ReplyValues(cmd)) {
        reply.push_back({{"label", value.label}, {"type", value.type}});
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

void PrintJson(const std::vector<ListedModule>& modules) {
    for (const ListedModule& module : modules) {
        for (const CmdInfo* cmd : module.cmds) {
            PrintJsonLine(CommandJson(*module.info, *cmd));
        }
    }
}

}  // namespace

int RunList(const CommandLine& line) {
    KoFileParse catalogue;
    if (!LoadCatalogue(FindCatalogue(line.catalogue), catalogue)) {
        return kExitNotSent;
    }
    const std::vector<ListedModule> modules = ListModules(catalogue);
    if (line.json) {
        PrintJson(modules);
    } else {
        PrintModules(modules);
    }
    return kExitDone;
}
