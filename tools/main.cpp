#include <initializer_list>

#include "platform/standard_streams.h"
#include "tools/commands.h"
#include "tools/exit_status.h"

namespace {

constexpr char kExchangeWords[] = " MODULE COMMAND [ARG ...]";

constexpr std::initializer_list<ToolCommand> kCommands = {
    {"check", " [DIR]", "Names every mistake of a catalogue with its line.",
     "\n"
     "DIR is as with --catalogue. Prints the findings as \"file:line: error: text\" and their\n"
     "counts, and ends with 1 when there are errors among them.\n",
     "012", "c", 0, 1, RunCheck},
    {"list", "", "Lists the modules and commands of a catalogue.", "", "0123", "cj", 0, 0, RunList},
    {"encode", kExchangeWords, "Shows the request of a command without sending it.",
     "\n"
     "MODULE is a module's selecting word or its name. Prints the offset in the request, the\n"
     "bytes, type and value of each field, then the page's header.\n",
     "0123", "c", 2, kAnyNumber, RunEncode},
    {"call", kExchangeWords, "Sends one command to the service and prints the reply.",
     "\nMODULE is a module's selecting word or its name.\n", "01234567", "cjJtf", 2, kAnyNumber,
     RunCall},
    {"watch", kExchangeWords, "Repeats one command and shows its values as they change.",
     "\n"
     "Takes its turn at the page for each call, on a steady beat; a call that takes longer leaves\n"
     "beats out. On a terminal a screen with a line for each value, else CSV; until Ctrl-C. A "
     "call\n"
     "that fails is shown and counted, and ends nothing.\n",
     "0123", "cCijJnt", 2, kAnyNumber, RunWatch},
    {"monitor", "", "Prints the requests and replies of others as they stand in the page.",
     "\n"
     "Looks every millisecond, takes no turn and writes nothing; until Ctrl-C. It can miss what\n"
     "stands in the page for less than 2 ms, such as a request that is answered at once, and the\n"
     "second one of two that are the same to the byte. Times are those of the looks.\n",
     "01236", "cjJnx", 0, 0, RunMonitor},
};

}  // namespace

int main(int argc, char** argv) {
    OpenClosedStreams();
    int status = kExitDone;
    const auto line = ReadCommandLine(kCommands, argc, argv, status);
    return FinishOutput("ko_cmd_tool", line ? line->command->run(*line) : status, kExitFailed);
}
