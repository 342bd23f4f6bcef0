#include "tools/tool_options.h"

#include "platform/read_number.h"

const std::vector<ToolOption> kToolOptions = {
    {"catalogue", "DIR", "the directory of mods.conf and cmds.conf (the console's own)",
     [](const char* value, CommandLine& line) {
         line.catalogue = value;
         return true;
     }},
    {"count", "N", "end after N samples, or lines about the page",
     [](const char* value, CommandLine& line) { return ReadNumber(value, line.count); }},
    {"csv", "", "print CSV, as it does anyway where its output is no terminal",
     [](const char*, CommandLine& line) { return line.csv = true; }},
    {"force", "", "overwrite an unanswered request; its reply may come instead",
     [](const char*, CommandLine& line) { return line.force = true; }},
    {"hex", "", "print the bytes of every message",
     [](const char*, CommandLine& line) { return line.hex = true; }},
    {"interval", "MS", "from the start of one call to that of the next (1000)",
     [](const char* value, CommandLine& line) {
         return ReadMilliseconds(value, line.interval) && line.interval.count() != 0;
     }},
    {"json", "", "print JSON, one object per line",
     [](const char*, CommandLine& line) {
         line.json = JsonInt64::kNumber;
         return true;
     }},
    {"json-strings", "", "the same, with 64-bit integers as strings",
     [](const char*, CommandLine& line) {
         line.json = JsonInt64::kString;
         return true;
     }},
    {"timeout", "MS", "wait up to MS for the turn and the reply (5000)",
     [](const char* value, CommandLine& line) { return ReadMilliseconds(value, line.timeout); }},
    {"help", "", "print the help of the command, or this",
     [](const char*, CommandLine& line) { return line.help = true; }},
    {"version", "", "print the version",
     [](const char*, CommandLine& line) { return line.version = true; }},
};

std::string ToolOption::Text() const {
    return "--" + name + (value.empty() ? "" : " " + value);
}

bool ToolOption::IsOf(const ToolCommand* command) const {
    return command == nullptr || name == "help" || name == "version" ||
           std::string(command->options).find("[" + Text() + "]") != std::string::npos;
}
