#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/text.h"

namespace {

Json FailureJson(const Failure& failure) {
    Json json = {{"exit_status", static_cast<int>(failure.status)}, {"reason", failure.reason}};
    if (failure.refusal) {
        json["status"] = *failure.refusal;
    }
    return json;
}

}  // namespace

int RunCall(const CommandLine& line) {
    PreparedRequest prepared;
    Reply reply;
    auto failure = Prepare(line, prepared);
    if (!failure) {
        failure = Send(prepared, {line.timeout, line.force}, reply);
    }
    if (failure) {
        std::fputs(line.json ? JsonLine(FailureJson(*failure)).c_str() : "", stdout);
        return Complain(*failure);
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
