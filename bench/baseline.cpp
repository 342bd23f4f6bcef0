#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>

// What the console cannot do without: the C++ library at hand, raw mode, the prompt, and a key.
int main() {
    std::istringstream words("TV $");
    std::string prompt;
    words >> prompt;
    termios settings = {};
    if (tcgetattr(STDIN_FILENO, &settings) == 0) {
        settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &settings);
    }
    std::printf("TV $");
    std::fflush(stdout);
    return std::getchar() == EOF ? 1 : 0;
}
