#include "tests/support/recording_log.h"

#include <cstdarg>
#include <cstdio>

#include "platform/ko_log.h"

std::vector<std::string> g_logEntries;

void KoLog::PrintLog(ATV_LOG_PRIO_E priority, const char* tag, const char* function,
                     unsigned int line, const char* format, ...) {
    char text[512];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof(text), format, values);
    va_end(values);
    g_logEntries.push_back(std::to_string(priority) + " " + tag + " " + function + ":" +
                           std::to_string(line) + " " + text);
}
