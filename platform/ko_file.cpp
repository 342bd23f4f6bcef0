#include "platform/ko_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

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

// Reads the next chunk in place of the last one. False at the end of the file and after an error.
bool KoFile::Fill() {
    m_text.clear();
    m_next = 0;
    if (!m_fd.IsOpen()) {
        return false;
    }
    m_text.resize(m_chunkSize);
    ssize_t got = 0;
    do {
        got = read(m_fd.Get(), m_text.data(), m_chunkSize);
    } while (got < 0 && errno == EINTR);
    m_status = got < 0 ? errno : 0;
    m_text.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got <= 0) {
        m_fd = UniqueFd();
    }
    return got > 0;
}

void KoFile::Keep(std::string_view piece) {
    if (piece.empty()) {
        return;
    }
    m_lastByte = piece.back();
    const std::size_t kept = std::min(piece.size(), kLongestRow - m_row.size());
    m_row.append(piece.substr(0, kept));
    piece.remove_prefix(kept);
    const std::size_t equals = piece.find('=');
    if (m_rest.equals == std::string::npos && equals != std::string::npos) {
        m_rest.equals = m_rest.size + equals;
    }
    m_rest.size += piece.size();
}

// Reads as far as the row goes. False if reading failed in it.
bool KoFile::ReadRow() {
    for (bool ended = false; !ended;) {
        const std::string_view text = std::string_view(m_text).substr(m_next);
        const std::size_t length = text.find('\n');
        ended = length != std::string_view::npos;
        Keep(text.substr(0, length));
        m_next = ended ? m_next + length + 1 : m_text.size();
        if (m_next == m_text.size() && !Fill()) {
            return ended || m_status == 0;
        }
    }
    return true;
}

const std::string& KoFile::NextRow() {
    if (m_again) {
        m_again = false;
        ++m_rowNumber;
        return m_row;
    }
    m_row.clear();
    m_rest = {};
    m_lastByte = '\0';
    m_hasRow = !IsEOF();
    if (!m_hasRow) {
        return m_row;
    }
    ++m_rowNumber;
    if (!ReadRow()) {
        m_hasRow = false;
        m_row.clear();
        m_rest = {};
    } else if (m_lastByte == '\r' && m_rest.size > 0) {
        --m_rest.size;
    } else if (m_lastByte == '\r') {
        m_row.pop_back();
    }
    return m_row;
}

int KoFile::RollBack() {
    if (!m_hasRow || m_again) {
        return -1;
    }
    m_again = true;
    --m_rowNumber;
    return 0;
}
