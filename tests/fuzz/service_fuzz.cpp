#include <cstring>

#include "page/page_guard.h"
#include "page/tv_service_page.h"
#include "service/tv_service.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/hostile_page.h"

namespace {

constexpr char kModules[] = "[m]\ninstruction=1\n";
constexpr char kCommands[] =
    "[all]\nbelong module=m\ncommand=a\ninstruction=0\npara format=dDfFsS\nprint format=sFfDdS\n"
    "[text]\nbelong module=m\ncommand=t\ninstruction=1\npara format=s\nprint format=s\n"
    "[none]\nbelong module=m\ncommand=n\ninstruction=2\n";

const TvService& Service() {
    static KoFileParse catalogue;
    static const bool loaded = [] {
        const MemoryFile file;
        KoFile reader;
        file.Write(kModules);
        reader.Init(file.Path(), "r");
        const bool modules = catalogue.ParseModulePtr(&reader) == 0;
        file.Write(kCommands);
        reader.Init(file.Path(), "r");
        return modules && catalogue.ParseCmdPtr(&reader) == 0;
    }();
    Require(loaded, "the catalogue loads");
    static const TvService service(catalogue, {});
    return service;
}

}  // namespace

// The input is the page of a console that goes on writing. It is cut and sized again meanwhile for
// an input of odd length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static TvServicePage page(RunGuarded, std::chrono::nanoseconds(0));
    static std::string error;
    static const bool opened = page.Open(HostilePage::Path(), error);
    Require(opened, error.c_str());
    const HostilePage console({std::string(reinterpret_cast<const char*>(data), size)},
                              size % 2 == 1);
    std::vector<std::uint8_t> request;
    if (!page.WaitRequest(std::chrono::microseconds(200), request)) {
        return 0;
    }
    Require(request.size() <= kDataCapacity, "a request fits the page");
    const TvService::Answer answer = Service().Handle(request);
    std::int32_t status = 0;
    Require(answer.reply.size() >= sizeof(status) && answer.reply.size() <= kDataCapacity,
            "every request has an answer that fits");
    std::memcpy(&status, answer.reply.data(), sizeof(status));
    Require(request.size() >= sizeof(status) || status != 0, "no number, no success");
    page.PostReply(answer.reply.data(), answer.reply.size());
    return 0;
}
