#include <nlohmann/json.hpp>

#include "tests/fuzz/fuzz_input.h"
#include "tools/call/reply.h"

namespace {

KoFileParse::KoCmdInfo Command(const std::string& format, const std::string& tags) {
    KoFileParse::KoCmdInfo cmd;
    // An unknown letter is refused before anything is sent.
    for (const char letter : format) {
        cmd.m_strPrintFmt += std::string_view("dDfFsS").find(letter) != std::string_view::npos
                                 ? std::string(1, letter)
                                 : "";
    }
    for (std::size_t start = 0; start < tags.size();) {
        const std::size_t comma = std::min(tags.find(',', start), tags.size());
        cmd.m_printTags.push_back(tags.substr(start, comma - start));
        start = comma + 1;
    }
    return cmd;
}

}  // namespace

// Parts: print format, tags (split at commas), values. Whatever is taken for records is printed as
// JSON, an object with as many members as there are values.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 3);
    const auto cmd = Command(parts[0], parts[1]);
    const std::string bytes = std::string(sizeof(std::int32_t), '\0') + parts[2];  // after a status
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
