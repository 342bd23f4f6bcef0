#include <nlohmann/json.hpp>

#include "printer/printer.h"
#include "tests/fuzz/fuzz_input.h"
#include "tools/call/reply.h"

// Parts: print format, tags as in a catalogue, values after the status. The console prints whatever
// comes; what the tool takes for records is JSON too, an object with a member for each value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 3);
    KoFileParse::KoCmdInfo cmd;
    cmd.m_strPrintFmt = parts[0].c_str();
    cmd.m_printTags = KoFileParse::GetPrintTags("=" + parts[1]);
    android::Parcel values;
    values.setData(reinterpret_cast<const std::uint8_t*>(parts[2].data()), parts[2].size());
    Printer printer(values);
    printer.Fmt(cmd.m_strPrintFmt.c_str(), cmd.m_printTags);
    printer.Flush();

    // The tool does not send a command with an unknown letter.
    if (cmd.m_strPrintFmt.find_first_not_of("dDfFsS") != std::string::npos) {
        return 0;
    }
    const std::string bytes = std::string(sizeof(std::int32_t), '\0') + parts[2];
    Reply reply = {{bytes.begin(), bytes.end()}, {}};
    for (const bool terminal : {false, true}) {
        PrintLabelled(cmd, reply, terminal);
    }
    if (ReadReply(cmd, reply)) {
        return 0;
    }
    const Json array = RecordsJson(cmd, reply.records, JsonInt64::kString);
    for (std::size_t i = 0; i < reply.records.size(); ++i) {
        Require(array[i].size() == reply.records[i].size(), "a name of its own for each value");
    }
    JsonText(array);  // throws at what it cannot print
    return 0;
}
