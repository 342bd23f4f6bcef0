#pragma once

#include <chrono>
#include <functional>

#include "page/page_mapping.h"
#include "platform/parcel.h"
#include "platform/unique_fd.h"
#include "tools/outcome.h"

// Opens and maps the page with the flags of open and the protection of mmap. kExitDone or
// kExitPage.
Outcome MapPage(int flags, int protection, UniqueFd& file, PageMapping& mapping);

struct CallLimits {
    std::chrono::milliseconds timeout;
    bool force;  // write over a request that somebody left unanswered
    // Asked now and then while the call waits; false gives up. May be empty.
    std::function<bool()> goOn;
};

// One call: maps the page, waits for the turn, posts the request and takes the reply, all within
// the time-out. A request that somebody left unanswered is waited for, and its answer dropped,
// unless the limits say to write over it. kExitDone, kExitBusy, kExitNoAnswer or kExitPage. Should
// SIGINT, SIGTERM or SIGHUP end the process meanwhile, a message says first what becomes of the
// request. One at a time, on the main thread.
Outcome CallService(const android::Parcel& request, const CallLimits& limits,
                    android::Parcel& reply);
