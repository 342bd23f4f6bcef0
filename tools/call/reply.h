#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/parcel_fields.h"
#include "tools/failure.h"
#include "tools/json.h"

// A reply as "call" shows it. All of it may be hostile: the bytes, and the texts of the catalogue.

using ReplyRecord = std::vector<ParcelField>;

struct Reply {
    std::vector<std::uint8_t> bytes;
    std::vector<ReplyRecord> records;
};

// Reads the records of the command's print format from the bytes. Returns nullopt; or, without
// records, kExitRefused, or kExitPage for a reply that is anything else than a status and whole
// records.
std::optional<Failure> ReadReply(const KoFileParse::KoCmdInfo& cmd, Reply& reply);

// One name for each value of a record: its label, or "value" and its position if it has none; a
// label that was used before gets a number after it, also one that only the replacement of bad
// bytes makes equal.
std::vector<std::string> ValueNames(const KoFileParse::KoCmdInfo& cmd);

// A text or label with U+0000 as "\u0000"; for a terminal every other control character as an
// escape too.
std::string ShownText(const std::string& text, bool terminal);

// An array with an object for each record, each member under a name of its own.
Json RecordsJson(const KoFileParse::KoCmdInfo& cmd, const std::vector<ReplyRecord>& records,
                 JsonInt64 int64);

// Prints the values after the status as the console does, texts and labels as ShownText has them.
void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const Reply& reply, bool terminal);
