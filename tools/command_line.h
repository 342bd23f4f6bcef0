#pragma once

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "tools/json.h"

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

struct ToolCommand;

// What stands behind the program's name.
struct CommandLine {
    const ToolCommand* command = nullptr;
    std::optional<std::string> catalogue;  // a folder; the console's own files without
    std::chrono::milliseconds timeout{5000};
    std::chrono::milliseconds interval{1000};
    std::size_t count = kAnyNumber;
    bool force = false;
    bool csv = false;
    bool hex = false;
    std::optional<JsonInt64> json;   // how to print JSON, where it is asked for
    std::vector<std::string> words;  // behind the options
};

// One command of the tool: feeds dispatch, help and the check of its command line.
struct ToolCommand {
    const char* name;
    const char* words;     // as the usage line shows them
    const char* summary;   // one line
    const char* details;   // further lines of its help
    const char* statuses;  // the digits of the exit statuses that it can end with
    const char* options;   // the options it takes, by their letters in tool_options.h
    std::size_t leastWords;
    std::size_t mostWords;
    int (*run)(const CommandLine& line);
};

// Reads the words behind argv[0]: the command's name with options before and behind it,
// then its words, at the first of which the options end. Nothing when the process is to end with
// `status` at once, after help, the version or a message.
std::optional<CommandLine> ReadCommandLine(std::initializer_list<ToolCommand> commands, int argc,
                                           char** argv, int& status);
