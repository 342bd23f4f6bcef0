#include "page/share_page_client.h"

#include "page/page_guard.h"
#include "platform/ko_securec.h"
#include "platform/sleep_once.h"

const char* PageResultText(PageResult result) {
    switch (result) {
        case PageResult::kNotAnswered:
            return "no reply in time";
        case PageResult::kRequestTooLong:
            return "the request does not fit the page";
        case PageResult::kReplyTooLong:
            return "the reply does not fit the page";
        case PageResult::kPageGone:
            return "the page file is empty";
        default:
            return "";
    }
}

PageResult SharePageClient::Post(const std::uint8_t* request, std::size_t size) {
    int copied = -1;
    const bool touched = GuardPageAccess([&] {
        copied = memcpy_s(m_page->data, kDataCapacity, request, size);
        if (copied == 0) {
            StoreHeader(*m_page, kRequestPosted, size);
        }
    });
    if (!touched) {
        return PageResult::kPageGone;
    }
    return copied == 0 ? PageResult::kDone : PageResult::kRequestTooLong;
}

PageResult SharePageClient::Look(SharePageHeader& header) const {
    const bool touched = GuardPageAccess([&] { header = LoadHeader(*m_page); });
    return touched ? PageResult::kDone : PageResult::kPageGone;
}

PageResult SharePageClient::Wait(Deadline deadline) {
    for (;;) {
        SleepOnce(m_step);
        const PageResult looked = Look(m_header);
        if (looked != PageResult::kDone || (m_header.flags & kReplyReady) != 0) {
            return looked;
        }
        if (deadline && std::chrono::steady_clock::now() >= *deadline) {
            return PageResult::kNotAnswered;
        }
    }
}

// Only the copy is parsed: the service may write to the page while the console reads it.
PageResult SharePageClient::TakeReply(std::vector<std::uint8_t>& reply) const {
    if (m_header.length > kDataCapacity) {
        return PageResult::kReplyTooLong;
    }
    reply.resize(m_header.length);
    const bool touched =
        GuardPageAccess([&] { memcpy_s(reply.data(), reply.size(), m_page->data, reply.size()); });
    return touched ? PageResult::kDone : PageResult::kPageGone;
}
