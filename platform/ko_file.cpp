#include "platform/ko_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/unique_fd.h"

namespace {

// Returns 0 or an error number. The size that fstat tells is only a first guess: the file may grow
// or shrink while it is read.
int ReadAll(const char* path, std::string& text) {
    const UniqueFd fd(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info = {};
    if (!fd.IsOpen() || fstat(fd.Get(), &info) != 0) {
        return errno;
    }
    if (!S_ISREG(info.st_mode)) {
        return S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    }
    std::size_t used = 0;
    text.resize(static_cast<std::size_t>(info.st_size) + 1);
    for (;;) {
        const ssize_t got = read(fd.Get(), &text[used], text.size() - used);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            text.resize(used);
            return got < 0 ? errno : 0;
        }
        used += static_cast<std::size_t>(got);
        if (used == text.size()) {
            text.resize(used * 2);
        }
    }
}

}  // namespace

void KoFile::Init(const std::string& path, const std::string& mode) {
    m_next = 0;
    m_lastStart = kNone;
    m_rowNumber = 0;
    m_status = mode == "r" ? ReadAll(path.c_str(), m_text) : EINVAL;
    if (m_status != 0) {
        m_text.clear();
    }
}

std::string KoFile::NextRow() {
    if (IsEOF()) {
        return {};
    }
    m_lastStart = m_next;
    ++m_rowNumber;
    const std::size_t lineEnd = std::min(m_text.find('\n', m_next), m_text.size());
    m_next = std::min(lineEnd + 1, m_text.size());
    const bool carriageReturn =
        lineEnd < m_text.size() && lineEnd > m_lastStart && m_text[lineEnd - 1] == '\r';
    return m_text.substr(m_lastStart, lineEnd - m_lastStart - (carriageReturn ? 1 : 0));
}

int KoFile::RollBack() {
    if (m_lastStart == kNone) {
        return -1;
    }
    m_next = m_lastStart;
    m_lastStart = kNone;
    --m_rowNumber;
    return 0;
}
