#include <cstring>

#include "page/share_page.h"
#include "service/tv_service.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/test_root.h"

namespace {

const KoFileParse& Catalogue() {
    static KoFileParse catalogue;
    const TestRoot root;
    root.WriteCatalogue(
        "[m]\ninstruction=1\n",
        "[all]\nbelong module=m\ncommand=a\ninstruction=0\npara format=dDfFsS\nprint "
        "format=sFfDdS\n"
        "[text]\nbelong module=m\ncommand=t\ninstruction=1\npara format=s\nprint format=s\n"
        "[none]\nbelong module=m\ncommand=n\ninstruction=2\n");
    catalogue.Init();
    return catalogue;
}

}  // namespace

// The input is a request.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TvService service(Catalogue(), {0, 300});
    const TvService::Answer answer = service.Handle({data, data + size});
    std::int32_t status = 0;
    Require(answer.reply.size() >= sizeof(status) && answer.reply.size() <= kDataCapacity,
            "every request has an answer that fits");
    std::memcpy(&status, answer.reply.data(), sizeof(status));
    Require(size >= sizeof(status) || status != 0, "no number, no success");
    return 0;
}
