#include "format/format_letters.h"
#include "format/parcel_fields.h"
#include "format/printable.h"
#include "page/share_page.h"
#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

std::string ValueText(const ParcelField& field) {
    const std::string text = FieldText(field.value);
    return field.letter == 's' ? "\"" + Printable(text) + "\"" : text;
}

}  // namespace

int RunEncode(const CommandLine& line) {
    PreparedRequest prepared;
    if (const auto failure = Prepare(line, prepared)) {
        return Complain(*failure);
    }
    android::Parcel sent;
    sent.setData(prepared.bytes.data(), prepared.bytes.dataSize());
    const auto fields = ReadFields(sent, "d" + prepared.cmd->m_strParaFmt);
    if (!fields) {
        Complain("the request does not read back");
        return kExitNotSent;
    }
    std::vector<std::vector<std::string>> rows = {{"offset", "bytes", "type", "value"}};
    for (const ParcelField& field : *fields) {
        rows.push_back({std::to_string(field.offset),
                        HexBytes(sent.data() + field.offset, field.size),
                        FindFormatLetter(field.letter)->typeName, ValueText(field)});
    }
    rows[1].back() = Hex(prepared.cmd->m_instruct) + " instruction";
    const SharePageHeader header = {
        kRequestPosted, {}, static_cast<std::uint32_t>(sent.dataSize())};
    rows.push_back(
        {"header", HexBytes(reinterpret_cast<const std::uint8_t*>(&header), sizeof(header))});
    PrintTable(rows, "");
    return kExitDone;
}
