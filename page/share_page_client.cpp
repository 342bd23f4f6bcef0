#include "page/share_page_client.h"

#include <sys/stat.h>

#include <array>
#include <utility>

#include "page/page_guard.h"
#include "platform/ko_securec.h"
#include "platform/sleep_once.h"

SharePageClient::SharePageClient(SharePage* page, std::string path, std::chrono::nanoseconds step)
    : m_page(page), m_path(std::move(path)), m_step(step) {}

bool SharePageClient::Post(const std::uint8_t* request, std::size_t size) {
    if (!FileHoldsPage()) {
        return false;
    }
    int copied = -1;
    const bool touched = GuardPageAccess([&] {
        copied = memcpy_s(m_page->data, kDataCapacity, request, size);
        if (copied == 0) {
            StoreHeader(*m_page, kRequestPosted, size);
        }
    });
    return touched && copied == 0;
}

SharePageClient::State SharePageClient::Look(SharePageHeader& header) const {
    const bool touched = FileHoldsPage() && GuardPageAccess([&] { header = LoadHeader(*m_page); });
    if (!touched) {
        return State::kFailed;
    }
    return (header.flags & kReplyReady) != 0 ? State::kReady : State::kWaiting;
}

SharePageClient::State SharePageClient::Wait(Deadline deadline) {
    for (;;) {
        SleepOnce(m_step);
        const State state = Look(m_header);
        if (state != State::kWaiting) {
            return state;
        }
        if (deadline && std::chrono::steady_clock::now() >= *deadline) {
            return State::kTimedOut;
        }
    }
}

bool SharePageClient::TakeReply(android::Parcel& reply) {
    if (m_header.length > kDataCapacity) {
        return false;
    }
    // Only this copy is parsed: the service may write to the page while the console reads it.
    std::array<std::uint8_t, kDataCapacity> bytes;
    const bool touched = GuardPageAccess(
        [&] { memcpy_s(bytes.data(), bytes.size(), m_page->data, m_header.length); });
    return touched && FileHoldsPage() && reply.setData(bytes.data(), m_header.length) == 0;
}

// A missing file is no failure: the service may hold the same page open although the name is gone.
bool SharePageClient::FileHoldsPage() const {
    struct stat info = {};
    return stat(m_path.c_str(), &info) != 0 || info.st_size >= static_cast<off_t>(kPageSize);
}
