#pragma once

#include <optional>
#include <string>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/parcel_fields.h"
#include "platform/parcel.h"
#include "tools/json.h"

// A reply as "call" shows it. All of it may be hostile: the bytes, and the texts of the catalogue.

using ReplyRecord = std::vector<ParcelField>;

// Appends the values from the reply's position on, record by record. False when it holds anything
// else than whole records of the format.
bool ReadRecords(const android::Parcel& reply, const std::string& format,
                 std::vector<ReplyRecord>& records);

// One JSON object a record, each member under a name of its own: the value's label where it has
// one. For records of the command's whole print format.
std::vector<std::string> RecordsJson(const KoFileParse::KoCmdInfo& cmd,
                                     const std::vector<ReplyRecord>& records, JsonInt64 int64);

// Prints the values from the reply's position on as the console does, with U+0000 in their texts
// and labels as "\u0000"; for a terminal with every other control character as an escape too.
void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply, bool terminal);

// Prints a whole reply to standard output, as JSON with `json`, or why it cannot be shown to
// standard error; returns the ExitStatus. Moves the reply's position.
int PrintReply(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply,
               std::optional<JsonInt64> json);
