#include <cstring>
#include <ctime>
#include <optional>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/log_daemon.h"
#include "tests/support/test_root.h"

TEST(LogTest, EachDaemonGetsItsEntriesAndTheTerminalNone) {
    const std::time_t before = std::time(nullptr);
    const ExampleRoot root;
    const Service service;
    Child console("ko_cmd_debug", {}, Child::Io::kTerminal);
    console.Type("tun\n");
    const auto logOnce = [&console] {
        console.ReadUntil("tuner@TV $");
        console.Type("fine 1e249\n");
        const std::string rule = "===========================\n";
        EXPECT_EQ("fine 1e249\n\r" + rule + "\n" + rule, console.ReadUntil(rule + "\n" + rule));
    };
    logOnce();
    std::optional<LogDaemon> daemon(std::in_place);
    logOnce();
    const std::string entry = daemon->Take();
    const auto thread = static_cast<std::uint16_t>(console.Pid());
    std::uint32_t when[2] = {};  // seconds and nanoseconds
    ASSERT_LT(11U, entry.size());
    std::memcpy(when, &entry[3], sizeof(when));
    EXPECT_LE(before, when[0]);
    EXPECT_GE(std::time(nullptr), when[0]);
    EXPECT_GT(1'000'000'000U, when[1]);
    EXPECT_EQ(
        std::string(1, '\0') + static_cast<char>(thread & 0xFF) + static_cast<char>(thread >> 8),
        entry.substr(0, 3));
    constexpr char kText[] =
        "\x06KoMW_Ko_cmd_pri\0[ParseDecimalfmt:68] snprintf_s failed, ret = -1";
    EXPECT_EQ(std::string(kText, sizeof(kText)), entry.substr(11));
    EXPECT_EQ("", daemon->Take());
    daemon.reset();
    daemon.emplace();
    logOnce();
    EXPECT_EQ(entry.substr(11), daemon->Take().substr(11));
}
