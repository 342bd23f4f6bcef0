#pragma once

#include "tools/command_line.h"

// Reads the words after argv[0], the command's name with options before and after it, then its
// words, at the first of which the options end; and runs the command, or prints help, version or
// what is wrong. Returns an ExitStatus.
int RunCommandLine(ToolCommands commands, int argc, char** argv);
