#pragma once

#include <string>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/parcel_fields.h"
#include "platform/parcel.h"
#include "tools/json.h"
#include "tools/outcome.h"

// A reply as "call" shows it. All of it may be hostile: the bytes, and the texts of the catalogue.

using ReplyRecord = std::vector<ParcelField>;

// One name for each value of a record: its label, or "value" and its position where it has none; a
// label that was used before gets a number behind it, also one that only the replacement of bad
// bytes makes equal.
std::vector<std::string> ValueNames(const KoFileParse::KoCmdInfo& cmd);

// A text or label with U+0000 as "\u0000"; for a terminal every other control character as an
// escape too.
std::string ShownText(const std::string& text, bool terminal);

// A value as people read it, a text printable and in quotes.
std::string ValueText(const ParcelField& field);

// The values of a record as texts, as ShownText has them for a pipe.
std::vector<std::string> RecordTexts(const ReplyRecord& record);

// Appends the values from the reply's position on, record by record. False when it holds anything
// else than whole records of the format.
bool ReadRecords(const android::Parcel& reply, const std::string& format,
                 std::vector<ReplyRecord>& records);

// An array of an object for each record, each member under a name of its own: the value's label if
// it has one. For records of the command's whole print format.
Json RecordsJson(const KoFileParse::KoCmdInfo& cmd, const std::vector<ReplyRecord>& records,
                 JsonInt64 int64);

// Prints the values from the reply's position on as the console does, texts and labels as ShownText
// has them.
void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply, bool terminal);

// Reads a whole reply: kExitDone with its records; kExitRefused, or kExitPage for one that cannot
// be read. Leaves the reply's position behind the status.
Outcome ReadReply(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply,
                  std::vector<ReplyRecord>& records);
