#pragma once

#include <chrono>
#include <memory>

// A client's turn at the page, as PageLock gives it, for callers who wait with a limit or have
// other things to do meanwhile. A thread waits in the kernel's queue and so keeps the place in it
// until the turn comes or this object ends. No signal is used, and none reaches the thread.
class PageQueue {
public:
    // Asks for the turn at once, through a descriptor of its own.
    explicit PageQueue(int pageFile);
    // Gives the turn back, or the place in the queue.
    ~PageQueue();
    PageQueue(const PageQueue&) = delete;
    PageQueue& operator=(const PageQueue&) = delete;

    // Waits until the turn has come. Returns 0 once it has, EAGAIN if others kept it until the
    // deadline, after which it may be waited for again, or the error number for which nobody can
    // wait. Without lock support the turn is granted, and that is logged.
    int Wait(std::chrono::steady_clock::time_point deadline);

private:
    struct Place;

    static void WaitInQueue(Place& place);

    std::shared_ptr<Place> m_place;  // the thread's too
};
