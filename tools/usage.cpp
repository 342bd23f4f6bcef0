#include "tools/usage.h"

#include "tools/tool_options.h"

namespace {

void PrintStatuses(unsigned int further) {
    std::puts("Exit status:");
    const unsigned int statuses = further | StatusSet(kExitDone, kExitFailed, kExitUsage);
    for (int status = 0; status <= kExitBusy; ++status) {
        if ((statuses & StatusSet(status)) != 0) {
            const bool findsErrors = (further & StatusSet(status)) != 0 && status == kExitFailed;
            std::printf("  %d  %s%s\n", status, findsErrors ? "the catalogue has errors, or " : "",
                        kExitStatusTexts[status]);
        }
    }
}

void PrintOptions(const ToolCommand* command, std::FILE* out) {
    std::fputs("\nOptions, before or after the command's name:\n", out);
    for (const ToolOption& option : kToolOptions) {
        if (option.IsOf(command)) {
            std::fprintf(out, "  %-16s %s\n", option.Text().c_str(), option.help);
        }
    }
}

}  // namespace

void PrintUsage(ToolCommands commands, const ToolCommand* command, std::FILE* out) {
    if (command != nullptr) {
        std::fprintf(out, "usage: ko_cmd_tool %s %s%s\n", command->name, command->options,
                     command->words);
        return;
    }
    std::fputs("usage: ko_cmd_tool [OPTIONS] COMMAND [OPTIONS] ...\n\n", out);
    for (const ToolCommand& row : commands) {
        std::fprintf(out, "  %-8s %s\n", row.name, row.summary);
    }
    PrintOptions(nullptr, out);
}

void PrintHelp(ToolCommands commands, const ToolCommand* command) {
    PrintUsage(commands, command, stdout);
    if (command != nullptr) {
        std::printf("\n%s\n%s\n", command->summary, command->details);
        PrintStatuses(command->statuses);
        PrintOptions(command, stdout);
    }
}
