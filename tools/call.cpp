#include <cstdio>
#include <set>

#include "format/parcel_fields.h"
#include "printer/printer.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/json.h"
#include "tools/page_call.h"
#include "tools/prepared_call.h"
#include "tools/text.h"

namespace {

using Record = std::vector<ParcelField>;

// The reply's values, record by record. False when it holds anything else.
bool ReadRecords(const android::Parcel& reply, const std::string& format,
                 std::vector<Record>& records) {
    while (reply.dataAvail() != 0) {
        const std::size_t before = reply.dataAvail();
        auto record = ReadFields(reply, format);
        if (!record || reply.dataAvail() == before) {
            return false;
        }
        records.push_back(std::move(*record));
    }
    return true;
}

// One name for each value of a record: its label, or "value" and its position where it has none; a
// label that was used before gets a number behind it.
std::vector<std::string> ValueNames(const KoFileParse::KoCmdInfo& cmd) {
    std::vector<std::string> names;
    std::set<std::string> used;
    auto tag = cmd.m_printTags.begin();
    for (std::size_t i = 0; i < cmd.m_strPrintFmt.size(); ++i) {
        const std::string label = tag != cmd.m_printTags.end() ? *tag++ : std::string();
        const std::string base = label.empty() ? "value" + std::to_string(i + 1) : label;
        std::string name = base;
        for (int number = 2; cmd.m_strPrintFmt[i] != 'S' && !used.insert(name).second; ++number) {
            name = base + "_" + std::to_string(number);
        }
        if (cmd.m_strPrintFmt[i] != 'S') {
            names.push_back(name);
        }
    }
    return names;
}

void PrintJson(const KoFileParse::KoCmdInfo& cmd, const std::vector<Record>& records) {
    const std::vector<std::string> names = ValueNames(cmd);
    for (const Record& record : records) {
        JsonObject object;
        for (std::size_t i = 0; i < record.size(); ++i) {
            object.Add(names[i], JsonValue(record[i].value));
        }
        std::printf("%s\n", object.Text().c_str());
    }
}

void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply) {
    android::Parcel values;
    values.setData(reply.data(), reply.dataSize());
    values.readInt32();
    Printer printer(values);
    printer.Fmt(cmd.m_strPrintFmt.c_str(), cmd.m_printTags);
    printer.Flush();
}

int PrintReply(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply, bool json) {
    const std::string bytes = HexBytes(reply.data(), reply.dataSize());
    if (reply.dataAvail() < sizeof(std::int32_t)) {
        Complain("the reply is too short for a status: " + bytes);
        return kExitPage;
    }
    const std::int32_t status = reply.readInt32();
    if (status != 0) {
        Complain("the service refused: status " + std::to_string(status) + " (" + Hex(status) +
                 ")");
        return kExitRefused;
    }
    std::vector<Record> records;
    if (!ReadRecords(reply, cmd.m_strPrintFmt, records)) {
        Complain("the reply is no whole number of records of the print format " +
                 Quoted(cmd.m_strPrintFmt) + ": " + bytes);
        return kExitPage;
    }
    if (json) {
        PrintJson(cmd, records);
    } else {
        PrintLabelled(cmd, reply);
    }
    return kExitDone;
}

}  // namespace

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
