#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/unique_fd.h"

constexpr int kPatienceMs = 60'000;  // more than a healthy machine needs for anything

// One program of the build, or of the machine by its path, run in the working directory as a
// process of its own. Waiting for something that does not come fails the test after kPatienceMs.
// Killed at the end, with all that it started, when still running.
class Child {
public:
    enum class Io {
        kPipes,      // standard output only; standard error is the test's own
        kErrorFile,  // as kPipes, with standard error in the file "stderr" of the working directory
        kTerminal,   // a pseudo-terminal of its own that passes output through as it is
    };

    Child(const std::string& program, const std::vector<std::string>& arguments, Io io);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void Type(std::string_view bytes) const;
    void CloseInput() { m_input = UniqueFd(); }
    void CloseOutput() { m_output = UniqueFd(); }

    // Reads until the output not yet taken holds `text`; takes and returns it up to there.
    std::string ReadUntil(const std::string& text);

    // Reads what there is. True once the output not yet taken holds `text`, which may be empty for
    // none, or has come to its end.
    bool Holds(const std::string& text);

    // Reads to the end of the output and returns what was not yet taken.
    std::string ReadRest();

    // Waits for the end; the status as waitpid gives it. What does not end is killed.
    int Wait();

    // Waits until the process stops (or, with WCONTINUED, goes on). False when it ended or `ms`
    // passed.
    bool WaitChange(int option, int ms) const;

    pid_t Pid() const { return m_pid; }
    int Terminal() const { return m_output.Get(); }

private:
    bool ReadSome();
    bool ReadMore();
    void Kill() const;
    pid_t WaitStatus(int options, int ms, int& status) const;

    pid_t m_pid = -1;
    bool m_running = true;
    UniqueFd m_input;
    UniqueFd m_output;
    std::string m_pending;
};

// The stand-in service, ready to answer.
class Service : public Child {
public:
    explicit Service(const std::vector<std::string>& arguments = {});
};
