#pragma once

#include <string>
#include <vector>

#include "tools/command_line.h"

// One option of the tool: feeds reading, usage and help.
struct ToolOption {
    std::string name;
    std::string value;  // what it is called in the usage; empty for a switch
    const char* help;
    // Stores what the option says; false when the value is wrong.
    bool (*store)(const char* value, CommandLine& line);

    // "--timeout MS"
    std::string Text() const;
    // Whether the option may stand with the command; with null, in a line that names none yet.
    bool IsOf(const ToolCommand* command) const;
};

extern const std::vector<ToolOption> kToolOptions;
