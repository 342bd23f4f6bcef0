#include "tools/page_observer.h"

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

// Data that changes below a standing header may be a message that somebody is writing.
bool PageObserver::Look() {
    PageCopy copy = {};
    const auto take = [&page = *m_page.Get(), &copy] {
        SharePageHeader after = {};
        int tries = 8;  // for a page that somebody scribbles on all the time
        do {
            copy.header = LoadHeader(page);
            std::memcpy(copy.data, page.data, copy.Size() - kHeaderSize);
            // Keeps the second look at the header behind the copy.
            std::atomic_thread_fence(std::memory_order_acquire);
            after = LoadHeader(page);
        } while (std::memcmp(&copy.header, &after, sizeof(after)) != 0 && --tries != 0);
    };
    if (!GuardPageAccess(take)) {
        copy = {};
    }
    const bool settled = !Same(copy, m_last, kHeaderSize) || Same(copy, m_looked, copy.Size());
    m_looked = copy;
    if (!settled || Same(copy, m_last, copy.Size())) {
        return false;
    }
    m_last = copy;
    return true;
}
