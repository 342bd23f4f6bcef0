#include <sys/stat.h>

#include <cstring>

#include <gtest/gtest.h>

#include "platform/ko_cfg_file.h"
#include "platform/ko_file.h"
#include "platform/ko_securec.h"
#include "platform/parcel.h"
#include "tests/support/test_root.h"

namespace {

using android::Parcel;
using android::String16;
using android::String8;

std::string Hex(const Parcel& parcel) {
    std::string text;
    for (std::size_t i = 0; i < parcel.dataSize(); ++i) {
        char byte[4];
        std::snprintf(byte, sizeof(byte), "%02x", parcel.data()[i]);
        text += i % 4 == 0 && i != 0 ? std::string(" ") + byte : byte;
    }
    return text;
}

Parcel FromBytes(const std::vector<std::uint8_t>& bytes) {
    Parcel parcel;
    parcel.setData(bytes.data(), bytes.size());
    return parcel;
}

}  // namespace

TEST(ParcelTest, EveryValueHasItsBytes) {
    Parcel parcel;
    EXPECT_EQ(nullptr, parcel.data());
    EXPECT_EQ(0, parcel.writeInt32(-2));
    EXPECT_EQ(0, parcel.writeInt64(0x0102030405060708));
    EXPECT_EQ(0, parcel.writeFloat(1.5F));
    EXPECT_EQ(0, parcel.writeDouble(-2.5));
    EXPECT_EQ(0, parcel.writeString16(String16("ab")));
    EXPECT_EQ(0, parcel.writeString16(String16("\xC3\xA4")));
    EXPECT_EQ(
        "feffffff 08070605 04030201 0000c03f 00000000 000004c0 "
        "02000000 61006200 00000000 01000000 e4000000",
        Hex(parcel));
    EXPECT_EQ(-2, parcel.readInt32());
    EXPECT_EQ(0x0102030405060708, parcel.readInt64());
    EXPECT_EQ(1.5F, parcel.readFloat());
    EXPECT_EQ(-2.5, parcel.readDouble());
    EXPECT_STREQ("ab", String8(parcel.readString16()).string());
    EXPECT_STREQ("\xC3\xA4", String8(parcel.readString16()).string());
    EXPECT_EQ(0U, parcel.dataAvail());
}

TEST(ParcelTest, ReadsStayInsideTheBytes) {
    const Parcel tiny = FromBytes({1, 2, 3});
    EXPECT_EQ(0, tiny.readInt32());
    EXPECT_EQ(3U, tiny.dataAvail());
    const Parcel four = FromBytes({1, 0, 0, 0});
    EXPECT_EQ(0, four.readInt64());
    EXPECT_EQ(0.0, four.readDouble());
    EXPECT_EQ(1, four.readInt32());
    struct {
        const char* what;
        std::vector<std::uint8_t> bytes;
        std::size_t left;
    } const cases[] = {
        {"negative count", {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4}, 4},
        {"largest count", {0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4}, 4},
        {"one unit too many", {2, 0, 0, 0, 'a', 0, 'b', 0}, 4},
        {"no terminator", {1, 0, 0, 0, 'a', 0, 'b', 0}, 4},
        {"padding cut off", {0, 0, 0, 0, 0, 0}, 2},
        {"no count", {0, 0}, 2},
    };
    for (const auto& c : cases) {
        const Parcel parcel = FromBytes(c.bytes);
        EXPECT_EQ(0U, parcel.readString16().size()) << c.what;
        EXPECT_EQ(c.left, parcel.dataAvail()) << c.what;
    }
}

TEST(ParcelTest, RefusesToGrowPastItsLimit) {
    const std::vector<std::uint8_t> most(Parcel::kMaxSize - 4);
    Parcel parcel = FromBytes(most);
    EXPECT_GT(0, parcel.writeInt64(1));
    EXPECT_GT(0, parcel.writeString16(String16("")));
    EXPECT_EQ(0, parcel.writeInt32(1));
    EXPECT_GT(0, parcel.writeInt32(1));
    EXPECT_EQ(Parcel::kMaxSize, parcel.dataSize());
}

