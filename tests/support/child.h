#pragma once

#include <string>
#include <string_view>

#include "platform/unique_fd.h"

constexpr int kPatienceMs = 60'000;  // more than a healthy machine needs for anything

// A shell that carries out a script in the working directory, as a process of its own; "exec" makes
// it the program. Waiting for output that does not come fails the test after kPatienceMs. Killed at
// the end, with all that it started, when still running.
class Child {
public:
    enum class Io {
        kPipes,     // standard input and output; standard error is the test's own
        kTerminal,  // a pseudo-terminal of its own that passes output through as it is
    };

    explicit Child(const std::string& script, Io io = Io::kPipes);
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

    // Waits for the end or, with WUNTRACED or WCONTINUED, for a stop or for going on. The status as
    // waitpid gives it; -1, which says neither, when `ms` passed.
    int Wait(int option = 0, int ms = kPatienceMs) const;

    pid_t Pid() const { return m_pid; }
    int Terminal() const { return m_output.Get(); }

private:
    ssize_t ReadSome(int ms);

    pid_t m_pid = -1;
    UniqueFd m_input;
    UniqueFd m_output;
    std::string m_pending;
};

// The script that is the console.
constexpr char kConsole[] = "exec " KO_EMULATOR " '" KO_BIN_DIR "/ko_cmd_debug'";

// The stand-in service, ready to answer.
class Service : public Child {
public:
    explicit Service(const std::string& options = {});
};
