#include "tools/command_line.h"

#include <getopt.h>

#include <cstdio>
#include <cstring>

#include "platform/read_number.h"
#include "tools/exit_status.h"
#include "tools/text.h"

namespace {

struct ToolOption {
    char letter;
    const char* name;
    const char* value;  // null for a switch
    const char* help;
};

constexpr ToolOption kToolOptions[] = {
    {'c', "catalogue", "DIR", "the folder of mods.conf and cmds.conf (the console's own)"},
    {'f', "force", nullptr, "post over an unanswered request; its answer may come instead"},
    {'j', "json", nullptr, "print JSON, one object a line"},
    {'t', "timeout", "MS", "wait so long for the turn and the answer (5000)"},
};
constexpr char kHelpLetter = 'h';

bool Takes(const ToolCommand& command, const ToolOption& option) {
    return std::strchr(command.options, option.letter) != nullptr;
}

std::string OptionText(const ToolOption& option) {
    return std::string("--") + option.name +
           (option.value != nullptr ? std::string(" ") + option.value : "");
}

void PrintUsage(const ToolCommand& command, std::FILE* out) {
    std::fprintf(out, "usage: ko_cmd_tool %s [OPTIONS]%s\n", command.name, command.words);
}

void PrintHelp(const ToolCommand& command) {
    PrintUsage(command, stdout);
    std::printf("\n%s\n%s\n", command.summary, command.details);
    for (const ToolOption& option : kToolOptions) {
        if (Takes(command, option)) {
            std::printf("  %-16s %s\n", OptionText(option).c_str(), option.help);
        }
    }
    std::printf("  %-16s %s\n", "--help", "print this");
}

std::vector<option> LongOptions(const ToolCommand& command) {
    std::vector<option> options;
    for (const ToolOption& row : kToolOptions) {
        if (Takes(command, row)) {
            options.push_back({row.name, row.value != nullptr ? required_argument : no_argument,
                               nullptr, row.letter});
        }
    }
    options.push_back({"help", no_argument, nullptr, kHelpLetter});
    options.push_back({});
    return options;
}

bool TakeOption(int letter, const char* value, CommandLine& line) {
    switch (letter) {
        case 'c':
            line.catalogue = value;
            return true;
        case 'f':
            line.force = true;
            return true;
        case 'j':
            line.json = true;
            return true;
        case 't':
            if (ReadMilliseconds(value, line.timeout)) {
                return true;
            }
            Complain("--timeout takes milliseconds, not " + Quoted(value));
            return false;
        default:
            return false;
    }
}

}  // namespace

std::optional<CommandLine> ReadCommandLine(const ToolCommand& command, int argc, char** argv,
                                           int& status) {
    const std::vector<option> options = LongOptions(command);
    CommandLine line;
    bool good = true;
    // The "+" ends the options at the first word, so that a negative number can be an argument.
    for (int letter = 0;
         good && (letter = getopt_long(argc, argv, "+", options.data(), nullptr)) != -1;) {
        if (letter == kHelpLetter) {
            PrintHelp(command);
            status = kExitDone;
            return std::nullopt;
        }
        good = TakeOption(letter, optarg, line);
    }
    line.words.assign(argv + optind, argv + argc);
    if (!good || line.words.size() < command.leastWords || line.words.size() > command.mostWords) {
        PrintUsage(command, stderr);
        status = kExitUsage;
        return std::nullopt;
    }
    return line;
}