TEST(TextTest, MalformedTextBecomesReplacementCharacters) {
    struct {
        std::string utf8;
        std::u16string utf16;
        std::string back;
    } const cases[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"a\u00E9\u20AC\U0001F600",
         "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\x80", u"\uFFFD", "\xEF\xBF\xBD"},
        {"\xC0\xAF", u"\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xE2\x82x", u"\uFFFDx", "\xEF\xBF\xBDx"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD",
         "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF0\x9F\x98", u"\uFFFD", "\xEF\xBF\xBD"},
    };
    for (const auto& c : cases) {
        const String16 wide(c.utf8.data(), c.utf8.size());
        EXPECT_EQ(c.utf16, std::u16string(wide.string(), wide.size())) << c.utf8;
        EXPECT_EQ(c.back, String8(wide).string()) << c.utf8;
    }
    EXPECT_STREQ("\xEF\xBF\xBDx\xEF\xBF\xBD",
                 String8(String16(std::u16string{0xD800, u'x', 0xDC00})).string());
}

TEST(KoFileTest, RowsComeWithoutLineEndsAndOnceMoreAfterRollBack) {
    const TestRoot root;
    KoFile file;
    file.Init(root.Write("rows", std::string("one\r\n\ntw\0o\nlast", 15)), "r");
    EXPECT_EQ(0, file.GetIOExceptionStatus());
    EXPECT_FALSE(file.IsEmpty());
    EXPECT_NE(0, file.RollBack());
    EXPECT_EQ("one", file.NextRow());
    EXPECT_EQ(0, file.RollBack());
    EXPECT_NE(0, file.RollBack());
    EXPECT_EQ("one", file.NextRow());
    EXPECT_EQ("", file.NextRow());
    EXPECT_EQ(std::string("tw\0o", 4), file.NextRow());
    EXPECT_EQ(3U, file.RowNumber());
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ("last", file.NextRow());
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ("", file.NextRow());
}

TEST(KoFileTest, RowsOfAnyLengthComeWholeAndCanBeGivenBack) {
    const TestRoot root;
    std::vector<std::string> rows;
    std::string text;
    for (std::size_t i = 0; i < 400; ++i) {
        // Lengths around those of the chunks that the file is read in, and short ones between.
        const std::size_t length = i % 7 == 0 ? i * 997 % 140'000 : i % 5;
        rows.emplace_back(length, static_cast<char>('a' + i % 26));
        text += rows.back() + "\n";
    }
    KoFile file;
    file.Init(root.Write("rows", text), "r");
    for (const std::string& row : rows) {
        ASSERT_EQ(row, file.NextRow());
        ASSERT_EQ(0, file.RollBack());
        ASSERT_EQ(row, file.NextRow());
    }
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ(rows.size(), file.RowNumber());
}

TEST(KoFileTest, WhatIsNoReadableFileIsAnError) {
    const TestRoot root;
    for (const char* path : {"missing", ".", "/dev/zero"}) {
        KoFile file;
        file.Init(path, "r");
        EXPECT_NE(0, file.GetIOExceptionStatus()) << path;
        EXPECT_TRUE(file.IsEOF()) << path;
    }
    KoFile empty;
    empty.Init(root.Write("empty", ""), "r");
    EXPECT_EQ(0, empty.GetIOExceptionStatus());
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(ConfigFileTest, AnOverrideWinsOverTheVendorsFile) {
    const TestRoot root;
    char path[kCfgPathSize] = {};
    EXPECT_EQ(nullptr, ko_get_one_cfg_file("x.conf", CUST_TYPE_CONFIG, path));
    for (const char* folder : {"root/vendor/etc/", "root/odm/etc/", "root/data/vendor/etc/"}) {
        root.Write(std::string(folder) + "x.conf", "");
        EXPECT_EQ(path, ko_get_one_cfg_file("x.conf", CUST_TYPE_CONFIG, path));
        EXPECT_EQ(std::string(folder) + "x.conf", path);
    }
    EXPECT_EQ(nullptr, ko_get_one_cfg_file("x.conf", CUST_TYPE_CONFIG + 1, path));
    EXPECT_EQ(nullptr, ko_get_one_cfg_file(std::string(5000, 'x').c_str(), CUST_TYPE_CONFIG, path));
}

TEST(SecurecTest, NothingIsWrittenPastTheCapacity) {
    char text[4] = "xyz";
    EXPECT_NE(0, strcpy_s(text, 4, "1234"));
    EXPECT_STREQ("", text);
    EXPECT_EQ(0, strncpy_s(text, 4, "12345", 3));
    EXPECT_NE(0, memcpy_s(text, 4, "12345", 5));
    EXPECT_STREQ("123", text);
    EXPECT_EQ(-1, sprintf_s(text, 4, "%d", 1234));
    EXPECT_EQ(-1, snprintf_s(text, 4, 2, "%d", 123));
    EXPECT_EQ(2, snprintf_s(text, 4, 2, "%d", 12));
}
