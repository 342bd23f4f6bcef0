#include "tools/command_line.h"

#include <getopt.h>

#include <cstdio>

#include "platform/read_number.h"
#include "tools/exit_status.h"
#include "tools/nearest.h"
#include "tools/text.h"
#include "tools/tool_options.h"
#include "tools/usage.h"

namespace {

using Commands = std::initializer_list<ToolCommand>;

// Whether one of the options asks for a text.
bool IsAsking(const std::string& taken) {
    return IsOneOf(kHelpLetter, taken) || IsOneOf(kVersionLetter, taken);
}

const ToolCommand* FindCommand(Commands commands, const std::string& name) {
    std::vector<std::string> names;
    for (const ToolCommand& command : commands) {
        if (command.name == name) {
            return &command;
        }
        names.emplace_back(command.name);
    }
    ComplainUnknown(Quoted(name) + " is no command", name, names);
    return nullptr;
}

void ComplainAboutOption(const ToolCommand* command, const std::string& word) {
    std::vector<std::string> names;
    for (const ToolOption& option : kToolOptions) {
        if (Allows(command, option)) {
            names.push_back(std::string("--") + option.name);
        }
    }
    const std::string of = command != nullptr ? " of " + Quoted(command->name) : "";
    ComplainUnknown(Quoted(word) + " is no option" + of, word, names);
}

bool Refuse(const char* taken, const char* value) {
    Complain(std::string(taken) + ", not " + Quoted(value));
    return false;
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
            line.json = JsonInt64::kNumber;
            return true;
        case 'J':
            line.json = JsonInt64::kString;
            return true;
        case 'C':
            line.csv = true;
            return true;
        case 'x':
            line.hex = true;
            return true;
        case 'n':
            return ReadNumber(value, line.count) || Refuse("--count takes a number", value);
        case 'i':
            return ReadMilliseconds(value, line.interval) ||
                   Refuse("--interval takes milliseconds", value);
        case 't':
            return ReadMilliseconds(value, line.timeout) ||
                   Refuse("--timeout takes milliseconds", value);
        default:
            return true;
    }
}

std::vector<option> LongOptions() {
    std::vector<option> options;
    for (const ToolOption& row : kToolOptions) {
        options.push_back({row.name, row.value != nullptr ? required_argument : no_argument,
                           nullptr, row.letter});
    }
    options.push_back({});
    return options;
}

// Takes the options up to the next other word and adds their letters to `taken`. False after a
// message.
bool TakeOptions(int argc, char** argv, CommandLine& line, std::string& taken) {
    static const std::vector<option> kOptions = LongOptions();
    opterr = 0;
    for (bool good = true; good;) {
        const char* word = argv[optind];
        const int letter = getopt_long(argc, argv, "+:", kOptions.data(), nullptr);
        switch (letter) {
            case -1:
                return true;
            case ':':
                Complain(Quoted(word) + " lacks its value");
                return false;
            case '?':
                ComplainAboutOption(line.command, word);
                return false;
            default:
                good = TakeOption(letter, optarg, line);
                taken += static_cast<char>(letter);
                break;
        }
    }
    return false;
}

// False after a message when one of the letters is no option of the command.
bool AllowsAll(const ToolCommand& command, const std::string& taken) {
    for (const ToolOption& option : kToolOptions) {
        if (IsOneOf(option.letter, taken) && !Allows(&command, option)) {
            ComplainAboutOption(&command, std::string("--") + option.name);
            return false;
        }
    }
    return true;
}

// Reads the line from the options before the command's name on. False when it is wrong, which an
// incomplete one may be without a message; `taken` gets the letters of its options.
bool ReadLine(Commands commands, int argc, char** argv, CommandLine& line, std::string& taken) {
    if (!TakeOptions(argc, argv, line, taken)) {
        return false;
    }
    if (optind == argc) {
        return IsAsking(taken);
    }
    line.command = FindCommand(commands, argv[optind]);
    if (line.command == nullptr) {
        return false;
    }
    ++optind;
    if (!TakeOptions(argc, argv, line, taken) || !AllowsAll(*line.command, taken)) {
        return false;
    }
    line.words.assign(argv + optind, argv + argc);
    return IsAsking(taken) || (line.words.size() >= line.command->leastWords &&
                               line.words.size() <= line.command->mostWords);
}

}  // namespace

std::optional<CommandLine> ReadCommandLine(std::initializer_list<ToolCommand> commands, int argc,
                                           char** argv, int& status) {
    CommandLine line;
    std::string taken;
    if (!ReadLine(commands, argc, argv, line, taken)) {
        PrintUsage(commands, line.command, stderr);
        status = kExitUsage;
        return std::nullopt;
    }
    if (!IsAsking(taken)) {
        return line;
    }
    if (IsOneOf(kVersionLetter, taken)) {
        std::puts("ko_cmd_tool " KO_VERSION);
    } else {
        PrintHelp(commands, line.command);
    }
    status = kExitDone;
    return std::nullopt;
}
