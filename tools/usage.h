#pragma once

#include <cstdio>

#include "tools/command_line.h"

// What the tool says about itself and its commands; null stands for the whole tool.

// The usage line; for the whole tool also its commands and options.
void PrintUsage(ToolCommands commands, const ToolCommand* command, std::FILE* out);

// The usage, and what a command does, ends with and takes, to standard output.
void PrintHelp(ToolCommands commands, const ToolCommand* command);
