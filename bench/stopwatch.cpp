#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/bench.h"

namespace {

using Clock = std::chrono::steady_clock;

// A program on a terminal of its own with 80 columns, killed in the end.
class Program {
public:
    // Its path and arguments, separated by blanks.
    explicit Program(const std::string& line) {
        std::istringstream stream(line);
        std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
        std::vector<char*> argv;
        argv.reserve(words.size() + 1);
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        termios settings = {};
        cfmakeraw(&settings);
        settings.c_lflag = ICANON | ECHO;  // an editor leaves a terminal without echo alone
        const winsize size = {24, 80, 0, 0};
        m_pid = forkpty(&m_terminal, nullptr, &settings, &size);
        if (m_pid == 0) {
            execv(argv[0], argv.data());
            _exit(127);
        }
    }
    ~Program() {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
        close(m_terminal);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string Proc() const { return "/proc/" + std::to_string(m_pid); }

    // Types the keys and reads what comes until it holds `answer`.
    void Type(const std::string& keys, const std::string& answer) const {
        char bytes[65536];
        std::string text;
        ssize_t got = write(m_terminal, keys.data(), keys.size());
        while (text.find(answer) == std::string::npos && got >= 0) {
            text.erase(0, text.size() - std::min(text.size(), answer.size()));
            got = read(m_terminal, bytes, sizeof(bytes));
            text.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        }
        if (got < 0) {
            std::fputs("stopwatch: a program has ended\n", stderr);
            std::exit(1);
        }
    }

    // Reads what may still come after the prompt.
    void Settle() const {
        char bytes[4096];
        pollfd terminal = {m_terminal, POLLIN, 0};
        while (poll(&terminal, 1, 20) > 0 && read(m_terminal, bytes, sizeof(bytes)) > 0) {
        }
    }

private:
    pid_t m_pid = -1;
    int m_terminal = -1;
};

constexpr char kPrompt[] = "TV $";

long long Since(Clock::time_point start) {
    return std::chrono::nanoseconds(Clock::now() - start).count();
}

// The processor time of all threads, in nanoseconds.
long long ProcessorTime(const Program& program) {
    long long sum = 0;
    for (const auto& task : std::filesystem::directory_iterator(program.Proc() + "/task")) {
        long long time = 0;
        std::ifstream(task.path() / "schedstat") >> time;
        sum += time;
    }
    return sum;
}

// The middle one of the times from each letter of a line to its echo.
long long KeyEcho(const Program& program) {
    std::vector<long long> times;
    for (char key = 'a'; key <= 'z'; ++key) {
        const auto start = Clock::now();
        program.Type({key}, {key});
        times.push_back(Since(start));
    }
    program.Type("\n", kPrompt);
    program.Settle();
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

long long Answer(const Program& program, const std::string& keys) {
    const auto start = Clock::now();
    program.Type(keys, kPrompt);
    const long long time = Since(start);
    program.Settle();
    return time;
}

long long Start(const std::string& line) {
    const auto start = Clock::now();
    const Program program(line);
    program.Type("", kPrompt);
    return Since(start);
}

long long Measure(const std::string& what, const std::string& line, const Program& program) {
    if (what == "start") {
        return Start(line);
    }
    if (what == "key") {
        return KeyEcho(program);
    }
    if (what == "memory") {
        return ProcNumber(program.Proc() + "/smaps_rollup", "Private_Dirty:");
    }
    if (what == "idle") {
        return ProcessorTime(program);
    }
    return Answer(program, what == "list" ? "\t" : what == "help" ? "help\n" : "\n");
}

// Of the rounds' values the one that the least disturbed.
long long Result(const std::string& what, std::vector<long long> values) {
    std::sort(values.begin(), values.end());
    if (what == "idle") {
        return values.back() - values.front();
    }
    return values.front();
}

// Keeps this process and those it starts on one processor: whether an answer comes from another one
// would decide what a key takes.
void StayHere() {
    cpu_set_t here;
    CPU_ZERO(&here);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &here);
    sched_setaffinity(0, sizeof(here), &here);
}

}  // namespace

// Runs the programs side by side, for so many rounds each in turn, and prints a number for each. At
// the prompt of their module m0, where they have one, it is
//   start    from the start to the first prompt
//   key      from a letter to its echo
//   list, help, refresh    from TAB, "help" and an empty line to the next prompt
//   idle     the processor time of the rounds, a second each; all in nanoseconds
//   memory   the private dirty memory in kB
int main(int argc, char** argv) {
    StayHere();
    const std::string what = argv[1];
    const std::vector<std::string> lines(argv + 3, argv + argc);
    std::vector<std::unique_ptr<Program>> programs;
    for (const std::string& line : lines) {
        programs.push_back(std::make_unique<Program>(line));
        programs.back()->Type("", kPrompt);
        programs.back()->Settle();
        if (what != "start" && what != "idle") {
            Answer(*programs.back(), "m0\n");
        }
    }
    std::vector<std::vector<long long>> values(lines.size());
    for (int round = std::stoi(argv[2]); round > 0; --round) {
        // Each is the first in its turn: who comes after a pause finds the processor asleep.
        for (std::size_t turn = 0; turn < lines.size(); ++turn) {
            const std::size_t i = (static_cast<std::size_t>(round) + turn) % lines.size();
            values[i].push_back(Measure(what, lines[i], *programs[i]));
        }
        if (what == "idle") {
            std::this_thread::sleep_for(std::chrono::seconds(1));
        }
    }
    for (const auto& each : values) {
        std::printf("%lld ", Result(what, each));
    }
    std::puts("");
    return 0;
}
