#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/cmds_by_number.h"

// Plays the television: answers every command of a catalogue with values of the right types. A
// reply takes its values from the request's arguments where the types agree, so that what was typed
// comes back, and makes up the rest.
class TvService {
public:
    struct Options {
        std::int32_t status = 0;   // sent instead of any answer when it is not 0
        unsigned int records = 1;  // repetitions of the print format in a reply
    };

    // What the service answers when it cannot serve a request.
    static constexpr std::int32_t kUnknownInstruction = -1;
    static constexpr std::int32_t kBadRequest = -2;
    static constexpr std::int32_t kOldRequest = -3;

    using Bytes = std::vector<std::uint8_t>;  // of a parcel

    struct Answer {
        Bytes reply;
        std::string summary;  // the exchange in one line, for people
    };

    // Borrows the catalogue, which must outlive the service.
    TvService(const KoFileParse& catalogue, Options options);

    std::size_t CommandCount() const { return m_cmds.Count(); }

    Answer Handle(const Bytes& request) const;

    // The answer to a request that was in the page before the service: perhaps it was carried out
    // then.
    static Answer RefuseOld(const Bytes& request);

private:
    CmdsByNumber m_cmds;
    Options m_options;
};
