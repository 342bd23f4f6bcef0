#include <cstdio>

#include "catalogue/ko_file_parse.h"
#include "format/format_letters.h"
#include "format/printable.h"
#include "tools/catalogue_source.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/json.h"
#include "tools/text.h"

namespace {

using CmdInfo = KoFileParse::KoCmdInfo;

struct ListedModule {
    std::string name;
    std::string word;
    std::int32_t instruct;
    std::string description;
    std::vector<const CmdInfo*> cmds;  // those that belong to it, by their words
};

struct ReplyValue {
    std::string label;  // empty when it has none
    std::string type;
};

std::string TypeName(char letter) {
    const FormatLetter* row = FindFormatLetter(letter);
    return row != nullptr ? row->typeName : "unknown";
}

std::vector<std::string> ArgumentTypes(const CmdInfo& cmd) {
    std::vector<std::string> types;
    for (const char letter : cmd.m_strParaFmt) {
        types.push_back(TypeName(letter));
    }
    return types;
}

std::vector<ReplyValue> ReplyValues(const CmdInfo& cmd) {
    std::vector<ReplyValue> values;
    auto tag = cmd.m_printTags.begin();
    for (const char letter : cmd.m_strPrintFmt) {
        const bool labelled = tag != cmd.m_printTags.end();
        values.push_back({labelled ? *tag++ : std::string(), TypeName(letter)});
    }
    return values;
}

std::vector<ListedModule> ListModules(const KoFileParse& catalogue) {
    std::vector<ListedModule> modules;
    for (const std::string& name : catalogue.GetModNames()) {
        ListedModule module = {name,
                               catalogue.GetModToCmd(name),
                               catalogue.GetModInstruct(name),
                               catalogue.GetModDescrip(name),
                               {}};
        const auto& table = catalogue.AllCmds().at(static_cast<unsigned int>(module.instruct));
        for (const auto& [word, cmd] : table) {
            if (cmd.m_strBelongMod == name) {
                module.cmds.push_back(&cmd);
            }
        }
        modules.push_back(std::move(module));
    }
    return modules;
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (joined.empty() ? "" : ", ") + text;
    }
    return joined;
}

// "label type, ..."; `show` makes a label printable.
std::string ReplyText(const CmdInfo& cmd, std::string (*show)(std::string_view)) {
    std::vector<std::string> texts;
    for (const ReplyValue& value : ReplyValues(cmd)) {
        texts.push_back(value.label.empty() ? value.type : show(value.label) + " " + value.type);
    }
    return Joined(texts);
}

void PrintModules(const std::vector<ListedModule>& modules) {
    for (const ListedModule& module : modules) {
        std::printf("%s%s (%s) %s: %s\n", &module == &modules.front() ? "" : "\n",
                    Printable(module.word).c_str(), Printable(module.name).c_str(),
                    Hex(module.instruct).c_str(), Printable(module.description).c_str());
        std::vector<std::vector<std::string>> rows;
        for (const CmdInfo* cmd : module.cmds) {
            const std::string arguments = Joined(ArgumentTypes(*cmd));
            const std::string reply = ReplyText(*cmd, Printable);
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

// The text for a cell or a paragraph of Markdown, which takes none of it for markup.
std::string MarkdownText(std::string_view text) {
    std::string escaped;
    for (const char byte : Printable(text)) {
        if (std::string_view("\\`*_[]<>|#&").find(byte) != std::string_view::npos) {
            escaped += '\\';
        }
        escaped += byte;
    }
    return escaped;
}

void PrintMarkdown(const std::vector<ListedModule>& modules) {
    std::puts("# Commands");
    for (const ListedModule& module : modules) {
        std::printf("\n## %s\n\n%s\n\nWord: %s. Instruction: %s.\n",
                    MarkdownText(module.name).c_str(), MarkdownText(module.description).c_str(),
                    MarkdownText(module.word).c_str(), Hex(module.instruct).c_str());
        if (module.cmds.empty()) {
            continue;
        }
        std::puts("\n| Command | Instruction | Arguments | Reply | Description |");
        std::puts("|---|---|---|---|---|");
        for (const CmdInfo* cmd : module.cmds) {
            std::printf("| %s | %s | %s | %s | %s |\n", MarkdownText(cmd->m_strCmd).c_str(),
                        Hex(cmd->m_instruct).c_str(), Joined(ArgumentTypes(*cmd)).c_str(),
                        ReplyText(*cmd, MarkdownText).c_str(),
                        MarkdownText(cmd->m_strDescrip).c_str());
        }
    }
}

std::string CommandJson(const ListedModule& module, const CmdInfo& cmd) {
    std::vector<std::string> arguments;
    for (const std::string& type : ArgumentTypes(cmd)) {
        arguments.push_back(JsonString(type));
    }
    std::vector<std::string> reply;
    for (const ReplyValue& value : ReplyValues(cmd)) {
        JsonObject member;
        member.Add("label", JsonString(value.label));
        member.Add("type", JsonString(value.type));
        reply.push_back(member.Text());
    }
    JsonObject object;
    object.Add("module", JsonString(module.name));
    object.Add("word", JsonString(module.word));
    object.Add("command", JsonString(cmd.m_strCmd));
    object.Add("instruction", std::to_string(cmd.m_instruct));
    object.Add("arguments", JsonArray(arguments));
    object.Add("reply", JsonArray(reply));
    object.Add("description", JsonString(cmd.m_strDescrip));
    return object.Text();
}

void PrintJson(const std::vector<ListedModule>& modules) {
    for (const ListedModule& module : modules) {
        for (const CmdInfo* cmd : module.cmds) {
            PrintJsonLine(CommandJson(module, *cmd));
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
    } else if (line.markdown) {
        PrintMarkdown(modules);
    } else {
        PrintModules(modules);
    }
    return kExitDone;
}
