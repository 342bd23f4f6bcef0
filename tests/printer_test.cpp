#include "printer/printer.h"

#include <gtest/gtest.h>

#include "tests/support/recording_log.h"

namespace {

using android::String16;

constexpr char kRule[] = "===========================\n";

Array<std::string> Tags(const std::vector<std::string>& tags) {
    Array<std::string> array;
    for (const std::string& tag : tags) {
        array.push_back(tag);
    }
    return array;
}

// What a reply prints, and the result of Fmt.
std::pair<std::string, int> Print(const android::Parcel& reply, const char* format,
                                  const std::vector<std::string>& tags) {
    testing::internal::CaptureStdout();
    Printer printer(reply);
    const int result = printer.Fmt(format, Tags(tags));
    printer.Flush();
    return {testing::internal::GetCapturedStdout(), result};
}

android::Parcel Ints(const std::vector<std::int32_t>& values) {
    android::Parcel parcel;
    for (const std::int32_t value : values) {
        parcel.writeInt32(value);
    }
    return parcel;
}

}  // namespace

TEST(PrinterTest, EveryLetterIsRenderedBehindItsTag) {
    android::Parcel reply;
    for (int record = 0; record < 2; ++record) {
        reply.writeInt32(-5);
        reply.writeInt64(-5'000'000'000);
        reply.writeFloat(3.5F);
        reply.writeDouble(3.5);
        reply.writeString16(String16(std::u16string(u"a\0b", 3)));
    }
    const std::string line = "i:-5\tl:-5000000000\tf:3.500000\tF:        3.500000\ts:a\t\n";
    EXPECT_EQ(std::make_pair(kRule + line + line + kRule, 0),
              Print(reply, "dDfFs", {"i", "l", "f", "F", "s"}));
}

TEST(PrinterTest, FormatAndTagsDecideHowMuchIsRead) {
    constexpr char kNoWide[] = "current is no support 'S' format\n";
    struct {
        std::vector<std::int32_t> values;
        const char* format;
        std::vector<std::string> tags;
        std::string printed;
        int result;
    } const cases[] = {
        {{}, "d", {"a"}, std::string(kRule) + kRule, 0},
        {{1, 2, 3}, "d", {"a", "b"}, std::string(kRule) + "a:1\t\na:2\t\na:3\t\n" + kRule, 0},
        {{1, 2}, "dd", {"a"}, std::string(kRule) + "a:1\t\na:2\t\n" + kRule, 0},
        {{1, 2}, "dx", {"a", "b"}, "invalid fmt info!\n", -1},
        {{1}, "dx", {"a"}, std::string(kRule) + "a:1\t\n" + kRule, 0},
        {{1, 2},
         "Sd",
         {"a", "b"},
         std::string(kNoWide) + kNoWide + kRule + "b:1\t\nb:2\t\n" + kRule,
         0},
        {{1}, "S", {"a"}, std::string(kNoWide) + kRule + kRule, 0},
        {{1, 2, 3}, "dd", {"a", "b"}, std::string(kRule) + "a:1\tb:2\t\na:3\tb:0\t\n" + kRule, 0},
        {{1, 2, 3}, "D", {"a"}, std::string(kRule) + "a:8589934593\t\n" + kRule, 0},
        {{1}, "ds", {"a", "b"}, std::string(kRule) + "a:1\tb:\t\n" + kRule, 0},
        {{7}, "d", {""}, std::string(kRule) + ":7\t\n" + kRule, 0},
        {{1}, "", {"a"}, "", -1},
        {{1}, nullptr, {"a"}, "", -1},
        {{1}, "d", {}, "", -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(std::make_pair(c.printed, c.result), Print(Ints(c.values), c.format, c.tags))
            << (c.format != nullptr ? c.format : "null");
    }
}

TEST(PrinterTest, ADoubleTooLongToRenderIsLoggedAndLeftOut) {
    android::Parcel reply;
    reply.writeDouble(1e249);
    reply.writeDouble(1e3);
    g_logEntries.clear();
    EXPECT_EQ(std::string(kRule) + "b:     1000.000000\t\n" + kRule,
              Print(reply, "FF", {"a", "b"}).first);
    EXPECT_EQ((std::vector<std::string>{
                  "6 KoMW_Ko_cmd_pri ParseDecimalfmt:68 snprintf_s failed, ret = -1"}),
              g_logEntries);
}
