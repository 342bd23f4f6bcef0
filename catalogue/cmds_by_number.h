#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/parcel_fields.h"

// The commands of a catalogue by their own instruction numbers, to tell which one a request is.
class CmdsByNumber {
public:
    // Each borrows the commands, which must outlive this.
    explicit CmdsByNumber(const KoFileParse& catalogue);
    explicit CmdsByNumber(const std::vector<const KoFileParse::KoCmdInfo*>& cmds);

    struct Request {
        std::int32_t instruct = 0;                    // 0 when the request is too short for one
        bool known = false;                           // a command has the number
        const KoFileParse::KoCmdInfo* cmd = nullptr;  // whose para format is the request's, if any
        std::vector<ParcelField> arguments;           // of `cmd`
    };
    Request Decode(const std::vector<std::uint8_t>& request) const;

    std::size_t Count() const { return m_cmds.size(); }

private:
    std::multimap<std::int32_t, const KoFileParse::KoCmdInfo*> m_cmds;
};
