#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>

#include "console/ko_cmd_debug.h"
#include "format/argument_text.h"
#include "format/format_letters.h"

namespace {

// Takes one argument; clears `valid` when it is missing or cannot be read.
template <typename Value>
bool TakeArgument(std::istringstream& args, Value& value, KO_BOOL& valid) {
    const bool taken = TakeValue(args, value);
    valid = taken ? valid : 0;
    return taken;
}

// Takes one argument and appends it with the parcel's `write`. An argument that cannot be read is
// no failure of the write: 0, with `valid` cleared. -1 when the write failed.
template <typename Value>
int EncodeArgument(std::istringstream& args, KO_BOOL& valid, android::Parcel& request,
                   android::status_t (android::Parcel::*write)(Value)) {
    Value value{};
    if (!TakeArgument(args, value, valid)) {
        return 0;
    }
    return (request.*write)(value) == 0 ? 0 : -1;
}

// A whole word as a 32-bit integer. The word is the argument whatever it holds: one without a
// number gives 0, and one beyond 32 bits the nearest limit.
std::int32_t WordToInt32(const std::string& word) {
    std::istringstream stream(word);
    SetInt32Base(stream, word);
    std::int32_t value = 0;
    stream >> value;
    return value;
}

}  // namespace

int KoCmdDebug::ParseCmd(const char* cmd, android::Parcel& request, std::istringstream& args) {
    KO_BOOL valid = 1;
    if (m_pFileParse == nullptr) {
        return -1;
    }
    const std::int32_t module = m_pFileParse->GetModInstruct(m_strCurMod);
    request.writeInt32(m_pFileParse->GetCmdInstruct(module, cmd));
    const int result = ParseCmdImp(m_pFileParse->GetCmdParaFmt(module, cmd), valid, request, args);
    if (result != 0) {
        return result;
    }
    if (valid == 0) {
        std::printf("parse para err. %s help info: \n", cmd);
        std::printf("\t%s\n", m_pFileParse->GetCmdDescrip(module, cmd).c_str());
        return -1;
    }
    return 0;
}

int KoCmdDebug::ParseCmdImp(std::string format, KO_BOOL& valid, android::Parcel& request,
                            std::istringstream& args) {
    for (const char letter : format) {
        if (valid == 0) {
            return 0;
        }
        int result = 0;
        switch (letter) {
            case 'd':
            case 'D':
                result = ReportFailedCall(ParseIntegerCmd(letter == 'D', valid, args, request));
                break;
            case 'f':
            case 'F':
            case 's':
            case 'S':
                result = ParseCmdSub(letter, valid, args, request);
                break;
            default:
                std::puts("para format err.");
                return -1;
        }
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

int KoCmdDebug::ParseCmdSub(char letter, KO_BOOL& valid, std::istringstream& args,
                            android::Parcel& request) {
    switch (letter) {
        case 'f':
            return ReportFailedCall(
                EncodeArgument(args, valid, request, &android::Parcel::writeFloat));
        case 'F':
            return ReportFailedCall(
                EncodeArgument(args, valid, request, &android::Parcel::writeDouble));
        case 's':
        case 'S':
            return ReportFailedCall(ParseStringCmd(letter == 'S', valid, args, request));
        default:
            return 0;
    }
}

int KoCmdDebug::ParseIntegerCmd(KO_BOOL wide, KO_BOOL& valid, std::istringstream& args,
                                android::Parcel& request) {
    if (wide != 0) {
        return EncodeArgument(args, valid, request, &android::Parcel::writeInt64);
    }
    std::string word;
    if (!TakeArgument(args, word, valid)) {
        return 0;
    }
    return request.writeInt32(WordToInt32(word)) == 0 ? 0 : -1;
}

int KoCmdDebug::ParseStringCmd(KO_BOOL wide, KO_BOOL& valid, std::istringstream& args,
                               android::Parcel& request) {
    if (wide != 0) {
        std::puts(kNoWideString);
        return 0;
    }
    std::string word;
    if (!TakeArgument(args, word, valid)) {
        return 0;
    }
    return request.writeString16(android::String16(word.c_str())) == 0 ? 0 : -1;
}

int KoCmdDebug::ReportFailedCall(int result) {
    if (result != 0) {
        std::puts("call failed");
    }
    return result;
}
