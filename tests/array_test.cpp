#include <gtest/gtest.h>

#include "common/ko_mw_array.h"
#include "tests/support/recorded_log.h"

TEST(ArrayTest, ReadsOutsideGiveTheLastOrAnEmptyElementAndAreLogged) {
    Array<std::string> array;
    const Array<std::string>& readOnly = array;
    g_logged.clear();
    array[0] = "lost";
    EXPECT_EQ("", array[3]);
    EXPECT_EQ("", readOnly[0]);
    array.m_list = {"a", "b"};
    EXPECT_EQ("b", array[2]);
    for (const unsigned int index : {1U, 2U, 0xFFFFFFFFU}) {
        EXPECT_EQ("b", readOnly[index]);
    }
    EXPECT_EQ(
        "5 KoMW_Ko_cmd_pri [operator[]:132] ko_mw_array: remove pos:0, m_list size is 0, operator "
        "fail, return null value\n"
        "5 KoMW_Ko_cmd_pri [operator[]:136] ko_mw_array: index:2, arry max size:2\n"
        "5 KoMW_Ko_cmd_pri [operator[]:136] ko_mw_array: index:-1, arry max size:2\n",
        g_logged);
}
