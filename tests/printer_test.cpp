#include "printer/printer.h"

#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/recording_log.h"

namespace {

constexpr char kRule[] = "===========================\n";
constexpr char kNoWide[] = "current is no support 'S' format\n";

// What a reply prints, with the result of Fmt before it.
std::string Print(const android::Parcel& reply, const char* format, const char* tags) {
    Array<std::string> list;
    std::istringstream words(tags);
    for (std::string tag; words >> tag;) {
        list.push_back(tag == "-" ? "" : tag);
    }
    testing::internal::CaptureStdout();
    Printer printer(reply);
    const int result = printer.Fmt(format, list);
    printer.Flush();
    return std::to_string(result) + " " + testing::internal::GetCapturedStdout();
}

std::string Framed(const std::string& lines) {
    return "0 " + (kRule + lines) + kRule;
}

}  // namespace

TEST(PrinterTest, EveryLetterIsRenderedBehindItsTag) {
    android::Parcel reply;
    for (int record = 0; record < 2; ++record) {
        reply.writeInt32(-5);
        reply.writeInt64(-5'000'000'000);
        reply.writeFloat(3.5F);
        reply.writeDouble(3.5);
        reply.writeString16(android::String16(std::u16string(u"a\0b", 3)));
    }
    const std::string line = "i:-5\tl:-5000000000\tf:3.500000\tF:        3.500000\ts:a\t\n";
    EXPECT_EQ(Framed(line + line), Print(reply, "dDfFs", "i l f F s"));
}

TEST(PrinterTest, FormatAndTagsDecideHowMuchIsRead) {
    struct {
        int values;  // int32 values 1, 2, 3 ...
        const char* format;
        const char* tags;
        std::string printed;
    } const cases[] = {
        {0, "d", "a", Framed("")},
        {3, "d", "a b", Framed("a:1\t\na:2\t\na:3\t\n")},
        {2, "dd", "a", Framed("a:1\t\na:2\t\n")},
        {2, "dx", "a b", "-1 invalid fmt info!\n"},
        {1, "dx", "a", Framed("a:1\t\n")},
        {2, "Sd", "a b", "0 " + (kNoWide + (kNoWide + Framed("b:1\t\nb:2\t\n").substr(2)))},
        {1, "S", "a", "0 " + (kNoWide + Framed("").substr(2))},
        {3, "dd", "a b", Framed("a:1\tb:2\t\na:3\tb:0\t\n")},
        {3, "D", "a", Framed("a:8589934593\t\n")},
        {1, "ds", "a b", Framed("a:1\tb:\t\n")},
        {1, "d", "-", Framed(":1\t\n")},
        {1, "", "a", "-1 "},
        {1, nullptr, "a", "-1 "},
        {1, "d", "", "-1 "},
    };
    for (const auto& c : cases) {
        android::Parcel reply;
        for (int value = 1; value <= c.values; ++value) {
            reply.writeInt32(value);
        }
        EXPECT_EQ(c.printed, Print(reply, c.format, c.tags)) << c.tags;
    }
}

TEST(PrinterTest, ADoubleTooLongToRenderIsLoggedAndLeftOut) {
    android::Parcel reply;
    reply.writeDouble(1e249);
    reply.writeDouble(1e3);
    g_logEntries.clear();
    EXPECT_EQ(Framed("b:     1000.000000\t\n"), Print(reply, "FF", "a b"));
    ASSERT_EQ(1U, g_logEntries.size());
    EXPECT_EQ("6 KoMW_Ko_cmd_pri ParseDecimalfmt:68 snprintf_s failed, ret = -1",
              g_logEntries.front());
}
