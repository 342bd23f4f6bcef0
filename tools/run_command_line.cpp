#include "tools/run_command_line.h"

#include <getopt.h>

#include <cstdio>

#include "tools/nearest.h"
#include "tools/text.h"
#include "tools/tool_options.h"
#include "tools/usage.h"

namespace {

const ToolCommand* FindCommand(ToolCommands commands, const std::string& name) {
    std::vector<std::string> names;
    for (const ToolCommand& command : commands) {
        if (command.name == name) {
            return &command;
        }
        names.push_back(command.name);
    }
    Complain(WithNearest("unknown command " + Quoted(name), name, names));
    return nullptr;
}

void ComplainAboutOption(const ToolCommand* command, const std::string& word) {
    std::vector<std::string> names;
    for (const ToolOption& option : kToolOptions) {
        if (option.IsOf(command)) {
            names.push_back("--" + option.name);
        }
    }
    const std::string of = command != nullptr ? " of " + Quoted(command->name) : "";
    Complain(WithNearest("unknown option " + Quoted(word) + of, word, names));
}

std::vector<option> LongOptions() {
    std::vector<option> options;
    options.reserve(kToolOptions.size() + 1);
    for (const ToolOption& row : kToolOptions) {
        options.push_back(
            {row.name.c_str(), row.value.empty() ? no_argument : required_argument, nullptr, 0});
    }
    options.push_back({});
    return options;
}

// Reads up to the command's words. False after a message.
bool ReadOptions(ToolCommands commands, int argc, char** argv, const ToolCommand*& command,
                 CommandLine& line) {
    const std::vector<option> longOptions = LongOptions();
    std::vector<const ToolOption*> given;
    opterr = 0;
    while (true) {
        const char* word = argv[optind];
        int index = 0;
        const int read = getopt_long(argc, argv, "+:", longOptions.data(), &index);
        if (read == 0) {
            const ToolOption& option = kToolOptions[static_cast<std::size_t>(index)];
            given.push_back(&option);
            if (!option.store(optarg, line)) {
                Complain("--" + option.name + " takes " +
                         (option.value == "MS" ? "milliseconds" : "a number") + ", not " +
                         Quoted(optarg));
                return false;
            }
        } else if (read == ':') {
            Complain(Quoted(word) + " lacks its value");
            return false;
        } else if (read == '?') {
            ComplainAboutOption(command, word);
            return false;
        } else if (command != nullptr || optind == argc) {
            break;
        } else if ((command = FindCommand(commands, argv[optind++])) == nullptr) {
            return false;
        }
    }
    for (const ToolOption* option : given) {
        if (!option->IsOf(command)) {
            ComplainAboutOption(command, "--" + option->name);
            return false;
        }
    }
    return true;
}

bool HasItsWords(const ToolCommand* command, const CommandLine& line) {
    return command != nullptr && line.words.size() >= command->leastWords &&
           line.words.size() <= command->mostWords;
}

}  // namespace

int RunCommandLine(ToolCommands commands, int argc, char** argv) {
    const ToolCommand* command = nullptr;
    CommandLine line;
    const bool good = ReadOptions(commands, argc, argv, command, line);
    line.words.assign(argv + optind, argv + argc);
    if (good && line.version) {
        std::puts("ko_cmd_tool " KO_VERSION);
        return kExitDone;
    }
    if (good && line.help) {
        PrintHelp(commands, command);
        return kExitDone;
    }
    if (!good || !HasItsWords(command, line)) {
        PrintUsage(commands, command, stderr);
        return kExitUsage;
    }
    return command->run(line);
}
