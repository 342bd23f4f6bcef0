#pragma once

// Sends what is printed to standard output to standard error while it lives. One at a time, and no
// other thread may print.
class StdoutToStderr {
public:
    StdoutToStderr();
    ~StdoutToStderr();
    StdoutToStderr(const StdoutToStderr&) = delete;
    StdoutToStderr& operator=(const StdoutToStderr&) = delete;

private:
    int m_saved;
    bool m_failed;  // standard output had failed before
};
