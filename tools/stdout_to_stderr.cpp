#include "tools/stdout_to_stderr.h"

#include <unistd.h>

#include <cstdio>

StdoutToStderr::StdoutToStderr() {
    std::fflush(stdout);
    m_failed = std::ferror(stdout) != 0;
    m_saved = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

StdoutToStderr::~StdoutToStderr() {
    std::fflush(stdout);
    if (!m_failed) {
        std::clearerr(stdout);  // what failed are messages, not the result
    }
    dup2(m_saved, STDOUT_FILENO);
    close(m_saved);
}
