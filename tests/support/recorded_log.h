#pragma once

#include <cstdarg>
#include <cstdio>
#include <string>

#include "platform/ko_log.h"

// The entries of the log, a row for each; the test of the programs tries the real one.
inline std::string g_logged;

inline void KoLog::PrintLog(ATV_LOG_PRIO_E priority, const char* tag, const char* function,
                            unsigned int line, const char* format, ...) {
    char text[512];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof(text), format, values);
    va_end(values);
    g_logged += std::to_string(priority) + " " + tag + " [" + function + ":" +
                std::to_string(line) + "] " + text + "\n";
}
