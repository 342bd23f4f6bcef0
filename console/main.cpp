#include <cstdio>
#include <ios>
#include <stdexcept>

#include "console/ko_cmd_debug.h"
#include "platform/standard_streams.h"

// Ends with status 0 whatever happened: the messages tell the engineer, and no script depends on
// the status.
int main() {
    OpenClosedStreams();
    try {
        KoCmdDebug::GetInstance().LoadConfig();
        KoCmdDebug& console = KoCmdDebug::GetInstance();
        console.SetRelease(Release);
        console.Exec();
    } catch (const std::length_error& e) {
        std::printf("lenth of para is too loog ,e = %s", e.what());
    } catch (const std::ios_base::failure& e) {
        std::printf("catch ios_base failure ,e = %s", e.what());
    }
    return 0;
}
