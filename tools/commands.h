#pragma once

#include "tools/command_line.h"

// The commands of ko_cmd_tool; each stands in a file of its own and returns an ExitStatus. Results
// go to standard output, which the caller flushes, messages to standard error.
int RunCheck(const CommandLine& line);
int RunList(const CommandLine& line);
int RunEncode(const CommandLine& line);
int RunCall(const CommandLine& line);
int RunWatch(const CommandLine& line);
int RunMonitor(const CommandLine& line);
