#include <gtest/gtest.h>

#include "common/ko_mw_array.h"
#include "tests/support/recording_log.h"

TEST(ArrayTest, ReadsOutsideGiveTheLastOrAnEmptyElementAndAreLogged) {
    Array<std::string> array;
    const Array<std::string>& readOnly = array;
    g_logEntries.clear();
    array[0] = "lost";
    EXPECT_EQ("", array[3]);
    array[0] = "lost";
    EXPECT_EQ("", readOnly[0]);
    array.push_back("a");
    array.push_back("b");
    EXPECT_EQ("b", readOnly[1]);
    EXPECT_EQ("b", array[2]);
    EXPECT_EQ("b", readOnly[2]);
    EXPECT_EQ("b", readOnly[0xFFFFFFFF]);
    const std::string prefix = "5 KoMW_Ko_cmd_pri operator[]:";
    const std::vector<std::string> expected = {
        prefix +
            "132 ko_mw_array: remove pos:0, m_list size is 0, operator fail, return null value",
        prefix + "136 ko_mw_array: index:2, arry max size:2",
        prefix + "136 ko_mw_array: index:-1, arry max size:2"};
    EXPECT_EQ(expected, g_logEntries);
    Array<std::string> copy = array;
    copy.push_back("c");
    EXPECT_EQ(2U, array.size());
}
