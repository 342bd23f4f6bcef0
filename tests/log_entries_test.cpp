#include <gtest/gtest.h>

#include "printer/printer.h"
#include "tests/support/recording_log.h"

// What only the log shows. Its entries name the lines that are part of its contract.

TEST(LogEntriesTest, TellsOfReadsOutsideAnArray) {
    Array<std::string> array;
    const Array<std::string>& readOnly = array;
    g_logEntries.clear();
    array[0] = "lost";
    EXPECT_EQ("", array[3]);
    EXPECT_EQ("", readOnly[0]);
    array.m_list = {"a", "b"};
    EXPECT_EQ("b", array[2]);
    for (const unsigned int index : {1U, 2U, 0xFFFFFFFFU}) {
        EXPECT_EQ("b", readOnly[index]);
    }
    const std::string prefix = "5 KoMW_Ko_cmd_pri operator[]:";
    const std::vector<std::string> expected = {
        prefix +
            "132 ko_mw_array: remove pos:0, m_list size is 0, operator fail, return null value",
        prefix + "136 ko_mw_array: index:2, arry max size:2",
        prefix + "136 ko_mw_array: index:-1, arry max size:2"};
    EXPECT_EQ(expected, g_logEntries);
}

TEST(LogEntriesTest, TellsOfADoubleTooLongToRender) {
    const double value = 1e249;
    android::Parcel reply;
    reply.setData(reinterpret_cast<const std::uint8_t*>(&value), sizeof(value));
    Array<std::string> tags;
    tags.m_list = {"a"};
    Printer printer(reply);
    g_logEntries.clear();
    EXPECT_EQ(-1, printer.Fmt(nullptr, tags));
    EXPECT_EQ(0, printer.Fmt("F", tags));
    const std::vector<std::string> expected = {
        "6 KoMW_Ko_cmd_pri ParseDecimalfmt:68 snprintf_s failed, ret = -1"};
    EXPECT_EQ(expected, g_logEntries);
}
