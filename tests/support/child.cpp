#include "tests/support/child.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace {

[[noreturn]] void Exec(const std::string& script) {
    std::signal(SIGPIPE, SIG_DFL);
    execl("/bin/sh", "sh", "-c", script.c_str(), nullptr);
    _exit(127);
}

}  // namespace

Child::Child(const std::string& script, Io io) {
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
            Exec(script);
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
        Exec(script);
    }
    close(in[0]);
    close(out[1]);
    m_input = UniqueFd(in[1]);
    m_output = UniqueFd(out[0]);
}

// The program leads a process group, as soon as it has come so far.
Child::~Child() {
    if (waitpid(m_pid, nullptr, WNOHANG) == 0) {
        kill(-m_pid, SIGKILL);
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
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

// Returns how many bytes came: 0 at the end of the output, -1 for none in the time.
ssize_t Child::ReadSome(int ms) {
    pollfd waiting = {m_output.Get(), POLLIN, 0};
    if (poll(&waiting, 1, ms) <= 0) {
        return -1;
    }
    char bytes[4096];
    const ssize_t got = std::max<ssize_t>(read(m_output.Get(), bytes, sizeof(bytes)), 0);
    m_pending.append(bytes, static_cast<std::size_t>(got));
    return got;
}

bool Child::Holds(const std::string& text) {
    return ReadSome(0) == 0 || (!text.empty() && m_pending.find(text) != std::string::npos);
}

std::string Child::ReadUntil(const std::string& text) {
    std::size_t found = 0;
    while ((found = m_pending.find(text)) == std::string::npos) {
        if (ReadSome(kPatienceMs) <= 0) {
            ADD_FAILURE() << "'" << text << "' is not in: " << m_pending;
            return {};
        }
    }
    std::string taken = m_pending.substr(0, found + text.size());
    m_pending.erase(0, taken.size());
    return taken;
}

std::string Child::ReadRest() {
    ssize_t got = 0;
    while ((got = ReadSome(kPatienceMs)) > 0) {
    }
    EXPECT_EQ(0, got) << "the output does not end behind: " << m_pending;
    return std::exchange(m_pending, {});
}

int Child::Wait(int option, int ms) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    int status = 0;
    while (waitpid(m_pid, &status, option | WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            return -1;
        }
        std::this_thread::yield();
    }
    return status;
}

Service::Service(const std::string& options)
    : Child("exec " KO_EMULATOR " '" KO_BIN_DIR "/ko_tv_service' " + options) {
    ReadUntil("serving ");
}
