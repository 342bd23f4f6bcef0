#include "platform/standard_streams.h"
#include "tools/commands.h"
#include "tools/run_command_line.h"

namespace {

constexpr char kExchangeWords[] = " MODULE COMMAND [ARG ...]";

constexpr ToolCommands kCommands = {
    {"check", "[--catalogue DIR] [--json]", " [DIR]",
     "Reports every mistake in a catalogue, with file and line.",
     "\n"
     "DIR is as with --catalogue. Prints findings as \"file:line: error: message; remedy\", then\n"
     "their counts.\n",
     StatusSet(kExitFailed), 0, 1, RunCheck},
    {"list", "[--catalogue DIR] [--json]", "", "Lists the modules and commands of a catalogue.", "",
     StatusSet(kExitNotSent), 0, 0, RunList},
    {"encode", "[--catalogue DIR]", kExchangeWords,
     "Shows the request of a command without sending it.",
     "\n"
     "MODULE is a module's word or its name. Prints the offset in the request, the bytes, type\n"
     "and value of each field, then the page's header.\n",
     StatusSet(kExitNotSent), 2, kAnyNumber, RunEncode},
    {"call", "[--catalogue DIR] [--force] [--json] [--json-strings] [--timeout MS]", kExchangeWords,
     "Sends one command to the service and prints the reply.",
     "\nMODULE is a module's word or its name. With --json a failure is an object too.\n",
     StatusSet(kExitNotSent, kExitNoAnswer, kExitRefused, kExitPage, kExitBusy), 2, kAnyNumber,
     RunCall},
    {"watch",
     "[--catalogue DIR] [--count N] [--csv] [--interval MS] [--json] [--json-strings] [--timeout "
     "MS]",
     kExchangeWords, "Repeats one command and shows its values as they change.",
     "\n"
     "Takes a turn at the page for each call, at a fixed interval; skips the calls due during a\n"
     "longer one. Shows one line per value on a terminal, else prints CSV, until Ctrl-C. Shows "
     "and\n"
     "counts a failed call and goes on.\n",
     StatusSet(kExitNotSent), 2, kAnyNumber, RunWatch},
    {"monitor", "[--catalogue DIR] [--count N] [--hex] [--json] [--json-strings]",
     " [MODULE [COMMAND]]", "Prints the requests of others with their replies.",
     "\n"
     "Polls the page every millisecond until Ctrl-C; takes no turn, writes nothing. MODULE is a\n"
     "module's word or its name; only its commands are then shown. It can miss what is in the\n"
     "page for less than 2 ms, and the second of two identical messages. Times are those of the\n"
     "polls.\n",
     StatusSet(kExitNotSent, kExitPage), 0, 2, RunMonitor},
};

}  // namespace

int main(int argc, char** argv) {
    OpenClosedStreams();
    return FinishOutput("ko_cmd_tool", RunCommandLine(kCommands, argc, argv), kExitFailed);
}
