#include <gtest/gtest.h>

#include "catalogue/ko_file_parse.h"
#include "tests/support/test_root.h"

// What rows and blocks become stands in cases/tool; here is what no catalogue shows.
TEST(CatalogueTest, AnswersForKnownAndUnknownKeys) {
    const TestRoot root;
    KoFileParse c;
    KoFile file;
    file.Init(root.Write("m", "[b]\ncommand=x\ninstruction=2\n[B]\ncommand=y\n"), "r");
    EXPECT_EQ(0, c.ParseModulePtr(&file));
    file.Init(root.Write("c", "[t]\nbelong module=b\ncommand=w\n[u]\nbelong module=B\n"), "r");
    EXPECT_EQ(0, c.ParseCmdPtr(&file));
    EXPECT_EQ(-1, c.ParseModulePtr(nullptr) & c.ParseCmdPtr(nullptr));
    const auto count = [&c](int module) { return c.GetModHoldCmds(module).size(); };
    EXPECT_EQ(1U, count(2));
    EXPECT_EQ(0U, count(-1) + count(3));
    EXPECT_EQ(-1, c.GetModInstruct("B") & c.GetModInstruct("x") & c.GetCmdInstruct(2, "w"));
    EXPECT_EQ("", c.GetModToCmd("x") + c.GetModDescrip("x") + c.GetCmdParaFmt(2, "t") +
                      c.GetCmdPrintFmt(2, "t") + c.GetCmdDescrip(3, "w"));
    EXPECT_EQ(0U, c.GetCmdPrintTags(2, "t").size());
}
