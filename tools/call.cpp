#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/page_call.h"
#include "tools/prepared_call.h"
#include "tools/reply.h"

int RunCall(const CommandLine& line) {
    PreparedCall call;
    if (!Prepare(line, call)) {
        return kExitNotSent;
    }
    PageCall page;
    const int opened = page.Open();
    if (opened != kExitDone) {
        return opened;
    }
    std::vector<std::uint8_t> bytes;
    const int exchanged = page.Exchange(call.request, line.timeout, line.force, bytes);
    if (exchanged != kExitDone) {
        return exchanged;
    }
    android::Parcel reply;
    reply.setData(bytes.data(), bytes.size());
    return PrintReply(*call.cmd, reply, line.json);
}
