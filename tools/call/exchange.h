#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/parcel.h"
#include "tools/failure.h"

struct ExchangeLimits {
    std::chrono::milliseconds timeout;
    bool force;  // overwrite a request that somebody left unanswered
    // Called while waiting, every 50 ms at most; false ends the wait. Null for nothing.
    std::function<bool()> goOn = nullptr;
};

// One exchange with the service: maps the page, waits for the turn, posts the request and takes the
// reply, all within the timeout. Waits for the reply to a request that somebody left unanswered,
// and drops it, unless forced. Returns nullopt with the reply; kExitBusy if nothing was sent
// because the page was not free in time; kExitNoAnswer; or kExitPage.
//
// An ending signal, unless blocked, ends the process after a message that says what becomes of the
// request. One at a time, on the main thread.
std::optional<Failure> RunExchange(const android::Parcel& request, const ExchangeLimits& limits,
                                   std::vector<std::uint8_t>& reply);

// A failure of the page, whose file the reason then names.
Failure PageFailure(ExitStatus status, const std::string& reason);
