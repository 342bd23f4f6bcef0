#include <random>

#include <gtest/gtest.h>

#include "tests/support/editor_model.h"

namespace {

const std::vector<WordGroup> kGroups = {
    {" all mods ", {"audio", "tuner", "tun", "video", "Blue"}},
    {"none cmds", {}},
    {"tuner cmds",
     {"tune", "video", "scan", "s1", "s2", "s3", "s4", "s5", "s6", "s7", "s8", "s9", "sa b"}}};

}  // namespace

TEST(EditorTest, TheHistoryDropsItsOldestLine) {
    std::string keys;
    for (int i = 0; i < 10001; ++i) {
        keys += std::to_string(i) + "\n";
    }
    keys += "\n" + std::string(10000, 'A') + "\n";
    EXPECT_EQ("2", RunEditor(keys, kGroups).lines.back());
}

TEST(EditorTest, AgreesWithTheModelOnRandomKeys) {
    std::mt19937 random(20261122);
    constexpr char kAlphabet[] = "abitunerosv1Z \t\t\b\b\n\n\x1b[ABCDAB\r\x7f\0\xC3";
    for (int run = 0; run < 300; ++run) {
        std::string keys;
        for (int i = 0; i < 400; ++i) {
            keys += kAlphabet[random() % (sizeof(kAlphabet) - 1)];
        }
        const EditorRun expected = RunModel(keys, kGroups);
        ASSERT_TRUE(expected == RunEditor(keys, kGroups)) << testing::PrintToString(keys);
    }
}
