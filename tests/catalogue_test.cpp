#include <memory>

#include <gtest/gtest.h>

#include "catalogue/ko_file_parse.h"
#include "tests/support/test_root.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

std::vector<std::string> List(const Array<std::string>& array) {
    return {array.begin(), array.end()};
}

// A catalogue over the texts of two files, and what the block readers printed.
struct Loaded {
    Loaded(const std::string& modules, const std::string& commands) {
        CaptureStdout();
        Read(root.Write("mods", modules), &KoFileParse::ParseModulePtr);
        Read(root.Write("cmds", commands), &KoFileParse::ParseCmdPtr);
        printed = GetCapturedStdout();
    }

    void Read(const std::string& path, int (KoFileParse::*readBlocks)(KoFile*)) {
        KoFile file;
        file.Init(path, "r");
        EXPECT_EQ(0, (catalogue.*readBlocks)(&file));
    }

    TestRoot root;
    KoFileParse catalogue;
    std::string printed;
};

constexpr char kModule[] = "[m]\ninstruction=1\n";

// The one command of a module, given by the rows of its block.
struct OneCmd : Loaded {
    explicit OneCmd(const std::string& rows)
        : Loaded(kModule, "[t]\nbelong module=m\ncommand=c\n" + rows) {}

    std::string Description() const { return catalogue.GetCmdDescrip(1, "c"); }
    std::int32_t Instruct() const { return catalogue.GetCmdInstruct(1, "c"); }
};

}  // namespace

TEST(RowTest, TitlesAreBracketedAndShorterThan256) {
    struct {
        std::string row;
        bool title;
        std::string name;
    } const cases[] = {
        {"[tuner]", true, "tuner"},
        {" \t[ tuner ]\v\f", true, " tuner "},
        {"[]", true, ""},
        {"[", false, ""},
        {"x[a]", false, ""},
        {"[a]x", false, ""},
        {"[" + std::string(253, 'x') + "]", true, std::string(253, 'x')},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.title, KoFileParse::IsBlockTitile(c.row)) << c.row;
        EXPECT_EQ(c.name, c.title ? KoFileParse::GetBlockTitile(c.row) : "");
    }
    CaptureStdout();
    EXPECT_FALSE(KoFileParse::IsBlockTitile("[" + std::string(254, 'x') + "]"));
    EXPECT_EQ("str size:256 too large, max len:256\n", GetCapturedStdout());
}

TEST(RowTest, KeysMayBeShortenedOnlyRightBeforeTheEqualsSign) {
    struct {
        std::string row;
        bool (*test)(const std::string&);
        bool expected;
    } const cases[] = {
        {"command = x", KoFileParse::IsCommand, true},
        {" \tcommand\t=x", KoFileParse::IsCommand, true},
        {"Command=x", KoFileParse::IsCommand, false},
        {"commands=x", KoFileParse::IsCommand, false},
        {"command", KoFileParse::IsCommand, false},
        {"=x", KoFileParse::IsCommand, true},
        {"desc=x", KoFileParse::IsDescription, true},
        {"desc =x", KoFileParse::IsDescription, false},
        {" desc=x", KoFileParse::IsDescription, false},
        {"print=x", KoFileParse::IsPrintFmt, true},
        {"print=x", KoFileParse::IsPrintTags, true},
        {"p=x", KoFileParse::IsParaFormat, true},
        {"belong  module=x", KoFileParse::IsBelongMod, false},
        {"belong module = a = b", KoFileParse::IsBelongMod, true},
        {std::string("desc\0=x", 7), KoFileParse::IsDescription, false},
        {std::string("command\0=x", 10), KoFileParse::IsCommand, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected, c.test(c.row)) << c.row;
    }
    EXPECT_EQ("a = b", KoFileParse::GetBelongMod("belong module = a = b"));
}

