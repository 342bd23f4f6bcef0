#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"
#include "request/parcel_fields.h"

namespace {

struct Encoded {
    int result;
    bool valid;
    std::string printed;
    android::Parcel request;
};

Encoded Encode(const std::string& format, const std::string& text) {
    Encoded encoded = {};
    KO_BOOL valid = 1;
    std::istringstream args(text + " ");
    testing::internal::CaptureStdout();
    encoded.result = KoCmdDebug::ParseCmdImp(format, valid, encoded.request, args);
    encoded.printed = testing::internal::GetCapturedStdout();
    encoded.valid = valid != 0;
    return encoded;
}

// The fields of the request, as text, joined by blanks.
std::string Fields(const android::Parcel& request, const std::string& format) {
    const auto fields = ReadFields(request, format);
    std::string text;
    for (const ParcelField& field : fields.value()) {
        text += (text.empty() ? "" : " ") + FieldText(field.value);
    }
    return request.dataAvail() == 0 ? text : "bytes left over";
}

}  // namespace

TEST(EncoderTest, WordsBecomeFieldsByTheirLetter) {
    struct {
        const char* format;
        const char* text;
        const char* fields;
    } const cases[] = {
        {"", "anything", ""},
        {"dd", " 3 0x10", "3 16"},
        {"dd", "1 2 3", "1 2"},
        {"d", "0X1f", "31"},
        {"d", "017", "17"},
        {"d", "abc", "0"},
        {"d", "12ab", "12"},
        {"d", "0x", "0"},
        {"d", "-0x10", "0"},
        {"d", "4294967295", "2147483647"},
        {"d", "-99999999999999999999", "-2147483648"},
        {"d", "0x80000000", "2147483647"},
        {"d", "0xFFFFFFFF", "2147483647"},
        {"D", "-9223372036854775808", "-9223372036854775808"},
        {"Ds", "12ab", "12 ab"},
        {"D", "12ab", "12"},
        {"Ds", "0x10", "0 x10"},
        {"f", "1.5", "1.5"},
        {"fF", "-2.5e3 0.1", "-2500 0.10000000000000001"},
        {"sd", "hello\t 3", "hello 3"},
        {"s", "\xC3\xA4\xFF", "\xC3\xA4\xEF\xBF\xBD"},
    };
    for (const auto& c : cases) {
        const Encoded encoded = Encode(c.format, c.text);
        EXPECT_EQ(0, encoded.result) << c.format << c.text;
        EXPECT_TRUE(encoded.valid) << c.format << c.text;
        EXPECT_EQ("", encoded.printed);
        EXPECT_EQ(c.fields, Fields(encoded.request, c.format)) << c.text;
    }
}

TEST(EncoderTest, WhatCannotBeEncodedSaysSo) {
    struct {
        const char* format;
        const char* text;
        int result;
        bool valid;
        const char* printed;
    } const cases[] = {
        {"d", "", 0, false, ""},
        {"dd", "1", 0, false, ""},
        {"D", "abc", 0, false, ""},
        {"D", "9223372036854775808", 0, false, ""},
        {"f", "x", 0, false, ""},
        {"F", "1e999", 0, false, ""},
        {"s", " ", 0, false, ""},
        {"dq", "", 0, false, ""},
        {"dq", "5", -1, true, "para format err.\n"},
        {" d", "5", -1, true, "para format err.\n"},
        {"Sd", "7", 0, true, "current is no support 'S' format\n"},
    };
    for (const auto& c : cases) {
        const Encoded encoded = Encode(c.format, c.text);
        EXPECT_EQ(c.result, encoded.result) << c.format << c.text;
        EXPECT_EQ(c.valid, encoded.valid) << c.format << c.text;
        EXPECT_EQ(c.printed, encoded.printed) << c.format;
    }
    EXPECT_EQ("7", Fields(Encode("Sd", "7").request, "Sd"));
}

TEST(EncoderTest, AFailedWriteFailsTheCommandOnce) {
    const std::vector<std::uint8_t> full(android::Parcel::kMaxSize);
    for (const char* format : {"d", "D", "f", "F", "s"}) {
        android::Parcel request;
        request.setData(full.data(), full.size());
        KO_BOOL valid = 1;
        std::istringstream args("1 ");
        testing::internal::CaptureStdout();
        EXPECT_EQ(-1, KoCmdDebug::ParseCmdImp(format, valid, request, args)) << format;
        EXPECT_EQ("call failed\n", testing::internal::GetCapturedStdout()) << format;
        EXPECT_EQ(1, valid);
    }
}
