#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/text.h"

int RunCall(const CommandLine& line) {
    PreparedRequest prepared;
    if (!Prepare(line, prepared)) {
        return kExitNotSent;
    }
    Reply reply;
    if (const auto failure = Send(prepared, {line.timeout, line.force}, reply)) {
        Complain(failure->reason);
        return failure->status;
    }
    if (!line.json) {
        PrintLabelled(*prepared.cmd, reply, OutputIsTerminal());
        return kExitDone;
    }
    for (const Json& record : RecordsJson(*prepared.cmd, reply.records, *line.json)) {
        std::fputs(JsonLine(record).c_str(), stdout);
    }
    return kExitDone;
}
