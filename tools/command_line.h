#pragma once

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "tools/exit_status.h"
#include "tools/json.h"

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

// What a command line says after the command's name.
struct CommandLine {
    std::optional<std::string> catalogue;  // a directory; the console's own files without
    std::size_t count = kAnyNumber;
    bool csv = false;
    bool force = false;
    bool hex = false;
    std::chrono::milliseconds interval{1000};
    std::optional<JsonInt64> json;  // how to print JSON, if it is asked for
    std::chrono::milliseconds timeout{5000};
    bool help = false;
    bool version = false;
    std::vector<std::string> words;  // after the options
};

// One command of the tool: feeds dispatch, help and the check of its command line.
struct ToolCommand {
    const char* name;
    const char* options;    // as the usage line shows them
    const char* words;      // likewise
    const char* summary;    // one line
    const char* details;    // further lines of its help
    unsigned int statuses;  // a StatusSet; done, failed and usage go without saying
    std::size_t leastWords;
    std::size_t mostWords;
    int (*run)(const CommandLine& line);
};

using ToolCommands = std::initializer_list<ToolCommand>;
