#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/standard_streams.h"
#include "tools/commands.h"
#include "tools/exit_status.h"

namespace {

constexpr char kExchangeWords[] = " MODULE COMMAND [ARG ...]";

constexpr ToolCommand kCommands[] = {
    {"check", "", "Names every mistake of a catalogue with its line.",
     "\n"
     "Prints the findings as \"file:line: error: text\" and their counts.\n"
     "Exit status: 0 without errors, 1 with.\n",
     "c", 0, 0, RunCheck},
    {"list", "", "Lists the modules and commands of a catalogue.",
     "\nExit status: 0, or 3 without a catalogue.\n", "cj", 0, 0, RunList},
    {"encode", kExchangeWords, "Shows the request of a command without sending it.",
     "\n"
     "MODULE is a module's selecting word or its name. Prints the offset in the request, the\n"
     "bytes, type and value of each field, then the page's header. Exit status: 0, or 3 where\n"
     "\"call\" has it.\n",
     "c", 2, kAnyNumber, RunEncode},
    {"call", kExchangeWords, "Sends one command to the service and prints the reply.",
     "\n"
     "MODULE is a module's selecting word or its name. Exit status:\n"
     "  0  done\n"
     "  2  wrong command line\n"
     "  3  no such catalogue, module or command, or a refused argument: nothing was sent\n"
     "  4  no answer in time\n"
     "  5  the service refused\n"
     "  6  the page cannot be used, or the reply does not fit it or its format\n"
     "  7  others used the page all the time: nothing was sent\n",
     "cjtf", 2, kAnyNumber, RunCall},
};

void PrintUsage(std::FILE* out) {
    std::fputs("usage: ko_cmd_tool COMMAND [OPTIONS] ...\n\n", out);
    for (const ToolCommand& command : kCommands) {
        std::fprintf(out, "  %-8s %s\n", command.name, command.summary);
    }
    std::fputs("\nOptions come before MODULE. \"ko_cmd_tool COMMAND --help\" tells more.\n", out);
}

int Run(int argc, char** argv) {
    if (argc < 2) {
        PrintUsage(stderr);
        return kExitUsage;
    }
    if (std::strcmp(argv[1], "--help") == 0) {
        PrintUsage(stdout);
        return kExitDone;
    }
    const auto* command = std::find_if(
        std::begin(kCommands), std::end(kCommands),
        [argv](const ToolCommand& row) { return std::strcmp(row.name, argv[1]) == 0; });
    if (command == std::end(kCommands)) {
        PrintUsage(stderr);
        return kExitUsage;
    }
    // What the messages about options begin with.
    static char name[] = "ko_cmd_tool";
    argv[1] = name;
    int status = kExitDone;
    const auto line = ReadCommandLine(*command, argc - 1, argv + 1, status);
    return line ? command->run(*line) : status;
}

}  // namespace

int main(int argc, char** argv) {
    OpenClosedStreams();
    return FinishOutput("ko_cmd_tool", Run(argc, argv), kExitFailed);
}
