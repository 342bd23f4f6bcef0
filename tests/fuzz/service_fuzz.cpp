#include <cstring>

#include "page/tv_service_page.h"
#include "service/tv_service.h"
#include "tests/fuzz/hostile_page.h"
#include "tools/catalogue_source.h"

namespace {

constexpr char kModules[] = "[m]\ninstruction=1\n";
constexpr char kCommands[] =
    "[all]\nbelong module=m\ncommand=a\ninstruction=0\npara format=dDfFsS\nprint format=sFfDdS\n"
    "[text]\nbelong module=m\ncommand=t\ninstruction=1\npara format=s\nprint format=s\n"
    "[none]\nbelong module=m\ncommand=n\ninstruction=2\n";

const KoFileParse& Catalogue() {
    static KoFileParse catalogue;
    const MemoryFile modules;
    const MemoryFile commands;
    modules.Write(kModules);
    commands.Write(kCommands);
    Require(LoadCatalogue({modules.Path(), commands.Path()}, catalogue), "the catalogue loads");
    return catalogue;
}

}  // namespace

// The input is the page of a console that goes on writing. It is cut and sized again meanwhile for
// an input of odd length.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TvService service(Catalogue(), {});
    static const PageFile file;
    static TvServicePage page(RunGuarded, std::chrono::nanoseconds(0));
    static std::string error;
    static const bool opened = page.Open(file.path, error);
    Require(opened, error.c_str());
    const HostilePage console(file, {std::string(reinterpret_cast<const char*>(data), size)},
                              size % 2 == 1);
    std::vector<std::uint8_t> request;
    if (!page.WaitRequest(std::chrono::microseconds(200), request)) {
        return 0;
    }
    Require(request.size() <= kDataCapacity, "a request fits the page");
    const TvService::Answer answer = service.Handle(request);
    std::int32_t status = 0;
    Require(answer.reply.size() >= sizeof(status) && answer.reply.size() <= kDataCapacity,
            "every request has an answer that fits");
    std::memcpy(&status, answer.reply.data(), sizeof(status));
    Require(request.size() >= sizeof(status) || status != 0, "no number, no success");
    page.PostReply(answer.reply.data(), answer.reply.size());
    return 0;
}
