#include <atomic>
#include <thread>

#include "printer/printer.h"
#include "request/share_page_client.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// Writes two versions of a page over each other, byte by byte, as long as it lives.
class Scribbler {
public:
    Scribbler(SharePage& page, const std::vector<std::string>& versions)
        : m_thread([this, &page, versions] {
              auto* bytes = reinterpret_cast<volatile std::uint8_t*>(&page);
              do {
                  for (const std::string& version : versions) {
                      for (std::size_t i = 0; i < version.size() && i < kPageSize; ++i) {
                          bytes[i] = static_cast<std::uint8_t>(version[i]);
                      }
                  }
              } while (!m_stop);
          }) {}
    ~Scribbler() {
        m_stop = true;
        m_thread.join();
    }
    Scribbler(const Scribbler&) = delete;
    Scribbler& operator=(const Scribbler&) = delete;

private:
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

}  // namespace

// Parts: print format, one version of the page, another one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SharePage page;
    const auto parts = SplitInput(data, size, 3);
    Array<std::string> tags;
    for (std::size_t i = 0; i < parts[0].size(); ++i) {
        tags.push_back("tag");
    }
    SharePageClient client(&page, "", std::chrono::nanoseconds(0));
    const std::uint8_t request[4] = {};
    const Scribbler scribbler(page, {parts[1], parts[2]});
    Require(client.Post(request, sizeof(request)), "a page that is there takes a request");
    android::Parcel reply;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(200);
    if (client.Wait(deadline) != SharePageClient::State::kReady || !client.TakeReply(reply)) {
        return 0;
    }
    Require(reply.dataSize() <= kDataCapacity, "a reply fits the page");
    reply.readInt32();
    Printer printer(reply);
    printer.Fmt(parts[0].c_str(), tags);
    printer.Flush();
    return 0;
}
