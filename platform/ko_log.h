#pragma once

// Priorities of the platform log, by its own numbers.
enum ATV_LOG_PRIO_E {
    ATV_LOG_PRIO_WARN = 5,
    ATV_LOG_PRIO_ERROR = 6,
};

// The tag under which every part of the console logs.
constexpr char kLogTag[] = "KoMW_Ko_cmd_pri";

class KoLog {
public:
    // Writes one entry, "[function:line] text" of at most 511 bytes of text, to the log daemon
    // if there is one, else to syslog; never to the terminal. Does not wait: what neither takes
    // now is lost. Safe on any thread, not in signal handlers.
    static void PrintLog(ATV_LOG_PRIO_E priority, const char* tag, const char* function,
                         unsigned int line, const char* format, ...)
        __attribute__((format(printf, 5, 6)));
};
