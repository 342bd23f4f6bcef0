#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

// The page that console and service share. docs/protocol.md describes it byte by byte.

constexpr std::size_t kPageSize = 4096;  // bytes
constexpr std::size_t kHeaderSize = 8;   // bytes
constexpr std::size_t kDataCapacity = kPageSize - kHeaderSize;

constexpr std::uint8_t kRequestPosted = 0x01;
constexpr std::uint8_t kReplyReady = 0x02;

// The header's fields as they lie in the page.
struct SharePageHeader {
    std::uint8_t flags;
    std::uint8_t zero[3];
    std::uint32_t length;  // bytes of the parcel in the data area
};

static_assert(sizeof(SharePageHeader) == kHeaderSize);
static_assert(offsetof(SharePageHeader, flags) == 0 && offsetof(SharePageHeader, length) == 4);

// The mapped page. The header moves as one 8-byte atomic, so that it can neither tear nor pass the
// data on a processor that reorders memory accesses: stored with release after the data, loaded
// with acquire before it.
struct SharePage {
    std::atomic<std::uint64_t> header;
    std::uint8_t data[kDataCapacity];
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "a lock would not be shared");
static_assert(sizeof(std::atomic<std::uint64_t>) == kHeaderSize);
static_assert(sizeof(SharePage) == kPageSize);
static_assert(offsetof(SharePage, data) == kHeaderSize);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the page is little-endian");

inline SharePageHeader LoadHeader(const SharePage& page) {
    const std::uint64_t word = page.header.load(std::memory_order_acquire);
    SharePageHeader header;
    std::memcpy(&header, &word, sizeof(header));
    return header;
}

inline void StoreHeader(SharePage& page, std::uint8_t flags, std::size_t length) {
    const SharePageHeader header = {flags, {}, static_cast<std::uint32_t>(length)};
    std::uint64_t word = 0;
    std::memcpy(&word, &header, sizeof(word));
    page.header.store(word, std::memory_order_release);
}

// Opens an existing page file, with O_RDONLY or O_RDWR, but nothing that is not a regular file: to
// open a device may already change it. Returns the descriptor, or -1 with a reason.
inline int OpenPageFile(const char* path, int access, std::string& reason) {
    struct stat info = {};
    int file = -1;
    bool isKnown = lstat(path, &info) == 0;
    if (isKnown && S_ISREG(info.st_mode)) {
        file = open(path, access | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        isKnown = file >= 0 && fstat(file, &info) == 0;
    }
    if (isKnown && S_ISREG(info.st_mode)) {
        return file;
    }
    const char* type = S_ISLNK(info.st_mode) ? "is a symbolic link" : "is not a regular file";
    reason = isKnown ? type : std::strerror(errno);
    if (file >= 0) {
        close(file);
    }
    return -1;
}

// The bytes of the page file that its users lock, with advisory open-file-description locks: a
// client from before it writes a request until it has copied the reply, a service while it serves.
// The kernel releases them however the holder ends.
enum class PageLockByte : int { kClient = 0, kService = 1 };

enum class PageLockMode { kTry, kWait, kRelease, kQuery };

// Takes or releases a lock through a descriptor of the page file, or only finds out whether it
// could be taken. Returns 0 or an error number: EAGAIN while somebody else holds it, EINTR if a
// signal handler ended the wait, any other if the kernel, the file system or a policy gives no such
// locks.
inline int LockPage(int file, PageLockByte byte, PageLockMode mode) {
    struct flock range = {};
    range.l_type = mode == PageLockMode::kRelease ? F_UNLCK : F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<int>(byte);
    range.l_len = 1;
    const bool isQuery = mode == PageLockMode::kQuery;
    const int command = mode == PageLockMode::kWait ? F_OFD_SETLKW : F_OFD_SETLK;
    if (fcntl(file, isQuery ? F_OFD_GETLK : command, &range) != 0) {
        return errno;
    }
    return isQuery && range.l_type != F_UNLCK ? EAGAIN : 0;
}
