#include <fcntl.h>
#include <unistd.h>

#include <sstream>

#include "console/ko_cmd_debug.h"
#include "page/page_mapping.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/test_root.h"

namespace {

bool Load(KoCmdDebug& console) {
    const TestRoot root;
    root.WriteCatalogue(
        "[m]\ncommand=m\ninstruction=1\n[n]\ncommand=n n\ninstruction=2\n",
        "[all]\nbelong module=m\ncommand=a\npara format=dDfFsS\n"
        "[bad]\nbelong module=m\ncommand=b\npara format=dx\n[m]\nbelong module=n\ncommand=m\n");
    return console.LoadConfig() == 0;
}

}  // namespace

// A row each is a line typed. The page has no file, so that a request that encodes ends at once.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static KoCmdDebug console;
    static const bool loaded = Load(console);
    Require(loaded, "the catalogue loads");
    static const MemoryFile file;
    static const PageMapping mapping(UniqueFd(open(file.Path().c_str(), O_RDWR)).Get());
    g_pSharePage = mapping.Get();
    std::istringstream rows(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string row; std::getline(rows, row);) {
        console.Proc(row.c_str());
    }
    console.Proc("q");
    return 0;
}
