#include <cstring>

#include "format/format_letters.h"
#include "format/parcel_fields.h"
#include "page/share_page.h"
#include "tools/call/prepared_request.h"
#include "tools/call/reply.h"
#include "tools/commands.h"
#include "tools/exit_status.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

std::string HeaderBytes(std::size_t length) {
    SharePage page = {};
    StoreHeader(page, kRequestPosted, length);
    const SharePageHeader header = LoadHeader(page);
    std::uint8_t bytes[kHeaderSize];
    std::memcpy(bytes, &header, sizeof(bytes));
    return HexBytes(bytes, sizeof(bytes));
}

}  // namespace

int RunEncode(const CommandLine& line) {
    PreparedCall call;
    if (!Prepare(line, call)) {
        return kExitNotSent;
    }
    android::Parcel sent;
    sent.setData(call.request.data(), call.request.dataSize());
    const auto fields = ReadFields(sent, "d" + call.cmd->m_strParaFmt);
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
    rows[1].back() = Hex(call.cmd->m_instruct) + " instruction";
    rows.push_back({"header", HeaderBytes(sent.dataSize())});
    PrintTable(rows, "");
    return kExitDone;
}
