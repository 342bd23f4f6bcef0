#include "tools/monitor/page_observer.h"

#include <fcntl.h>

#include <atomic>
#include <cstring>

#include "page/page_guard.h"

namespace {

bool Same(const PageCopy& a, const PageCopy& b, std::size_t size) {
    return std::memcmp(&a, &b, size) == 0;
}

}  // namespace

Outcome PageObserver::Open() {
    UniqueFd file;
    return MapPage(O_RDONLY | O_NONBLOCK, PROT_READ, file, m_page);
}

// A copy that a new header has overtaken is left to the next look. Data that changes below a
// standing header may be a message that somebody is writing.
bool PageObserver::Look() {
    bool overtaken = false;
    const auto take = [this, &overtaken, &page = *m_page.Get()] {
        m_copy.header = LoadHeader(page);
        std::memcpy(m_copy.data, page.data, m_copy.Size() - kHeaderSize);
        // Keeps the second look at the header behind the copy.
        std::atomic_thread_fence(std::memory_order_acquire);
        const SharePageHeader after = LoadHeader(page);
        overtaken = std::memcmp(&m_copy.header, &after, sizeof(after)) != 0;
    };
    if (!GuardPageAccess(take)) {
        m_copy = {};
    } else if (overtaken) {
        return false;
    }
    const bool settled =
        !Same(m_copy, m_last, kHeaderSize) || Same(m_copy, m_looked, m_copy.Size());
    m_looked = m_copy;
    if (!settled || Same(m_copy, m_last, m_copy.Size())) {
        return false;
    }
    m_last = m_copy;
    return true;
}
