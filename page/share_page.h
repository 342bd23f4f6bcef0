#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

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
// data on a processor that reorders memory accesses: stored with release behind the data, loaded
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
