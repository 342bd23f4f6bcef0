#include <random>

#include <gtest/gtest.h>

#include "tests/support/editor_model.h"

namespace {

const std::vector<WordGroup> kGroups = {
    {" all mods ", {"audio", "tuner", "tun", "video", "Blue"}},
    {"none cmds", {}},
    {"tuner cmds",
     {"tune", "video", "scan", "s1", "s2", "s3", "s4", "s5", "s6", "s7", "s8", "s9", "sa b"}}};

EditorRun Typed(const std::string& keys) {
    return RunEditor(keys, kGroups);
}

using Lines = std::vector<std::string>;

}  // namespace

TEST(EditorTest, KeysEditRecallAndEcho) {
    struct {
        const char* what;
        std::string keys;
        EditorRun expected;
    } const cases[] = {
        {"erase", "ab\b\b\bc\n", {{"c"}, "ab\b \b\b \bc\n\r"}},
        {"dropped keys", "\x1b[CD[x\n", {{"x"}, "x\n\r"}},
        {"stored keys", "\r\x7f\n", {{"\r\x7f"}, "\r\x7f\n\r"}},
        {"up and down", "x\ny\nAABB!\n", {{"x", "y", "y!"}, "x\n\ry\n\ry\b \bx\b \by!\n\r"}},
        {"up replaces what was typed", "x\nqq\x1b[A\n", {{"x", "x"}, "x\n\rqq\b \b\b \bx\n\r"}},
        {"empty history", "AB\n", {{""}, "\n\r"}},
        {"one candidate", "aud\t\t\n", {{"audio"}, "audio\n\r"}},
        {"a recalled capital", "Blue\t\n", {{"lue"}, "lue\n\r"}},
        {"no candidate", "x\t\n", {{"x"}, "x\n\r"}},
        {"a NUL ends no word",
         std::string("tun\0er\t\n", 8),
         {{"tun"}, std::string("tun\0er\n\r", 8)}},
        {"end of input keeps the line", "x\ny", {{"x"}, "x\n\ry"}},
    };
    for (const auto& c : cases) {
        const EditorRun run = Typed(c.keys);
        EXPECT_EQ(c.expected.lines, run.lines) << c.what;
        EXPECT_EQ(c.expected.output, run.output) << c.what;
    }
}

TEST(EditorTest, TheLongestLineHas1023Bytes) {
    const std::string longest(1023, 'x');
    EXPECT_EQ(Lines({longest}), Typed(longest + "\n").lines);
    const EditorRun refused = Typed(longest + "x\nnot read\n");
    EXPECT_TRUE(refused.lines.empty());
    EXPECT_EQ("x\n\rError:m_strInbuffer too large\n", refused.output.substr(1023));
}

TEST(EditorTest, TheHistoryDropsItsOldestLine) {
    std::string keys;
    for (int i = 0; i < 10001; ++i) {
        keys += std::to_string(i) + "\n";
    }
    keys += "\n" + std::string(10000, 'A') + "\n";
    EXPECT_EQ("2", Typed(keys).lines.back());
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
        ASSERT_TRUE(expected == Typed(keys)) << testing::PrintToString(keys);
    }
}
