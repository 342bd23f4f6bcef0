#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "console/ko_cmd_debug.h"
#include "page/page_mapping.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

namespace fs = std::filesystem;

// The console reads its catalogue below the working directory.
bool Load(KoCmdDebug& console) {
    const fs::path before = fs::current_path();
    std::string folder = fs::temp_directory_path() / "ko_fuzz.XXXXXX";
    fs::current_path(mkdtemp(folder.data()));
    fs::create_directories("root/vendor/etc/atv/dbg");
    std::ofstream("root/vendor/etc/atv/dbg/mods.conf")
        << "[m]\ncommand=m\ninstruction=1\n[n]\ncommand=n n\ninstruction=2\n";
    std::ofstream("root/vendor/etc/atv/dbg/cmds.conf")
        << "[all]\nbelong module=m\ncommand=a\npara format=dDfFsS\n"
           "[bad]\nbelong module=m\ncommand=b\npara format=dx\n[m]\nbelong module=n\ncommand=m\n";
    const bool loaded = console.LoadConfig() == 0;
    fs::current_path(before);
    fs::remove_all(folder);
    return loaded;
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
