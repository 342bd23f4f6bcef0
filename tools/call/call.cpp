#include <nlohmann/json.hpp>

#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/json.h"
#include "tools/text.h"

int RunCall(const CommandLine& line) {
    PreparedCall call;
    if (!Prepare(line, call)) {
        return kExitNotSent;
    }
    android::Parcel reply;
    std::vector<ReplyRecord> records;
    const Outcome outcome = Send(call, {line.timeout, line.force, {}}, reply, records);
    if (outcome.status != kExitDone) {
        Complain(outcome.reason);
    } else if (line.json) {
        for (const Json& record : RecordsJson(*call.cmd, records, *line.json)) {
            PrintJsonLine(record);
        }
    } else {
        PrintLabelled(*call.cmd, reply, OutputIsTerminal());
    }
    return outcome.status;
}
