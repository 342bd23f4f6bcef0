#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "page/page_lock.h"
#include "page/page_mapping.h"
#include "platform/parcel.h"

// The tool's way to the service: the page's mapping and lock, for one exchange after another. One
// in a process, on its main thread.
class PageCall {
public:
    // Maps the page. kExitDone, or kExitPage after a message.
    int Open();

    // Waits for the turn, posts the request and takes the reply's bytes, all within `timeout`. A
    // request that somebody left unanswered is waited for, and its answer dropped; with `force` the
    // new one is written over it. kExitDone; or after a message kExitBusy, kExitNoAnswer or
    // kExitPage. Should SIGINT, SIGTERM or SIGHUP end the process meanwhile, a message says first
    // what becomes of the request.
    int Exchange(const android::Parcel& request, std::chrono::milliseconds timeout, bool force,
                 std::vector<std::uint8_t>& reply);

private:
    PageMapping m_mapping;
    PageLock m_lock;
};
