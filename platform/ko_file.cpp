#include "platform/ko_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/unique_fd.h"

namespace {

// A regular file, open for reading, and its state; -1 with errno set for anything else.
UniqueFd OpenFile(const std::string& path, struct stat& info) {
    UniqueFd fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd.IsOpen() || fstat(fd.Get(), &info) != 0) {
        return UniqueFd();
    }
    if (!S_ISREG(info.st_mode)) {
        errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
        return UniqueFd();
    }
    return fd;
}

}  // namespace

void KoFile::Init(const std::string& path, const std::string& mode) {
    *this = KoFile();
    if (mode != "r") {
        m_status = EINVAL;
        return;
    }
    struct stat info = {};
    m_fd = OpenFile(path, info);
    if (!m_fd.IsOpen()) {
        m_status = errno;
        return;
    }
    // A small file takes one read, and one more to find its end.
    m_chunkSize =
        static_cast<std::size_t>(std::clamp<off_t>(info.st_size, kLeastChunk, kLargestChunk));
    m_empty = !Fill();
}

// Reads a chunk more, and forgets what lies before the row that RollBack may ask for. False at the
// end of the file and after an error.
bool KoFile::Fill() {
    if (!m_fd.IsOpen()) {
        return false;
    }
    const std::size_t kept = std::min(m_lastStart, m_next);
    m_text.erase(0, kept);
    m_next -= kept;
    m_lastStart -= m_lastStart != kNone ? kept : 0;
    const std::size_t used = m_text.size();
    m_text.resize(used + m_chunkSize);
    ssize_t got = 0;
    do {
        got = read(m_fd.Get(), &m_text[used], m_chunkSize);
    } while (got < 0 && errno == EINTR);
    m_status = got < 0 ? errno : 0;
    m_text.resize(used + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got <= 0) {
        m_fd = UniqueFd();
    }
    return got > 0;
}

// Length of the next row without its line feed; reads as far as the row goes.
std::size_t KoFile::RowLength() {
    std::size_t searched = 0;
    for (;;) {
        const std::size_t lineEnd = std::string_view(m_text).find('\n', m_next + searched);
        if (lineEnd != std::string::npos) {
            return lineEnd - m_next;
        }
        searched = m_text.size() - m_next;
        if (!Fill()) {
            return searched;
        }
    }
}

const std::string& KoFile::NextRow() {
    m_row.clear();
    if (IsEOF()) {
        return m_row;
    }
    m_lastStart = m_next;
    ++m_rowNumber;
    const std::size_t length = RowLength();
    std::string_view row = std::string_view(m_text).substr(m_next, length);
    const bool ended = m_next + length < m_text.size();
    if (!row.empty() && row.back() == '\r') {
        row.remove_suffix(1);
    }
    m_row = row;
    m_next += length + (ended ? 1 : 0);
    if (m_next == m_text.size()) {
        Fill();
    }
    return m_row;
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
