#include "printer/printer.h"

#include <gtest/gtest.h>

#include "tests/support/recording_log.h"

// What replies become stands in cases/console/replies.case; here is what only the log shows.

TEST(PrinterTest, ADoubleTooLongToRenderIsLoggedAndLeftOut) {
    const double values[] = {1e249, 1e3};
    android::Parcel reply;
    reply.setData(reinterpret_cast<const std::uint8_t*>(values), sizeof(values));
    Array<std::string> tags;
    tags.m_list = {"a", "b"};
    Printer printer(reply);
    g_logEntries.clear();
    testing::internal::CaptureStdout();
    EXPECT_EQ(-1, printer.Fmt(nullptr, tags));
    EXPECT_EQ(0, printer.Fmt("FF", tags));
    printer.Flush();
    EXPECT_EQ("===========================\nb:     1000.000000\t\n===========================\n",
              testing::internal::GetCapturedStdout());
    const std::vector<std::string> expected = {
        "6 KoMW_Ko_cmd_pri ParseDecimalfmt:68 snprintf_s failed, ret = -1"};
    EXPECT_EQ(expected, g_logEntries);
}
