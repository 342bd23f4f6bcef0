#include "lineedit/ko_stream.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iterator>

#include "lineedit/keys.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kHistoryLimit = 10000;
constexpr std::size_t kLineSize = 1024;  // bytes of an accepted line, terminator included

// The accepted line, shared by all editors of the process.
char g_lineBuffer[kLineSize];

// What Gets returns when a listing was printed.
char g_tabMarker[] = "TAB";

void PrintSetError(int result) {
    std::printf("error:set tcsetattr fail, ret:)0x%x !!! errno = %d\n",
                static_cast<unsigned int>(result), errno);
}

}  // namespace

KoStream::KoStream() : m_itHistory(m_lstHistory.end()) {}

KoStream::~KoStream() {
    ResetTermios();
}

void KoStream::Init() {
    m_itHistory = m_lstHistory.end();
    if (isatty(STDIN_FILENO) == 0) {
        return;
    }
    const int got = tcgetattr(STDIN_FILENO, &m_stSavedTermios);
    if (got != 0) {
        std::printf("error:set tcgetattr fail, ret:)0x%x !!! errno = %d\n",
                    static_cast<unsigned int>(got), errno);
        return;
    }
    m_bSaved = true;
    m_stRawTermios = m_stSavedTermios;
    m_stRawTermios.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    m_stRawTermios.c_cc[VMIN] = 1;
    m_stRawTermios.c_cc[VTIME] = 0;
    if (isatty(STDIN_FILENO) != 0) {
        const int set = tcsetattr(STDIN_FILENO, TCSANOW, &m_stRawTermios);
        if (set != 0) {
            PrintSetError(set);
        }
    }
}

int KoStream::ResetTermios() {
    if (!m_bSaved || isatty(STDIN_FILENO) == 0) {
        return 0;
    }
    const int set = tcsetattr(STDIN_FILENO, TCSANOW, &m_stSavedTermios);
    if (set != 0) {
        PrintSetError(set);
    }
    return set;
}

char* KoStream::Gets() {
    if (!m_strInbuffer.empty()) {
        std::printf("%s", m_strInbuffer.c_str());
        std::fflush(stdout);
    }
    for (;;) {
        const int byte = std::getchar();
        switch (byte) {
            case EOF:
                return nullptr;
            case kEscape:
            case kBracket:
            case kRight:
            case kLeft:
                break;
            case kBackspace:
                OnBackspace();
                break;
            case kTab:
                if (OnTab() == 0) {
                    return g_tabMarker;
                }
                break;
            case kEnter:
                return OnEnter();
            case kUp:
                OnUp();
                break;
            case kDown:
                OnDown();
                break;
            default:
                if (!OnText(static_cast<char>(byte))) {
                    return nullptr;
                }
        }
    }
}

// Echoes and stores a byte; false when the echo failed and the byte was not stored. A blank is
// stored in any case.
bool KoStream::OnText(char byte) {
    if (std::putchar(static_cast<unsigned char>(byte)) == EOF && byte != ' ') {
        return false;
    }
    std::fflush(stdout);
    m_strInbuffer += byte;
    return true;
}

char* KoStream::OnEnter() {
    if (m_lstHistory.size() >= kHistoryLimit) {
        if (m_itHistory == m_lstHistory.begin()) {
            ++m_itHistory;
        }
        m_lstHistory.pop_front();
    }
    if (!m_strInbuffer.empty()) {
        m_lstHistory.push_back(m_strInbuffer);
    }
    if (std::putchar('\n') == EOF || std::putchar('\r') == EOF) {
        return nullptr;
    }
    std::fflush(stdout);
    if (m_strInbuffer.size() >= kLineSize) {
        std::puts("Error:m_strInbuffer too large");
        return nullptr;
    }
    const int copied =
        strncpy_s(g_lineBuffer, kLineSize, m_strInbuffer.c_str(), m_strInbuffer.size());
    if (copied != 0) {
        std::printf("strncpy_s failed, rc = %d", copied);
        return nullptr;
    }
    m_strInbuffer.clear();
    m_itHistory = m_lstHistory.end();
    return g_lineBuffer;
}

int KoStream::OnBackspace() {
    if (m_strInbuffer.empty()) {
        return 0;
    }
    m_strInbuffer.pop_back();
    for (const char byte : {'\b', ' ', '\b'}) {
        if (std::putchar(byte) == EOF) {
            return -1;
        }
    }
    std::fflush(stdout);
    return 0;
}

int KoStream::OnUp() {
    if (m_itHistory == m_lstHistory.begin()) {
        return -1;
    }
    --m_itHistory;
    ReplaceLine(*m_itHistory);
    return 0;
}

int KoStream::OnDown() {
    if (m_itHistory == m_lstHistory.end() || ++m_itHistory == m_lstHistory.end()) {
        return -1;
    }
    ReplaceLine(*m_itHistory);
    return 0;
}

// `line` is a history entry, never m_strInbuffer itself.
void KoStream::ReplaceLine(const std::string& line) {
    while (!m_strInbuffer.empty()) {
        OnBackspace();
    }
    std::printf("%s", line.c_str());
    std::fflush(stdout);
    m_strInbuffer = line;
}
