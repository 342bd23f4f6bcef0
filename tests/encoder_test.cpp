#include <gtest/gtest.h>

#include "console/ko_cmd_debug.h"

// What the encoder makes of typed words stands in cases/console/arguments.case.

TEST(EncoderTest, AFailedWriteFailsTheCommandOnce) {
    for (const char* format : {"d", "D", "f", "F", "s"}) {
        android::Parcel request;
        while (request.writeInt64(0) == 0) {  // until the parcel is full
        }
        KO_BOOL valid = 1;
        std::istringstream args("1 ");
        testing::internal::CaptureStdout();
        EXPECT_EQ(-1, KoCmdDebug::ParseCmdImp(format, valid, request, args)) << format;
        EXPECT_EQ("call failed\n", testing::internal::GetCapturedStdout()) << format;
        EXPECT_EQ(1, valid);
    }
}
