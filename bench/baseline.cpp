#include <fcntl.h>
#include <sys/mman.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <list>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include "bench/bench.h"
#include "platform/sleep_once.h"

namespace {

void Write(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

void SleepOn() {
    while (true) {
        SleepOnce(std::chrono::milliseconds(10));
    }
}

// The work before the console's prompt: the page, a thread that sleeps, and for each file a message
// and its rows in memory.
std::list<std::string> Prepare(const char* page, char** files) {
    std::list<std::string> rows;
    for (; *files != nullptr; ++files) {
        Write(std::string("reading the configuration file: ") + *files + "\n");
        std::ifstream file(*files);
        for (std::string row; std::getline(file, row);) {
            rows.push_back(row);
        }
    }
    const int descriptor = open(page, O_RDWR | O_CREAT | O_CLOEXEC, 0660);
    static_cast<void>(mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0));
    std::thread(SleepOn).detach();
    return rows;
}

// The writes of the console's listing: of its 512 words one half is modules, the other commands.
void ListWords() {
    constexpr int kGroup = kBenchWords / 2;
    for (int i = 0; i < kBenchWords; ++i) {
        if (i % kGroup == 0) {
            Write(
                "\n==================================a group==================================\n");
        }
        const int column = i % kGroup % 10;
        Write((column == 0 ? "" : "\t") + BenchWord(i) + (column == 9 ? "\n" : ""));
    }
    Write("\n");
}

}  // namespace

// What the console cannot do without: the C++ library at hand, raw mode, the prompt, and keys.
//   baseline                      lists words on TAB
//   baseline copy N               copies the N words of a map into a list on Enter
//   baseline sleep                sleeps 10 ms at a time
//   baseline prepare PAGE FILE... does the console's work before the prompt, but reads no meaning
int main(int argc, char** argv) {
    std::istringstream words("TV $\n");
    std::string prompt;
    std::getline(words, prompt);
    termios settings = {};
    if (tcgetattr(STDIN_FILENO, &settings) == 0) {
        settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &settings);
    }
    const std::string_view mode = argc > 1 ? argv[1] : "";
    std::map<std::string, int> all;
    for (int i = 0; mode == "copy" && i < std::stoi(argv[2]); ++i) {
        all.emplace(BenchWord(i), i);
    }
    const auto rows = mode == "prepare" ? Prepare(argv[2], argv + 3) : std::list<std::string>();
    Write(prompt);
    if (mode == "sleep") {
        SleepOn();
    }
    for (int key = std::getchar(); key != EOF; key = std::getchar()) {
        if (key == '\t') {
            ListWords();
            Write(prompt);
        } else if (key == '\n') {
            Write("\n\r");
            std::list<std::string> copy;
            for (const auto& word : all) {
                copy.push_back(word.first);
            }
            Write(prompt);
        } else {
            Write(std::string(1, static_cast<char>(key)));
        }
    }
    return 0;
}
