#include "tools/monitor/page_observer.h"

#include <fcntl.h>

#include <atomic>
#include <cstring>

#include "page/page_guard.h"
#include "tools/call/exchange.h"

namespace {

bool AreSame(const PageCopy& a, const PageCopy& b, std::size_t size) {
    return std::memcmp(&a, &b, size) == 0;
}

}  // namespace

std::optional<Failure> PageObserver::Open() {
    UniqueFd file;
    std::string reason;
    m_page = MapPageFile(O_RDONLY, file, reason);
    if (m_page.Get() == nullptr) {
        return PageFailure(kExitPage, reason);
    }
    return std::nullopt;
}

// A copy that a new header has overtaken is left to the next poll. Data that changes below the same
// header may be a message that somebody is writing.
bool PageObserver::Poll() {
    PageCopy copy = {};
    if (!Copy(copy)) {
        return false;
    }
    const bool isNewHeader = !AreSame(copy, m_last, kHeaderSize);
    const bool isSettled = isNewHeader || AreSame(copy, m_polled, copy.Size());
    m_polled = copy;
    if (!isSettled || AreSame(copy, m_last, copy.Size())) {
        return false;
    }
    m_last = copy;
    return true;
}

bool PageObserver::Copy(PageCopy& copy) const {
    bool isOvertaken = false;
    const bool isMapped = GuardPageAccess([&copy, &isOvertaken, &page = *m_page.Get()] {
        copy.header = LoadHeader(page);
        std::memcpy(copy.data, page.data, copy.Size() - kHeaderSize);
        // Keeps the second load of the header after the copy.
        std::atomic_thread_fence(std::memory_order_acquire);
        const SharePageHeader after = LoadHeader(page);
        isOvertaken = std::memcmp(&copy.header, &after, sizeof(after)) != 0;
    });
    if (!isMapped) {
        copy = {};
    }
    return !isMapped || !isOvertaken;
}
