#pragma once

#include <cstdio>
#include <initializer_list>

#include "tools/command_line.h"

// What the tool says about itself and its commands; null stands for the whole tool.

// How the command line goes; of the whole tool with its commands and options.
void PrintUsage(std::initializer_list<ToolCommand> commands, const ToolCommand* command,
                std::FILE* out);

// The usage, and what a command does, ends with and takes, to standard output.
void PrintHelp(std::initializer_list<ToolCommand> commands, const ToolCommand* command);
