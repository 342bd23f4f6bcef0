#include <gtest/gtest.h>

#include "common/ko_mw_array.h"
#include "tests/support/recording_log.h"

TEST(ArrayTest, ReadsPastTheEndGiveTheLastElementAndAreLogged) {
    Array<std::string> array;
    array.push_back("a");
    array.push_back("b");
    const Array<std::string>& readOnly = array;
    g_logEntries.clear();
    EXPECT_EQ("b", readOnly[1]);
    EXPECT_EQ("b", array[2]);
    EXPECT_TRUE(g_logEntries.empty());
    EXPECT_EQ("b", readOnly[2]);
    EXPECT_EQ("b", readOnly[0xFFFFFFFF]);
    EXPECT_EQ((std::vector<std::string>{
                  "5 KoMW_Ko_cmd_pri operator[]:136 ko_mw_array: index:2, arry max size:2",
                  "5 KoMW_Ko_cmd_pri operator[]:136 ko_mw_array: index:-1, arry max size:2"}),
              g_logEntries);
}

TEST(ArrayTest, AnEmptyArrayGivesAnEmptyElementWhateverWasWrittenToIt) {
    Array<std::string> array;
    const Array<std::string>& readOnly = array;
    g_logEntries.clear();
    array[0] = "lost";
    EXPECT_EQ("", array[3]);
    array[0] = "lost";
    EXPECT_EQ("", readOnly[0]);
    EXPECT_EQ((std::vector<std::string>{
                  "5 KoMW_Ko_cmd_pri operator[]:132 ko_mw_array: remove pos:0, m_list size is 0, "
                  "operator fail, return null value"}),
              g_logEntries);
}

TEST(ArrayTest, CopiesAreIndependent) {
    Array<std::string> array;
    array.push_back("a");
    Array<std::string> copy = array;
    copy.push_back("b");
    EXPECT_EQ(1U, array.size());
    const Array<std::string>& self = copy;
    copy = self;
    EXPECT_EQ("b", copy[1]);
    EXPECT_EQ(2U, copy.size());
}
