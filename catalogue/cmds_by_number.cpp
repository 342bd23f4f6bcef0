#include "catalogue/cmds_by_number.h"

#include <utility>

CmdsByNumber::CmdsByNumber(const KoFileParse& catalogue) {
    for (const auto& [module, table] : catalogue.AllCmds()) {
        for (const auto& [word, cmd] : table) {
            m_cmds.emplace(cmd.m_instruct, &cmd);
        }
    }
}

CmdsByNumber::CmdsByNumber(const std::vector<const KoFileParse::KoCmdInfo*>& cmds) {
    for (const KoFileParse::KoCmdInfo* cmd : cmds) {
        m_cmds.emplace(cmd->m_instruct, cmd);
    }
}

CmdsByNumber::Request CmdsByNumber::Decode(const std::vector<std::uint8_t>& request) const {
    Request decoded;
    android::Parcel parcel;
    parcel.setData(request.data(), request.size());
    decoded.instruct = parcel.readInt32();
    const auto [first, last] = m_cmds.equal_range(decoded.instruct);
    decoded.known = first != last;
    if (request.size() < sizeof(decoded.instruct)) {
        return decoded;
    }
    for (auto cmd = first; cmd != last; ++cmd) {
        android::Parcel rest;
        rest.setData(request.data() + sizeof(decoded.instruct),
                     request.size() - sizeof(decoded.instruct));
        auto fields = ReadFields(rest, cmd->second->m_strParaFmt);
        if (fields && rest.dataAvail() == 0) {
            decoded.cmd = cmd->second;
            decoded.arguments = std::move(*fields);
            return decoded;
        }
    }
    return decoded;
}
