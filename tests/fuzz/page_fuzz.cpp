#include <fcntl.h>

#include <atomic>
#include <thread>

#include "page/page_mapping.h"
#include "page/share_page_client.h"
#include "platform/unique_fd.h"
#include "printer/printer.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/memory_file.h"

namespace {

// A mapping of the one page, as each process has its own.
PageMapping MapPage() {
    static const MemoryFile file;
    file.Write(std::string(kPageSize, '\0'));
    return PageMapping(UniqueFd(open(file.Path().c_str(), O_RDWR)).Get());
}

// Writes versions of the page over each other, byte by byte, until told to stop.
void Scribble(SharePage& page, const std::vector<std::string>& versions,
              const std::atomic<bool>& stop) {
    auto* bytes = reinterpret_cast<volatile std::uint8_t*>(&page);
    do {
        for (const std::string& version : versions) {
            for (std::size_t i = 0; i < version.size() && i < kPageSize; ++i) {
                bytes[i] = static_cast<std::uint8_t>(version[i]);
            }
        }
    } while (!stop);
}

void Exchange(SharePage& page, const std::string& format) {
    SharePageClient client(&page, std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {};
    Require(client.Post(request, sizeof(request)) == PageResult::kDone,
            "a page that is there takes a request");
    std::vector<std::uint8_t> bytes;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(200);
    if (client.Wait(deadline) != PageResult::kDone ||
        client.TakeReply(bytes) != PageResult::kDone) {
        return;
    }
    Require(bytes.size() <= kDataCapacity, "a reply fits the page");
    android::Parcel reply;
    reply.setData(bytes.data(), bytes.size());
    reply.readInt32();
    Array<std::string> tags;
    tags.m_list.assign(format.size(), "tag");
    Printer printer(reply);
    printer.Fmt(format.c_str(), tags);
    printer.Flush();
}

}  // namespace

// Parts: print format, one version of the page, another one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const PageMapping console = MapPage();
    static const PageMapping service = MapPage();
    const auto parts = SplitInput(data, size, 3);
    std::atomic<bool> stop{false};
    std::thread scribbler([&] { Scribble(*service.Get(), {parts[1], parts[2]}, stop); });
    Exchange(*console.Get(), parts[0]);
    stop = true;
    scribbler.join();
    return 0;
}
