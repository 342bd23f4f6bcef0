#include <gtest/gtest.h>

#include "catalogue/ko_file_parse.h"
#include "tests/support/test_root.h"

// What rows and blocks become stands in cases/tool/rows_*.case; here is what no catalogue shows.

namespace {

using Words = std::vector<std::string>;

Words List(const Array<std::string>& array) {
    return {array.begin(), array.end()};
}

}  // namespace

TEST(CatalogueTest, TestsAndReadersStandByThemselves) {
    EXPECT_TRUE(KoFileParse::IsPrintTags("print=x"));
    testing::internal::CaptureStdout();
    EXPECT_EQ("", KoFileParse::GetBlockTitile("[" + std::string(254, 'x') + "]"));
    EXPECT_EQ("str size:256 too large, max len:256\n", testing::internal::GetCapturedStdout());
}

TEST(CatalogueTest, AnswersForKnownAndUnknownKeys) {
    const TestRoot root;
    KoFileParse c;
    KoFile file;
    file.Init(root.Write("m", "[b]\ncommand=x\ninstruction=2\n[B]\ncommand=y\n"), "r");
    EXPECT_EQ(0, c.ParseModulePtr(&file));
    file.Init(root.Write("c", "[t]\nbelong module=b\ncommand=w\n[u]\nbelong module=B\n"), "r");
    EXPECT_EQ(0, c.ParseCmdPtr(&file));
    EXPECT_EQ((Words{"B", "b"}), List(c.GetModNames()));
    EXPECT_EQ((Words{"y", "x"}), List(c.GetModCmds()));
    EXPECT_EQ("", c.GetModToCmd("x"));
    EXPECT_EQ("", c.GetModDescrip("x"));
    EXPECT_EQ(-1, c.GetModInstruct("B"));
    EXPECT_EQ(-1, c.GetModInstruct("x"));
    EXPECT_EQ(Words{"w"}, List(c.GetModHoldCmds(2)));
    EXPECT_EQ(Words{}, List(c.GetModHoldCmds(-1)));
    EXPECT_EQ(Words{}, List(c.GetModHoldCmds(3)));
    EXPECT_EQ(-1, c.GetCmdInstruct(2, "w"));
    EXPECT_EQ("", c.GetCmdParaFmt(2, "t") + c.GetCmdDescrip(3, "w"));
    EXPECT_EQ(-1, c.ParseModulePtr(nullptr));
    EXPECT_EQ(-1, c.ParseCmdPtr(nullptr));
}
