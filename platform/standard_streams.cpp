#include "platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

int g_outputError = 0;  // of the first flush that failed

}  // namespace

void OpenClosedStreams() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
            // Takes the lowest number that is free, which is this one.
            static_cast<void>(open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

bool FlushOutput() {
    if (std::fflush(stdout) != 0 && g_outputError == 0) {
        g_outputError = errno;
    }
    return std::ferror(stdout) == 0;
}

int FinishOutput(const char* program, int status, int failure) {
    if (FlushOutput()) {
        return status;
    }
    const char* reason = g_outputError != 0 ? std::strerror(g_outputError) : "write error";
    std::fprintf(stderr, "%s: standard output: %s\n", program, reason);
    return status == 0 ? failure : status;
}

void PrintSystemError(const char* message) {
    const int error = errno;
    std::fflush(stdout);
    errno = error;
    std::perror(message);
}
