#include "tools/call/reply.h"

#include <nlohmann/json.hpp>
#include <set>

#include "format/format_letters.h"
#include "format/printable.h"
#include "format/utf8.h"
#include "printer/printer.h"
#include "tools/json.h"
#include "tools/text.h"

namespace {

constexpr char kZero[] = "\\u0000";

FieldValue ShownValue(const FieldValue& value, bool terminal) {
    if (!std::holds_alternative<android::String16>(value)) {
        return value;
    }
    const std::string text = ShownText(FieldText(value), terminal);
    return android::String16(text.data(), text.size());
}

// Copies the values that the printer finds, up to the first that is cut. It looks at no letter
// without a tag, so they may be others than those of the whole print format.
void CopyShown(const android::Parcel& reply, const std::string& letters, bool terminal,
               android::Parcel& shown) {
    for (std::size_t left = 0; left != reply.dataAvail();) {
        left = reply.dataAvail();
        for (const char letter : letters) {
            const auto fields = ReadFields(reply, std::string(1, letter));
            if (!fields) {
                return;
            }
            for (const ParcelField& field : *fields) {
                WriteField(shown, ShownValue(field.value, terminal));
            }
        }
    }
}

}  // namespace

std::vector<std::string> ValueNames(const KoFileParse::KoCmdInfo& cmd) {
    std::vector<std::string> names;
    std::set<std::string> used;
    auto tag = cmd.m_printTags.begin();
    for (std::size_t i = 0; i < cmd.m_strPrintFmt.size(); ++i) {
        const std::string label = tag != cmd.m_printTags.end() ? ValidUtf8(*tag++) : std::string();
        const std::string base = label.empty() ? "value" + std::to_string(i + 1) : label;
        if (IsWithoutValue(cmd.m_strPrintFmt[i])) {
            continue;
        }
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

std::string ValueText(const ParcelField& field) {
    const std::string text = FieldText(field.value);
    return field.letter == 's' ? "\"" + Printable(text) + "\"" : text;
}

std::vector<std::string> RecordTexts(const ReplyRecord& record) {
    std::vector<std::string> texts;
    for (const ParcelField& field : record) {
        texts.push_back(ShownText(FieldText(field.value), false));
    }
    return texts;
}

bool ReadRecords(const android::Parcel& reply, const std::string& format,
                 std::vector<ReplyRecord>& records) {
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

void PrintLabelled(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply, bool terminal) {
    Array<std::string> tags;
    for (const std::string& tag : cmd.m_printTags) {
        tags.push_back(ShownText(tag, terminal));
    }
    const std::string letters = cmd.m_strPrintFmt.substr(0, tags.size());
    android::Parcel shown;
    CopyShown(reply, letters, terminal, shown);
    android::Parcel values;
    values.setData(shown.data(), shown.dataSize());
    Printer printer(values);
    printer.Fmt(letters.c_str(), tags);
    printer.Flush();
}

Outcome ReadReply(const KoFileParse::KoCmdInfo& cmd, const android::Parcel& reply,
                  std::vector<ReplyRecord>& records) {
    const auto bytes = [&] { return HexBytes(reply.data(), reply.dataSize()); };
    if (reply.dataAvail() < sizeof(std::int32_t)) {
        return {kExitPage, "the reply is too short for a status: " + bytes()};
    }
    const std::int32_t status = reply.readInt32();
    if (status != 0) {
        return {kExitRefused,
                "the service refused: status " + std::to_string(status) + " (" + Hex(status) + ")"};
    }
    android::Parcel values;
    values.setData(reply.data(), reply.dataSize());
    values.readInt32();
    if (!ReadRecords(values, cmd.m_strPrintFmt, records)) {
        records.clear();
        return {kExitPage, "the reply is no whole number of records of the print format " +
                               Quoted(cmd.m_strPrintFmt) + ": " + bytes()};
    }
    return {};
}
