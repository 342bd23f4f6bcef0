#pragma once

#include <string_view>

#include "tools/command_line.h"

// The options of all commands: feeds their reading, their usage and their help.

struct ToolOption {
    char letter;
    const char* name;
    const char* value;  // null for a switch
    const char* help;
};

inline constexpr char kHelpLetter = 'h';
inline constexpr char kVersionLetter = 'v';

inline constexpr ToolOption kToolOptions[] = {
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

inline bool IsOneOf(char letter, std::string_view letters) {
    return letters.find(letter) != std::string_view::npos;
}

// Whether the option may stand with the command; with null, in a line that names none yet.
inline bool Allows(const ToolCommand* command, const ToolOption& option) {
    return command == nullptr || IsOneOf(option.letter, command->options) ||
           option.letter == kHelpLetter || option.letter == kVersionLetter;
}
