#include "tools/usage.h"

#include <iterator>
#include <string>

#include "tools/exit_status.h"
#include "tools/tool_options.h"

namespace {

// By the number of the exit status.
constexpr const char* kStatusTexts[] = {
    "done",
    "the result could not be printed",
    "wrong command line",
    "no such catalogue, module or command, or a refused argument or format",
    "no answer in time",
    "the service refused",
    "the page cannot be used, or the reply does not fit it or its format",
    "others used the page all the time: nothing was sent",
};
static_assert(std::size(kStatusTexts) == kExitBusy + 1, "every status has its text");

std::string OptionText(const ToolOption& option) {
    return std::string("--") + option.name +
           (option.value != nullptr ? std::string(" ") + option.value : "");
}

void PrintOptions(const ToolCommand* command, std::FILE* out) {
    std::fputs("\nOptions, before or behind the command's name:\n", out);
    for (const ToolOption& option : kToolOptions) {
        if (Allows(command, option)) {
            std::fprintf(out, "  %-16s %s\n", OptionText(option).c_str(), option.help);
        }
    }
}

}  // namespace

void PrintUsage(std::initializer_list<ToolCommand> commands, const ToolCommand* command,
                std::FILE* out) {
    if (command == nullptr) {
        std::fputs("usage: ko_cmd_tool [OPTIONS] COMMAND [OPTIONS] ...\n\n", out);
        for (const ToolCommand& row : commands) {
            std::fprintf(out, "  %-8s %s\n", row.name, row.summary);
        }
        PrintOptions(nullptr, out);
        return;
    }
    std::string options;
    for (const ToolOption& option : kToolOptions) {
        if (IsOneOf(option.letter, command->options)) {
            options += " [" + OptionText(option) + "]";
        }
    }
    std::fprintf(out, "usage: ko_cmd_tool %s%s%s\n", command->name, options.c_str(),
                 command->words);
}

void PrintHelp(std::initializer_list<ToolCommand> commands, const ToolCommand* command) {
    PrintUsage(commands, command, stdout);
    if (command == nullptr) {
        return;
    }
    std::printf("\n%s\n%s\nExit status:\n", command->summary, command->details);
    for (const char* digit = command->statuses; *digit != '\0'; ++digit) {
        std::printf("  %c  %s\n", *digit, kStatusTexts[*digit - '0']);
    }
    PrintOptions(command, stdout);
}
