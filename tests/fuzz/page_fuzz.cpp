#include "page/share_page_client.h"
#include "printer/printer.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/hostile_page.h"

namespace {

void Exchange(SharePage& page, const std::string& format) {
    SharePageClient client(&page, std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {};
    const PageResult posted = client.Post(request, sizeof(request));
    Require(posted != PageResult::kRequestTooLong, "a short request fits");
    std::vector<std::uint8_t> bytes;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(200);
    if (posted != PageResult::kDone || client.Wait(deadline) != PageResult::kDone ||
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

// Parts: print format, one version of the page, another one. The file is cut and sized again
// meanwhile for a print format of odd length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 3);
    static const PageFile file;
    static const PageMapping console(file.fd.Get());
    const HostilePage service(file, {parts[1], parts[2]}, parts[0].size() % 2 == 1);
    Exchange(*console.Get(), parts[0]);
    return 0;
}
