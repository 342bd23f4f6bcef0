#include "page/page_queue.h"

#include <fcntl.h>

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>

#include "page/page_lock.h"
#include "page/share_page.h"
#include "platform/unique_fd.h"

struct PageQueue::Place {
    explicit Place(int pageFile) : file(fcntl(pageFile, F_DUPFD_CLOEXEC, 0)) {}

    int Lock(PageLockMode mode) const { return LockPage(file.Get(), PageLockByte::kClient, mode); }

    const UniqueFd file;
    std::mutex mutex;
    std::condition_variable changed;
    int result = EAGAIN;  // 0 with the turn; EAGAIN while it is waited for
    bool left = false;    // nobody wants the turn any more
};

namespace {

// Calls `start` with all signals blocked, for a thread to inherit. Returns 0, or the error number
// for which there is no thread.
template <typename Start>
int StartWithoutSignals(Start start) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    int error = 0;
    try {
        start();
    } catch (const std::system_error& failure) {
        error = failure.code().value();
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return error;
}

}  // namespace

PageQueue::PageQueue(int pageFile) : m_place(std::make_shared<Place>(pageFile)) {
    Place& place = *m_place;
    const int refused = place.file.IsOpen() ? place.Lock(PageLockMode::kTry) : errno;
    if (refused != EAGAIN) {
        place.result = GrantWithoutLock(refused);
        return;
    }
    const int error = StartWithoutSignals(
        [this] { std::thread([shared = m_place] { WaitInQueue(*shared); }).detach(); });
    place.result = error != 0 ? error : place.result;
}

PageQueue::~PageQueue() {
    const std::lock_guard<std::mutex> guard(m_place->mutex);
    m_place->left = true;
    if (m_place->result == 0) {
        m_place->Lock(PageLockMode::kRelease);
    }
}

int PageQueue::Wait(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock<std::mutex> guard(m_place->mutex);
    m_place->changed.wait_until(guard, deadline, [this] { return m_place->result != EAGAIN; });
    return m_place->result;
}

void PageQueue::WaitInQueue(Place& place) {
    int result = EINTR;
    while (result == EINTR) {
        result = place.Lock(PageLockMode::kWait);
    }
    const int granted = GrantWithoutLock(result);
    const std::lock_guard<std::mutex> guard(place.mutex);
    place.result = granted;
    if (place.left) {
        place.Lock(PageLockMode::kRelease);
    }
    place.changed.notify_one();
}
