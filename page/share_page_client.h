#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "page/share_page.h"
#include "platform/parcel.h"

// The console's half of the page protocol: post a request, look until the reply is there, take it.
// One exchange at a time. The page may lose its file or be scribbled on at any time without harm to
// the caller.
class SharePageClient {
public:
    enum class State {
        kWaiting,  // no reply yet
        kReady,
        kTimedOut,  // no reply until the deadline
        kFailed,    // the page cannot be read any more
    };

    // The console looks for a reply in steps of this length.
    static constexpr std::chrono::milliseconds kPollStep{100};

    // `page` is the mapping of the file at `path`; it stays the caller's and must outlive the
    // client.
    SharePageClient(SharePage* page, std::string path, std::chrono::nanoseconds step = kPollStep);

    // Copies the request into the page and raises the request flag, which also clears a reply flag
    // left from an earlier exchange. False when the bytes are null or more than the page holds, or
    // the page's file is shorter than a page.
    bool Post(const std::uint8_t* request, std::size_t size);

    // Reads the header once, without waiting. Also sees what another client left in the page.
    State Look(SharePageHeader& header) const;

    // Sleeps a step and looks, until the reply is there, the page fails or the deadline has passed.
    // The console sets no deadline: some commands take as long as the hardware does, and only the
    // engineer knows when to give up.
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;
    State Wait(Deadline deadline = std::nullopt);

    // After Wait returned kReady: copies the reply out of the page and loads it into `reply`,
    // rewound. False when the length is beyond the page or the page's file has become too short.
    bool TakeReply(android::Parcel& reply);

private:
    bool FileHoldsPage() const;

    SharePage* m_page;
    std::string m_path;
    std::chrono::nanoseconds m_step;
    SharePageHeader m_header = {};
};
