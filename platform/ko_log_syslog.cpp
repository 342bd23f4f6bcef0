#include <syslog.h>

#include <cstdarg>
#include <cstdio>

#include "platform/ko_log.h"

void KoLog::PrintLog(ATV_LOG_PRIO_E priority, const char* tag, const char* function,
                     unsigned int line, const char* format, ...) {
    char text[512];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof(text), format, values);
    va_end(values);
    const int level = priority == ATV_LOG_PRIO_ERROR ? LOG_ERR : LOG_WARNING;
    syslog(LOG_USER | level, "%s: [%s:%u] %s", tag, function, line, text);
}
