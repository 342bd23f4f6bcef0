#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "page/share_page.h"

// The service's half of the page protocol: wait for a request, answer it. One thread, one exchange
// at a time. It needs nothing of the console and nothing of the platform but the C++ library: a
// service takes this class, from page/tv_service_page.h, page/tv_service_page.cpp and
// page/share_page.h, and a handler of its own.
class TvServicePage {
public:
    // The service polls for a request in steps of this length, and once it has had nothing to do
    // for two seconds in steps of ten times that.
    static constexpr std::chrono::milliseconds kPollStep{1};

    // A request is taken so many steps after the poll that first saw it: whoever observes the page
    // in steps of the same length sees every request then.
    static constexpr int kSettleSteps = 2;

    // Runs `access(argument)` and says whether it could touch the page. RunGuarded of
    // page/page_guard.h is one; it needs the process's SIGBUS.
    using Guard = bool (*)(void (*access)(void*), void* argument);

    // Without a guard, an access raises SIGBUS if somebody has truncated the page file to 0 bytes.
    explicit TvServicePage(Guard guard = nullptr, std::chrono::nanoseconds step = kPollStep)
        : m_guard(guard), m_step(step) {}
    ~TvServicePage() { Close(); }
    TvServicePage(const TvServicePage&) = delete;
    TvServicePage& operator=(const TvServicePage&) = delete;

    // Takes the service's lock on the page file, gives the file at least 4096 bytes, reserved on
    // the disk, and maps it, until this object ends; the file stays. A missing file is created with
    // mode 0660, whatever the umask; one that is there keeps its mode, owner and content. False,
    // with `error` as "path: reason", when the path is a symbolic link or not a regular file,
    // another service has the lock, or the system refuses.
    bool Open(const std::string& path, std::string& error);

    // After Open: 0, or the error number for which kernel, file system or a policy gave no lock;
    // then nothing keeps a second service off the page.
    int LockError() const { return m_lockError; }

    // Waits up to `timeout` and copies the next request out of the page. False if none came, a
    // signal handler ran, or the page cannot be read. A request with a length beyond the page comes
    // without bytes, for the handler to refuse. The first call after Open returns a request that is
    // already in the page at once, even with a timeout of 0.
    bool WaitRequest(std::chrono::nanoseconds timeout, std::vector<std::uint8_t>& request);

    // Writes the reply, then its length and the ready flag in one step, and withdraws the request
    // flag. False with nothing written when the reply is empty or has more than 4088 bytes, or the
    // page cannot be written; the request then stays and comes again.
    bool PostReply(const std::uint8_t* reply, std::size_t size);

private:
    using Clock = std::chrono::steady_clock;

    void Close();
    bool OpenFile(const std::string& path, std::string& reason);
    bool LockFile(std::string& reason);
    bool MapFile(std::string& reason);
    bool TakeRequest(std::vector<std::uint8_t>& request);
    std::chrono::nanoseconds NextStep() const;
    template <typename Access>
    bool Touch(Access access) const;

    Guard m_guard;
    std::chrono::nanoseconds m_step;
    int m_file = -1;  // kept open for its lock
    int m_lockError = 0;
    SharePage* m_page = nullptr;
    // When a poll first saw the request that is in the page. One that may be there at Open counts
    // as seen long enough.
    std::optional<Clock::time_point> m_requestSeen;
    Clock::time_point m_lastExchange;
};
