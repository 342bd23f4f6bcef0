#include "tools/call/reply.h"

#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "format/format_letters.h"
#include "format/printable.h"
#include "format/utf8.h"
#include "printer/printer.h"
#include "tools/format_names.h"
#include "tools/text.h"

namespace {

constexpr char kZero[] = "\\u0000";

// Reads records up to the end of the reply. Returns why one is not whole; empty if all are.
std::string ReadRecords(const android::Parcel& reply, const std::string& format,
                        std::vector<ReplyRecord>& records) {
    while (reply.dataAvail() != 0) {
        ReplyRecord& record = records.emplace_back();
        for (std::size_t i = 0; i < format.size(); ++i) {
            auto fields = ReadFields(reply, {format[i]});
            if (!fields) {
                return FormatText(
                    "value {} of record {} ({}) at byte {}: {}",
                    {std::to_string(i + 1), std::to_string(records.size()), TypeNames(format)[i],
                     std::to_string(reply.dataSize() - reply.dataAvail()),
                     FieldFault(reply, format[i])});
            }
            std::move(fields->begin(), fields->end(), std::back_inserter(record));
        }
        if (record.empty()) {
            return FormatText("{} bytes after the status", {std::to_string(reply.dataAvail())});
        }
    }
    return "";
}

void CopyShown(const FieldValue& value, bool terminal, android::Parcel& shown) {
    if (std::holds_alternative<android::String16>(value)) {
        const std::string text = ShownText(FieldText(value), terminal);
        shown.writeString16(android::String16(text.data(), text.size()));
    } else {
        WriteField(shown, value);
    }
}

// Copies the values that the printer finds, up to the first truncated one. It looks at no letter
// without a label, so they may be others than those of the whole print format.
void CopyAllShown(const android::Parcel& reply, const std::string& letters, bool terminal,
                  android::Parcel& shown) {
    for (std::size_t left = 0; left != reply.dataAvail();) {
        left = reply.dataAvail();
        for (const char letter : letters) {
            const auto fields = ReadFields(reply, {letter});
            if (!fields) {
                return;
            }
            for (const ParcelField& field : *fields) {
                CopyShown(field.value, terminal, shown);
            }
        }
    }
}

}  // namespace

std::optional<Failure> ReadReply(const KoFileParse::KoCmdInfo& cmd, Reply& reply) {
    android::Parcel parcel;
    parcel.setData(reply.bytes.data(), reply.bytes.size());
    const auto bytes = [&reply] { return HexBytes(reply.bytes.data(), reply.bytes.size()); };
    if (parcel.dataAvail() < sizeof(std::int32_t)) {
        return Failure{kExitPage, "the reply is too short for a status: " + bytes()};
    }
    const std::int32_t status = parcel.readInt32();
    if (status != 0) {
        return Failure{kExitRefused,
                       FormatText("the service refused: status {} ({})",
                                  {std::to_string(status), Hex(status)}),
                       status};
    }
    const std::string fault = ReadRecords(parcel, cmd.m_strPrintFmt, reply.records);
    if (fault.empty()) {
        return std::nullopt;
    }
    reply.records.clear();
    return Failure{
        kExitPage,
        FormatText("the reply is not whole records of the print format {}: {}; bytes: {}",
                   {Quoted(cmd.m_strPrintFmt), fault, bytes()})};
}

std::vector<std::string> ValueNames(const KoFileParse::KoCmdInfo& cmd) {
    const std::vector<std::string> labels = Labels(cmd);
    std::vector<std::string> names;
    std::set<std::string> used;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (IsWithoutValue(cmd.m_strPrintFmt[i])) {
            continue;
        }
        const std::string base =
            labels[i].empty() ? "value" + std::to_string(i + 1) : ValidUtf8(labels[i]);
        std::string name = base;
        for (int number = 2; !used.insert(name).second; ++number) {
            name = base + "_" + std::to_string(number);
        }
        names.push_back(name);
    }
    return names;
}

std::string ShownText(const std::string& text, bool terminal) {
    std::string shown;
    for (const char byte : text) {
        shown += byte == '\0' ? kZero : std::string(1, byte);
    }
    return terminal ? Printable(shown) : shown;
}

Json RecordsJson(const KoFileParse::KoCmdInfo& cmd, const std::vector<ReplyRecord>& records,
                 JsonInt64 int64) {
    const std::vector<std::string> names = ValueNames(cmd);
    Json array = Json::array();
    for (const ReplyRecord& record : records) {
        Json object = Json::object();
        for (std::size_t i = 0; i < record.size(); ++i) {
            object[names[i]] = JsonValue(record[i].value, int64);
        }
        array.push_back(object);
    }
    return array;
}

void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const Reply& reply, bool terminal) {
    Array<std::string> labels;
    for (const std::string& label : cmd.m_printTags) {
        labels.push_back(ShownText(label, terminal));
    }
    const std::string letters = cmd.m_strPrintFmt.substr(0, labels.size());
    android::Parcel parcel;
    parcel.setData(reply.bytes.data(), reply.bytes.size());
    parcel.readInt32();
    android::Parcel shown;
    CopyAllShown(parcel, letters, terminal, shown);
    android::Parcel values;
    values.setData(shown.data(), shown.dataSize());
    Printer printer(values);
    printer.Fmt(letters.c_str(), labels);
    printer.Flush();
}
