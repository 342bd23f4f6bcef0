#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "tests/support/recording_log.h"
#include "tests/support/test_root.h"

// What completion offers stands in the cases; here is what only the log shows.

namespace {

std::string Numbered(std::size_t count, const std::string& before, const std::string& behind) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += before + std::to_string(i) + behind;
    }
    return text;
}

[[noreturn]] void RunConsole() {
    if (std::freopen("keys", "r", stdin) == nullptr) {
        std::exit(1);
    }
    KoCmdDebug::GetInstance().LoadConfig();
    KoCmdDebug::GetInstance().Exec();
    for (const std::string& entry : g_logEntries) {
        std::fprintf(stderr, "%s\n", entry.c_str() + entry.find("completion"));
    }
    std::exit(0);
}

}  // namespace

TEST(CompletionTest, ATableThatOverflowsIsLoggedOnce) {
    const TestRoot root;
    root.Write("root/vendor/etc/atv/dbg/mods.conf",
               Numbered(257, "[m", "]\ncommand=x\ninstruction=1\n"));
    root.Write("root/vendor/etc/atv/dbg/cmds.conf",
               Numbered(258, "[c]\nbelong module=m0\ncommand=c", "\n"));
    root.Write("keys", "x\nx\nq\nq\n");
    EXPECT_EXIT(RunConsole(), testing::ExitedWithCode(0),
                "^completion offers the first 256 of 257 module words\n"
                "completion offers the first 256 of 258 command words\n$");
}
