#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "catalogue/catalogue_file.h"
#include "format/printable.h"
#include "platform/ko_file.h"
#include "platform/ko_securec.h"
#include "tests/support/test_root.h"
#include "tools/text.h"

namespace {

bool g_readFails = false;

}  // namespace

// Plays a disk that fails, in place of the C library's.
extern "C" ssize_t read(int file, void* bytes, std::size_t size) {
    if (g_readFails) {
        errno = EIO;
        return -1;
    }
    return syscall(SYS_read, file, bytes, size);
}

TEST(KoFileTest, RowsOfAnyLengthComeAsFarAsTheyAreKeptAndCanBeGivenBackOnce) {
    const TestRoot root;
    std::vector<std::string> rows;
    std::string text;
    for (std::size_t i = 0; i < 400; ++i) {
        // Lengths around those of the chunks that the file is read in, and short ones between.
        const std::size_t length = i % 7 == 0 ? i * 997 % 140'000 : i % 5;
        rows.emplace_back(length, static_cast<char>(i % 26 == 0 ? '\0' : 'a' + i % 26));
        rows.back() += i % 7 == 0 ? "=" : "";
        text += rows.back() + (i % 3 == 0 ? "\r\n" : "\n");
    }
    rows.emplace_back("last");
    KoFile file;
    file.Init(root.Write("rows", text + "last\r"), "r");
    EXPECT_EQ(0, file.GetIOExceptionStatus());
    EXPECT_FALSE(file.IsEmpty());
    EXPECT_NE(0, file.RollBack());
    for (const std::string& row : rows) {
        ASSERT_FALSE(file.IsEOF());
        const std::string kept = row.substr(0, KoFile::kLongestRow);
        ASSERT_EQ(kept, file.NextRow());
        ASSERT_EQ(row.size(), kept.size() + file.Rest().size);
        ASSERT_EQ(row.substr(kept.size()).find('='), file.Rest().equals);
        ASSERT_EQ(0, file.RollBack());
        ASSERT_NE(0, file.RollBack());
        ASSERT_EQ(kept, file.NextRow());
    }
    EXPECT_TRUE(file.IsEOF());
    EXPECT_EQ("", file.NextRow());
    EXPECT_EQ(rows.size(), file.RowNumber());
}

TEST(KoFileTest, ARowInWhichReadingFailsIsNoneAndTheFileNoCatalogue) {
    const TestRoot root;
    const auto read = [](KoFile* file) {
        g_readFails = true;
        EXPECT_EQ("", file->NextRow());
        g_readFails = false;
        EXPECT_TRUE(file->IsEOF());
        return 0;
    };
    const LoadResult result = LoadCatalogueFile(root.Write("rows", std::string(10'000, 'x')), read);
    EXPECT_EQ(LoadFault::kUnreadable, result.fault);
    EXPECT_EQ(EIO, result.error);
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

TEST(PrintableTest, WhatIsIllFormedIsReplacedAndWhatATerminalObeysEscaped) {
    const std::pair<std::string_view, const char*> cases[] = {
        {{"a\0\x1f\x7f~\xc2\x80\xc2\x9f\xc2\xa0", 11}, "a\\x00\\x1f\\x7f~\\x80\\x9f\xc2\xa0"},
        {"\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
         "\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf"},
        {"\x80z\xc1\xbf\xe0\x9f\xbf", "�z�����"},
        {"\xed\xa0\x80\xf0\x8f\xbf", "������"},
        {"\xf4\x90\x80\xf5\xe2\x82z\xf0\x9f\x98", "�����z�"},
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(shown, Printable(text));
    }
}

TEST(IsoTimeTest, MillisecondsHaveThreeDigits) {
    const std::chrono::system_clock::time_point time{std::chrono::milliseconds(7)};
    EXPECT_EQ(".007", IsoTime(time).substr(19, 4));
}
