#include "platform/standard_streams.h"

#include <cerrno>
#include <cstdio>

void PrintSystemError(const char* message) {
    const int error = errno;
    std::fflush(stdout);
    errno = error;
    std::perror(message);
}