TEST(RowTest, InstructionsAreHexadecimalAndClamped) {
    struct {
        const char* value;
        std::int32_t number;
        const char* printed;
    } const cases[] = {
        {"10", 16, ""},
        {" 0x1a ", 26, ""},
        {"0X1Ag", 26, ""},
        {"-1", -1, ""},
        {"+7", 7, ""},
        {"7fffffff", 2147483647, ""},
        {"80000000", 2147483647, ""},
        {"-80000001", -2147483647 - 1, ""},
        {"ffffffffffffffffffff", 2147483647, ""},
        {"0x", 0, ""},
        {"zz", 0, "strtol:zz is not figure\n"},
        {"", 0, "strtol: is not figure\n"},
    };
    for (const auto& c : cases) {
        CaptureStdout();
        EXPECT_EQ(c.number, KoFileParse::GetInstruction(std::string("instruction=") + c.value))
            << c.value;
        EXPECT_EQ(c.printed, GetCapturedStdout());
    }
}

TEST(RowTest, TagsAreSplitAtCommasAndNotTrimmed) {
    struct {
        const char* value;
        std::vector<std::string> tags;
    } const cases[] = {
        {"a,b", {"a", "b"}}, {"a, b,", {"a", " b", ""}}, {"", {""}}, {" a ,,b ", {"a ", "", "b"}}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.tags, List(KoFileParse::GetPrintTags(std::string("print tags=") + c.value)));
    }
}

TEST(RowTest, LimitsOfKeysAndValues) {
    EXPECT_EQ(std::string(254, 'v'), OneCmd("description=" + std::string(254, 'v')).Description());
    const OneCmd tooLong("description=" + std::string(255, 'v') + "\ninstruction=5");
    EXPECT_EQ("", tooLong.Description());
    EXPECT_EQ(5, tooLong.Instruct());
    EXPECT_EQ("str size:267 too large, max len:256\nGetDescription string size: 256\n",
              tooLong.printed);
    const OneCmd longNumber("instruction=" + std::string(255, '1'));
    EXPECT_EQ(0, longNumber.Instruct());
    EXPECT_EQ(
        0U, OneCmd("print tags=" + std::string(255, 'v')).catalogue.GetCmdPrintTags(1, "c").size());
    // A key over the limit is tried as every key word, ends the block, and meets the title test
    // again.
    const OneCmd longKey(std::string(256, 'k') + "=x\ninstruction=5");
    EXPECT_EQ(-1, longKey.Instruct());
    EXPECT_EQ(
        "str size:258 too large, max len:256\n"
        "IsCommand string str.size(): 256\n"
        "IsBelongMod string str.size(): 256]\n"
        "IsInstruction string str.size(): 256\n"
        "IsParaFormat string str.size(): 256\n"
        "IsPrintFmt string str.size(): 256\n"
        "IsPrintTags string str.size(): 256\n"
        "IsDescription string str.size(): 256\n"
        "str size:258 too large, max len:256\n",
        longKey.printed);
}

TEST(RowTest, ValueMessagesNameTheirReader) {
    const std::string value(255, 'v');
    CaptureStdout();
    EXPECT_EQ("", KoFileParse::GetCommand("=" + value));
    EXPECT_EQ("", KoFileParse::GetBelongMod("=" + value));
    EXPECT_EQ("", KoFileParse::GetPrintFmt("=" + value));
    EXPECT_EQ("", KoFileParse::GetParaFormat("=" + value));
    EXPECT_EQ(0, KoFileParse::GetInstruction("=" + value));
    EXPECT_EQ(0U, KoFileParse::GetPrintTags("=" + value).size());
    EXPECT_EQ("", KoFileParse::GetBlockTitile("[" + value + "]"));
    EXPECT_EQ(
        "GetCommand string size: 256\nGetBelongMod string size: 256\nGetPrintFmt string size: 256\n"
        "GetParaFormat string size: 256\nGetInstruction string size: 256\nGetPrintTags string "
        "size: 256\n"
        "str size:257 too large, max len:256\n",
        GetCapturedStdout());
}

