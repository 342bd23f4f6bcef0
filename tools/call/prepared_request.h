#pragma once

#include "catalogue/ko_file_parse.h"
#include "platform/parcel.h"
#include "tools/call/exchange.h"
#include "tools/call/reply.h"
#include "tools/command_line.h"

// What "encode" shows and "call" sends.
struct PreparedRequest {
    KoFileParse catalogue;
    const KoFileParse::KoCmdInfo* cmd = nullptr;  // in the catalogue
    android::Parcel bytes;
};

// Adds the command that the first two words name, or all of the module if there is one word; the
// module by its word or its name. Returns nullopt or kExitNotSent.
std::optional<Failure> FindCommands(const KoFileParse& catalogue,
                                    const std::vector<std::string>& words,
                                    std::vector<const KoFileParse::KoCmdInfo*>& cmds);

// Finds the command that the first two words name, the module by its word or its name,
// checks the other words as its arguments and encodes them with the console's encoder. Returns
// nullopt or kExitNotSent.
std::optional<Failure> Prepare(const CommandLine& line, PreparedRequest& prepared);

// Sends it and reads the reply, as RunExchange and ReadReply do.
std::optional<Failure> Send(const PreparedRequest& prepared, const ExchangeLimits& limits,
                            Reply& reply);
