#include "tools/command_line.h"

#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/read_number.h"
#include "tools/exit_status.h"
#include "tools/nearest.h"
#include "tools/text.h"

namespace {

using Commands = std::initializer_list<ToolCommand>;

struct ToolOption {
    char letter;
    const char* name;
    const char* value;  // null for a switch
    const char* help;
};

constexpr char kHelpLetter = 'h';
constexpr char kVersionLetter = 'v';

constexpr ToolOption kToolOptions[] = {
    {'c', "catalogue", "DIR", "the folder of mods.conf and cmds.conf (the console's own)"},
    {'n', "count", "N", "end after N samples or messages"},
    {'C', "csv", nullptr, "print CSV, as it does anyway where its output is no terminal"},
    {'f', "force", nullptr, "post over an unanswered request; its answer may come instead"},
    {'x', "hex", nullptr, "print the bytes of every message"},
    {'i', "interval", "MS", "from the start of one call to that of the next (1000)"},
    {'j', "json", nullptr, "print JSON, one object a line"},
    {'J', "json-strings", nullptr, "the same, with 64-bit integers as strings"},
    {'t', "timeout", "MS", "wait so long for the turn and the answer (5000)"},
    {kHelpLetter, "help", nullptr, "print the help of the command, or this"},
    {kVersionLetter, "version", nullptr, "print the version"},
};

// By the number of the exit status.
constexpr const char* kStatusTexts[] = {
    "done",
    "the result could not be printed",
    "wrong command line",
    "no such catalogue, module or command, or a refused argument or format",
    "no answer in time",
    "the service refused",
    "the page cannot be used, or the reply does not fit it or its format",
    "others used the page all the time: nothing was sent",
};
static_assert(std::size(kStatusTexts) == kExitBusy + 1, "every status has its text");

std::string OptionText(const ToolOption& option) {
    return std::string("--") + option.name +
           (option.value != nullptr ? std::string(" ") + option.value : "");
}

bool IsOneOf(char letter, const std::string& letters) {
    return letters.find(letter) != std::string::npos;
}

// Whether one of the options asks for a text.
bool IsAsking(const std::string& taken) {
    return IsOneOf(kHelpLetter, taken) || IsOneOf(kVersionLetter, taken);
}

// The letters of the options that may stand with the command; with null for any.
std::string TakenLetters(const ToolCommand* command) {
    std::string letters;
    for (const ToolOption& option : kToolOptions) {
        if (command == nullptr || IsOneOf(option.letter, command->options)) {
            letters += option.letter;
        }
    }
    return letters + kHelpLetter + kVersionLetter;
}

void PrintOptions(const ToolCommand* command, std::FILE* out) {
    std::fputs("\nOptions, before or behind the command's name:\n", out);
    for (const ToolOption& option : kToolOptions) {
        if (IsOneOf(option.letter, TakenLetters(command))) {
            std::fprintf(out, "  %-16s %s\n", OptionText(option).c_str(), option.help);
        }
    }
}

// Null stands for the whole tool.
void PrintUsage(Commands commands, const ToolCommand* command, std::FILE* out) {
    if (command == nullptr) {
        std::fputs("usage: ko_cmd_tool [OPTIONS] COMMAND [OPTIONS] ...\n\n", out);
        for (const ToolCommand& row : commands) {
            std::fprintf(out, "  %-8s %s\n", row.name, row.summary);
        }
        PrintOptions(nullptr, out);
        return;
    }
    std::string options;
    for (const ToolOption& option : kToolOptions) {
        if (IsOneOf(option.letter, command->options)) {
            options += " [" + OptionText(option) + "]";
        }
    }
    std::fprintf(out, "usage: ko_cmd_tool %s%s%s\n", command->name, options.c_str(),
                 command->words);
}

void PrintHelp(Commands commands, const ToolCommand* command) {
    PrintUsage(commands, command, stdout);
    if (command == nullptr) {
        return;
    }
    std::printf("\n%s\n%s\nExit status:\n", command->summary, command->details);
    for (const char* digit = command->statuses; *digit != '\0'; ++digit) {
        std::printf("  %c  %s\n", *digit, kStatusTexts[*digit - '0']);
    }
    PrintOptions(command, stdout);
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
        if (IsOneOf(option.letter, TakenLetters(command))) {
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
        if (IsOneOf(option.letter, taken) && !IsOneOf(option.letter, TakenLetters(&command))) {
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