TEST(BlockTest, ARowThatIsNoKeyEndsTheBlock) {
    for (const char* row : {"descripton = x", "# comment", "  ", "x"}) {
        const OneCmd ended(std::string("instruction=5\n") + row + "\ndescription=lost");
        EXPECT_EQ(5, ended.Instruct()) << row;
        EXPECT_EQ("", ended.Description()) << row;
    }
    EXPECT_EQ("kept", OneCmd("instruction=5\n\r\n\n description=kept\r\n").Description());
    EXPECT_EQ("second", OneCmd("description=first\ndescription=second").Description());
}

TEST(BlockTest, TheFirstOfTwoIsKept) {
    const Loaded loaded(
        "stray\n[b]\ncommand=bb\ninstruction=2\n[a]\ncommand=first\ninstruction=1\n"
        "[a]\ncommand=second\ninstruction=3\n[B]\ninstruction=2\n[none]\n",
        "[1]\nbelong module=b\ncommand=x\ninstruction=7\n"
        "[2]\ncommand=x\nbelong module=B\ninstruction=8\n"
        "[3]\ncommand=w\nbelong module=B\n"
        "[4]\ncommand=y\nbelong module=unknown\n"
        "[5]\ncommand=z\nbelong module=none\n");
    const KoFileParse& c = loaded.catalogue;
    EXPECT_EQ((std::vector<std::string>{"B", "a", "b", "none"}), List(c.GetModNames()));
    EXPECT_EQ((std::vector<std::string>{"", "first", "bb", ""}), List(c.GetModCmds()));
    EXPECT_EQ(1, c.GetModInstruct("a"));
    EXPECT_EQ(-1, c.GetModInstruct("none"));
    EXPECT_EQ((std::vector<std::string>{"w", "x"}), List(c.GetModHoldCmds(2)));
    EXPECT_EQ(7, c.GetCmdInstruct(2, "x"));
    EXPECT_EQ(-1, c.GetCmdInstruct(2, "w"));
    EXPECT_TRUE(List(c.GetModHoldCmds(-1)).empty());
    EXPECT_TRUE(List(c.GetModHoldCmds(3)).empty());
    EXPECT_EQ("", loaded.printed);
}

TEST(BlockTest, EveryKeyLandsInItsField) {
    const Loaded loaded("[audio]\ncommand = aud\ninstruction = 1A\ndescription = sound output\n",
                        "[set volume]\ncommand = setvol\nbelong module = audio\ninstruction = 0x3\n"
                        "para format = dd\nprint format = dF\nprint tags = volume,gain\n"
                        "description = set it\n");
    const KoFileParse& c = loaded.catalogue;
    EXPECT_EQ("aud", c.GetModToCmd("audio"));
    EXPECT_EQ("sound output", c.GetModDescrip("audio"));
    EXPECT_EQ("dd", c.GetCmdParaFmt(0x1A, "setvol"));
    EXPECT_EQ("dF", c.GetCmdPrintFmt(0x1A, "setvol"));
    EXPECT_EQ((std::vector<std::string>{"volume", "gain"}),
              List(c.GetCmdPrintTags(0x1A, "setvol")));
    EXPECT_EQ("set it", c.GetCmdDescrip(0x1A, "setvol"));
    EXPECT_EQ(3, c.GetCmdInstruct(0x1A, "setvol"));
    EXPECT_EQ("", c.GetCmdParaFmt(0x1A, "set volume"));
    EXPECT_EQ("", c.GetCmdDescrip(0x1B, "setvol"));
    EXPECT_EQ("", c.GetModToCmd("aud"));
}

TEST(BlockTest, ANullReaderIsRefused) {
    KoFileParse catalogue;
    EXPECT_EQ(-1, catalogue.ParseModulePtr(nullptr));
    EXPECT_EQ(-1, catalogue.ParseCmdPtr(nullptr));
}
