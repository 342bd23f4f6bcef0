#pragma once

#include <chrono>
#include <string>

#include "page/page_mapping.h"
#include "platform/parcel.h"

// The service's half of the page protocol: wait for a request, answer it. One thread, one exchange
// at a time. A service of one's own needs this class and a handler, nothing else of the console.
class TvServicePage {
public:
    // The service looks for a request in steps of this length.
    static constexpr std::chrono::milliseconds kLookStep{1};

    explicit TvServicePage(std::chrono::nanoseconds step = kLookStep) : m_step(step) {}

    // Creates the page file (mode 0660) and its folder where they are missing, gives the file its
    // 4096 bytes and maps it. False on failure; errno says why. The file stays when the service
    // ends.
    bool Open(const std::string& path);

    // Waits up to `timeout` and loads the next request, rewound. False when none came, a signal
    // arrived, or the page cannot be read. A request with a length beyond the page comes as an
    // empty parcel, for the handler to refuse.
    bool WaitRequest(std::chrono::nanoseconds timeout, android::Parcel& request);

    // Writes the reply, then its length and the ready flag in one step, and withdraws the request
    // flag. False with nothing written when the reply is empty or has more than 4088 bytes, or the
    // page cannot be written; the request then stands and comes again.
    bool PostReply(const android::Parcel& reply);

private:
    bool TakeRequest(android::Parcel& request);

    std::chrono::nanoseconds m_step;
    PageMapping m_mapping;
};
