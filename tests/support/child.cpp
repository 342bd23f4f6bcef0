#include "tests/support/child.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <iterator>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

namespace {

void Exec(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {program};
    if (program.front() != '/') {
        std::istringstream emulator(KO_EMULATOR);
        words.assign(std::istream_iterator<std::string>(emulator), {});
        words.push_back(KO_BIN_DIR "/" + program);
    }
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    execvp(argv[0], argv.data());
    _exit(127);
}

}  // namespace

Child::Child(const std::string& program, const std::vector<std::string>& arguments, Io io) {
    std::signal(SIGPIPE, SIG_IGN);  // a program that is gone is noticed by what it printed
    if (io == Io::kTerminal) {
        int master = -1;
        termios settings = {};
        cfmakeraw(&settings);
        settings.c_lflag = ICANON | ECHO | ISIG;
        settings.c_iflag = ICRNL;
        settings.c_cc[VINTR] = 3;
        settings.c_cc[VSUSP] = 26;
        m_pid = forkpty(&master, nullptr, &settings, nullptr);
        if (m_pid == 0) {
            Exec(program, arguments);
        }
        m_output = UniqueFd(master);
        m_input = UniqueFd(dup(master));
        return;
    }
    int in[2];
    int out[2];
    EXPECT_EQ(0, pipe2(in, O_CLOEXEC));
    EXPECT_EQ(0, pipe2(out, O_CLOEXEC));
    m_pid = fork();
    if (m_pid == 0) {
        setsid();
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        if (io == Io::kErrorFile) {
            dup2(open("stderr", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), STDERR_FILENO);
        }
        Exec(program, arguments);
    }
    close(in[0]);
    close(out[1]);
    m_input = UniqueFd(in[1]);
    m_output = UniqueFd(out[0]);
}

Child::~Child() {
    if (m_running) {
        Kill();
    }
}

// The program leads a process group, as soon as it has come so far.
void Child::Kill() const {
    kill(-m_pid, SIGKILL);
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
}

void Child::Type(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = write(m_input.Get(), bytes.data(), bytes.size());
        if (written < 0) {
            return;  // the program is gone
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// False at the end of the output.
bool Child::ReadSome() {
    char bytes[4096];
    const ssize_t got = read(m_output.Get(), bytes, sizeof(bytes));
    m_pending.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return got > 0;
}

bool Child::ReadMore() {
    pollfd waiting = {m_output.Get(), POLLIN, 0};
    if (poll(&waiting, 1, kPatienceMs) <= 0) {
        ADD_FAILURE() << "nothing more came behind: " << m_pending;
        return false;
    }
    return ReadSome();
}

bool Child::Holds(const std::string& text) {
    pollfd waiting = {m_output.Get(), POLLIN, 0};
    return (poll(&waiting, 1, 0) > 0 && !ReadSome()) ||
           (!text.empty() && m_pending.find(text) != std::string::npos);
}

std::string Child::ReadUntil(const std::string& text) {
    for (;;) {
        const std::size_t found = m_pending.find(text);
        if (found != std::string::npos) {
            std::string taken = m_pending.substr(0, found + text.size());
            m_pending.erase(0, taken.size());
            return taken;
        }
        if (!ReadMore()) {
            ADD_FAILURE() << "'" << text << "' is not in: " << m_pending;
            return {};
        }
    }
}

std::string Child::ReadRest() {
    while (ReadMore()) {
    }
    return std::exchange(m_pending, {});
}

int Child::Wait() {
    int status = 0;
    if (WaitStatus(0, kPatienceMs, status) != m_pid) {
        ADD_FAILURE() << "it does not end";
        Kill();
    }
    m_running = false;
    return status;
}

bool Child::WaitChange(int option, int ms) const {
    int status = 0;
    return WaitStatus(option, ms, status) == m_pid &&
           (option == WCONTINUED ? WIFCONTINUED(status) : WIFSTOPPED(status));
}

// As waitpid, for so long.
pid_t Child::WaitStatus(int options, int ms, int& status) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    pid_t changed = 0;
    while ((changed = waitpid(m_pid, &status, options | WNOHANG)) == 0 &&
           std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
    }
    return changed;
}

Service::Service(const std::vector<std::string>& arguments)
    : Child("ko_tv_service", arguments, Io::kPipes) {
    ReadUntil("serving ");
}
