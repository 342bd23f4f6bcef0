#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

// Reads the terminal until what came ends with the prompt.
void ReadPrompt(int terminal) {
    std::string text;
    char bytes[65536];
    while (text.size() < 4 || text.compare(text.size() - 4, 4, "TV $") != 0) {
        const ssize_t got = read(terminal, bytes, sizeof(bytes));
        if (got <= 0) {
            return;
        }
        text.assign(bytes, static_cast<std::size_t>(got));
    }
}

}  // namespace

// Prints the microseconds from the start of a program on a terminal of its own to its prompt; with
// -help, from the key that ends "help" in its module m0 to the prompt behind the listing.
int main(int argc, char** argv) {
    const bool help = argc > 2 && std::strcmp(argv[1], "-help") == 0;
    termios raw = {};
    cfmakeraw(&raw);
    Clock::time_point start = Clock::now();
    int terminal = -1;
    const pid_t pid = forkpty(&terminal, nullptr, &raw, nullptr);
    if (pid == 0) {
        execv(argv[help ? 2 : 1], argv + (help ? 2 : 1));
        _exit(127);
    }
    ReadPrompt(terminal);
    if (help) {
        for (const char* line : {"m0\n", "help\n"}) {
            start = Clock::now();
            if (write(terminal, line, std::strlen(line)) < 0) {
                return 1;
            }
            ReadPrompt(terminal);
        }
    }
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    std::printf("%lld\n", static_cast<long long>(time.count()));
    return 0;
}
