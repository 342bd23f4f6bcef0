#include <cstring>

#include "console/ko_cmd_debug.h"
#include "format/parcel_fields.h"
#include "tests/fuzz/fuzz_input.h"

// Parts: para format, argument text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 2);
    std::istringstream args(parts[1] + " ");
    android::Parcel request;
    KO_BOOL valid = 1;
    if (KoCmdDebug::ParseCmdImp(parts[0], valid, request, args) != 0 || valid == 0) {
        return 0;
    }
    android::Parcel sent;
    sent.setData(request.data(), request.dataSize());
    const auto fields = ReadFields(sent, parts[0]);
    Require(fields.has_value() && sent.dataAvail() == 0, "what encodes decodes");
    android::Parcel again;
    for (const ParcelField& field : *fields) {
        WriteField(again, field.value);
    }
    Require(again.dataSize() == request.dataSize() &&
                (again.dataSize() == 0 ||
                 std::memcmp(again.data(), request.data(), again.dataSize()) == 0),
            "the decoded values encode to the same bytes");
    return 0;
}
