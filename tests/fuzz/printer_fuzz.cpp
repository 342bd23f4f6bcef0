#include <algorithm>

#include "printer/printer.h"
#include "tests/fuzz/fuzz_input.h"

// Parts: print format, tags (split at commas), reply behind the status.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 3);
    Array<std::string> tags;
    for (std::size_t start = 0; start <= parts[1].size();) {
        const std::size_t comma = std::min(parts[1].find(',', start), parts[1].size());
        tags.push_back(parts[1].substr(start, comma - start));
        start = comma + 1;
    }
    android::Parcel reply;
    reply.setData(reinterpret_cast<const std::uint8_t*>(parts[2].data()), parts[2].size());
    Printer printer(reply);
    const int result = printer.Fmt(parts[0].c_str(), tags);
    Require(result == 0 || result == -1, "a known result");
    // Only a remainder shorter than the format's first value may be left unread.
    Require(result == -1 || reply.dataAvail() < 8 || parts[0].find_first_of("dDfFs") >= tags.size(),
            "a reply is read to its end");
    printer.Flush();
    return 0;
}
