#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "page/page_guard.h"
#include "page/page_mapping.h"
#include "page/share_page_client.h"
#include "page/tv_service_page.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/test_root.h"

namespace {

constexpr std::chrono::microseconds kPatience{200};

// A page file that a service has opened and a console has mapped.
struct Page {
    Page() {
        const TestRoot root;
        std::string error;
        Require(service.Open(kTestPage, error), error.c_str());
        console = MapPageFile(O_RDWR, file, error);
    }

    TvServicePage service{RunGuarded, std::chrono::nanoseconds(0)};
    UniqueFd file;
    PageMapping console;
};

// Writes the versions of the page over each other, byte by byte, through a mapping of its own; with
// `cut` also truncates the file to 0 bytes and sizes it again.
void Scribble(int file, const std::vector<std::string>& versions, bool cut) {
    const PageMapping mapping(file);
    auto* bytes = reinterpret_cast<volatile std::uint8_t*>(mapping.Get());
    for (const std::string& version : versions) {
        GuardPageAccess([&] {
            for (std::size_t i = 0; i < version.size() && i < kPageSize; ++i) {
                bytes[i] = static_cast<std::uint8_t>(version[i]);
            }
        });
        Require(!cut || ftruncate(file, 0) == 0, "the file is truncated");
        Require(ftruncate(file, kPageSize) == 0, "the file is sized");
    }
}

void Ask(SharePage* page) {
    SharePageClient client(page, std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {};
    std::vector<std::uint8_t> reply;
    const PageResult posted = client.Post(request, sizeof(request));
    Require(posted != PageResult::kRequestTooLong, "a short request fits");
    if (posted == PageResult::kDone &&
        client.Wait(std::chrono::steady_clock::now() + kPatience) == PageResult::kDone &&
        client.TakeReply(reply) == PageResult::kDone) {
        Require(reply.size() <= kDataCapacity, "a reply fits the page");
    }
}

void Answer(TvServicePage& page) {
    std::vector<std::uint8_t> bytes;
    if (page.WaitRequest(kPatience, bytes)) {
        Require(bytes.size() <= kDataCapacity, "a request fits the page");
        bytes.resize(4);
        page.PostReply(bytes.data(), bytes.size());
    }
}

}  // namespace

// Parts: "cut" or nothing, one version of the page, another one. A console and a service use the
// page while a hostile user goes on writing both versions.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Page page;
    const auto parts = SplitInput(data, size, 3);
    std::atomic<bool> stop{false};
    std::thread hostile([&] {
        do {
            Scribble(page.file.Get(), {parts[1], parts[2]}, !parts[0].empty());
        } while (!stop);
    });
    Ask(page.console.Get());
    Answer(page.service);
    stop = true;
    hostile.join();
    return 0;
}
