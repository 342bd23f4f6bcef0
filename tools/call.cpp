#include "tools/commands.h"
#include "tools/json.h"
#include "tools/page_call.h"
#include "tools/prepared_call.h"
#include "tools/reply.h"
#include "tools/text.h"

int RunCall(const CommandLine& line) {
    PreparedCall call;
    if (!Prepare(line, call)) {
        return kExitNotSent;
    }
    android::Parcel reply;
    std::vector<ReplyRecord> records;
    Outcome outcome = CallService(call.request, {line.timeout, line.force, {}}, reply);
    if (outcome.status == kExitDone) {
        outcome = ReadReply(*call.cmd, reply, records);
    }
    if (outcome.status != kExitDone) {
        Complain(outcome.reason);
    } else if (line.json) {
        for (const std::string& record : RecordsJson(*call.cmd, records, *line.json)) {
            PrintJsonLine(record);
        }
    } else {
        PrintLabelled(*call.cmd, reply, OutputIsTerminal());
    }
    return outcome.status;
}
