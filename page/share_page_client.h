#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "page/share_page.h"

// How a step of an exchange ended.
enum class PageResult {
    kDone,
    kNotAnswered,     // no reply until the deadline
    kRequestTooLong,  // more than 4088 bytes; nothing was written
    kReplyTooLong,    // the reply's length is more than 4088 bytes
    kPageGone,        // the page file was truncated to 0 bytes
};

// What went wrong, as a part of a sentence; empty for kDone.
const char* PageResultText(PageResult result);

// A client's half of the page protocol: post a request, poll until the reply is there, take it.
// One exchange at a time. The page may lose its file or be scribbled on at any time without harm to
// the caller.
class SharePageClient {
public:
    // The console polls for a reply in steps of this length.
    static constexpr std::chrono::milliseconds kPollStep{100};

    // Borrows the mapped page, which must outlive the client.
    explicit SharePageClient(SharePage* page, std::chrono::nanoseconds step = kPollStep)
        : m_page(page), m_step(step) {}

    // Copies the request into the page and raises the request flag, which also clears a reply flag
    // left from an earlier exchange. kDone, kRequestTooLong or kPageGone.
    PageResult Post(const std::uint8_t* request, std::size_t size);

    // Reads the header once, without waiting. kDone or kPageGone. Also sees what another client
    // left in the page.
    PageResult Look(SharePageHeader& header) const;

    // Sleeps a step and polls, until the reply is there, the page fails or the deadline has passed.
    // The console sets no deadline: some commands take as long as the hardware does, and only the
    // engineer knows when to give up. kDone, kNotAnswered or kPageGone.
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;
    PageResult Wait(Deadline deadline = std::nullopt);

    // After Wait returned kDone: copies the reply out of the page. kDone, kReplyTooLong or
    // kPageGone.
    PageResult TakeReply(std::vector<std::uint8_t>& reply) const;

private:
    SharePage* m_page;
    std::chrono::nanoseconds m_step;
    SharePageHeader m_header = {};
};
