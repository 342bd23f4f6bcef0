#include "platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

void OpenClosedStreams() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
            // Takes the lowest number that is free, which is this one.
            static_cast<void>(open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

int FinishOutput(const char* program, int status, int failure) {
    const int error = std::fflush(stdout) != 0 ? errno : EIO;
    if (std::ferror(stdout) == 0) {
        return status;
    }
    std::fprintf(stderr, "%s: standard output: %s\n", program, std::strerror(error));
    return status == 0 ? failure : status;
}

void PrintSystemError(const char* message) {
    const int error = errno;
    std::fflush(stdout);
    errno = error;
    std::perror(message);
}
