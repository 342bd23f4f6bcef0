#include "page/page_lock.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "page/share_page.h"
#include "platform/ko_log.h"

namespace {

static_assert(sizeof(off_t) == 8, "locks need _FILE_OFFSET_BITS=64 on a 32-bit system");

}  // namespace

// The log waits for the first turn: now the caller may still hold the process's last descriptor.
PageLock::PageLock(int pageFile)
    : m_file(fcntl(pageFile, F_DUPFD_CLOEXEC, 0)), m_error(m_file.IsOpen() ? 0 : errno) {}

void PageLock::Take() {
    while (m_file.IsOpen()) {
        m_error = LockPage(m_file.Get(), PageLockByte::kClient, PageLockMode::kWait);
        if (m_error == 0) {
            return;
        }
        if (m_error != EINTR) {
            m_file = UniqueFd();
        }
    }
    m_error = GrantWithoutLock(m_error);
}

void PageLock::Release() {
    if (m_file.IsOpen()) {
        LockPage(m_file.Get(), PageLockByte::kClient, PageLockMode::kRelease);
    }
}

int GrantWithoutLock(int error) {
    if (error != 0) {
        KoLog::PrintLog(ATV_LOG_PRIO_WARN, kLogTag, __func__, __LINE__,
                        "cannot lock the page, going on without a lock: %s", std::strerror(error));
    }
    return 0;
}
