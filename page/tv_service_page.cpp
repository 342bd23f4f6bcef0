#include "page/tv_service_page.h"

#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <ctime>

namespace {

static_assert(sizeof(off_t) == 8, "locks need _FILE_OFFSET_BITS=64 on a 32-bit system");

constexpr mode_t kFileMode = 0660;
constexpr std::chrono::seconds kBusyTime{2};
constexpr int kIdleSteps = 10;

bool Fail(std::string& reason) {
    reason = std::strerror(errno);
    return false;
}

// False when a signal handler ended the sleep.
bool Sleep(std::chrono::nanoseconds time) {
    if (time.count() == 0) {
        sched_yield();
        return true;
    }
    constexpr int kNano = 1'000'000'000;
    timespec step = {};
    step.tv_sec = static_cast<std::time_t>(time.count() / kNano);
    step.tv_nsec = static_cast<long>(time.count() % kNano);
    return nanosleep(&step, nullptr) == 0;
}

}  // namespace

bool TvServicePage::Open(const std::string& path, std::string& error) {
    Close();
    if (OpenFile(path, error) && LockFile(error) && MapFile(error)) {
        m_lastExchange = Clock::now();
        m_requestSeen = m_lastExchange - kSettleSteps * m_step;
        return true;
    }
    Close();
    error.insert(0, path + ": ");
    return false;
}

void TvServicePage::Close() {
    if (m_page != nullptr) {
        munmap(m_page, kPageSize);
        m_page = nullptr;
    }
    if (m_file >= 0) {
        close(m_file);
        m_file = -1;
    }
}

bool TvServicePage::OpenFile(const std::string& path, std::string& reason) {
    m_file = open(path.c_str(), O_RDWR | O_CLOEXEC | O_CREAT | O_EXCL, kFileMode);
    if (m_file >= 0) {
        // The umask of whoever starts the service must not keep the console out.
        return fchmod(m_file, kFileMode) == 0 || Fail(reason);
    }
    if (errno != EEXIST) {
        return Fail(reason);
    }
    m_file = OpenPageFile(path.c_str(), O_RDWR, reason);
    return m_file >= 0;
}

bool TvServicePage::LockFile(std::string& reason) {
    m_lockError = LockPage(m_file, PageLockByte::kService, PageLockMode::kTry);
    if (m_lockError == EAGAIN) {
        reason = "in use by another service";
    }
    return m_lockError != EAGAIN;
}

bool TvServicePage::MapFile(std::string& reason) {
    // An access to a page without a block on the disk raises SIGBUS if the disk is full.
    if (fallocate(m_file, 0, 0, static_cast<off_t>(kPageSize)) != 0 && errno == ENOSPC) {
        return Fail(reason);
    }
    struct stat info = {};
    if (fstat(m_file, &info) != 0 || (info.st_size < static_cast<off_t>(kPageSize) &&
                                      ftruncate(m_file, static_cast<off_t>(kPageSize)) != 0)) {
        return Fail(reason);
    }
    void* page = mmap(nullptr, kPageSize, PROT_READ | PROT_WRITE, MAP_SHARED, m_file, 0);
    if (page == MAP_FAILED) {
        return Fail(reason);
    }
    m_page = static_cast<SharePage*>(page);
    return true;
}

template <typename Access>
bool TvServicePage::Touch(Access access) const {
    if (m_page == nullptr) {
        return false;
    }
    if (m_guard != nullptr) {
        return m_guard([](void* raw) { (*static_cast<Access*>(raw))(); }, &access);
    }
    access();
    return true;
}

bool TvServicePage::WaitRequest(std::chrono::nanoseconds timeout,
                                std::vector<std::uint8_t>& request) {
    const auto end = Clock::now() + timeout;
    for (;;) {
        if (TakeRequest(request)) {
            return true;
        }
        if (Clock::now() >= end || !Sleep(NextStep())) {
            return false;
        }
    }
}

// False as long as no request is there, or has not been for kSettleSteps.
bool TvServicePage::TakeRequest(std::vector<std::uint8_t>& request) {
    SharePageHeader header = {};
    if (!Touch([&] { header = LoadHeader(*m_page); }) || (header.flags & kRequestPosted) == 0) {
        m_requestSeen.reset();
        return false;
    }
    const auto now = Clock::now();
    m_requestSeen = m_requestSeen.value_or(now);
    if (now - *m_requestSeen < kSettleSteps * m_step) {
        return false;
    }
    request.resize(header.length <= kDataCapacity ? header.length : 0);
    return request.empty() ||
           Touch([&] { std::memcpy(request.data(), m_page->data, request.size()); });
}

std::chrono::nanoseconds TvServicePage::NextStep() const {
    const bool idle = !m_requestSeen && Clock::now() - m_lastExchange > kBusyTime;
    return idle ? kIdleSteps * m_step : m_step;
}

bool TvServicePage::PostReply(const std::uint8_t* reply, std::size_t size) {
    if (reply == nullptr || size == 0 || size > kDataCapacity) {
        return false;
    }
    m_requestSeen.reset();
    m_lastExchange = Clock::now();
    return Touch([&] {
        std::memcpy(m_page->data, reply, size);
        StoreHeader(*m_page, kReplyReady, size);
    });
}
