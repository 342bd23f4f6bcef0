#include "catalogue/ko_file_parse.h"

#include <cstdio>
#include <cstring>

#include "catalogue/catalogue_file.h"
#include "platform/ko_cfg_file.h"

namespace {

// What tells the loading of the two files apart.
struct ConfigFile {
    const char* path;
    const char* pathMessage;  // takes the resolved path
    const char* emptyMessage;
    const char* failedMessage;  // takes the block reader's result
    int (KoFileParse::*readBlocks)(KoFile* reader);
};

constexpr ConfigFile kModulesFile = {
    "atv/dbg/mods.conf",          "ko_get_one_cfg_file. modsPath:%s\n",
    "mods.conf is empty!",        "ParseModulePtr call failed ,ret = %d\n",
    &KoFileParse::ParseModulePtr,
};

constexpr ConfigFile kCmdsFile = {
    "atv/dbg/cmds.conf",       "ko_get_one_cfg_file. cmdsPath:%s\n",
    "cmds.conf is empty!",     "ParseCmdPtr call failed ,ret = %d\n",
    &KoFileParse::ParseCmdPtr,
};

// A field of a found record, or the value that stands for an unknown key.
template <typename Record, typename Field>
Field FieldOr(const Record* record, Field Record::*field, Field missing) {
    return record != nullptr ? record->*field : missing;
}

int Load(KoFileParse& catalogue, const ConfigFile& file) {
    char path[kCfgPathSize] = {};
    const char* resolved = ko_get_one_cfg_file(file.path, CUST_TYPE_CONFIG, path);
    std::printf(file.pathMessage, resolved != nullptr ? resolved : "(null)");
    if (resolved == nullptr || strnlen(path, kCfgPathSize) >= kCfgPathSize) {
        std::printf("ko_get_one_cfg_file failed. filePath:%s\n", path);
        return -1;
    }
    const LoadResult result = LoadCatalogueFile(
        resolved, [&](KoFile* reader) { return (catalogue.*file.readBlocks)(reader); });
    switch (result.fault) {
        case LoadFault::kNone:
            return 0;
        case LoadFault::kUnreadable:
            std::puts("file path error or open file failure");
            break;
        case LoadFault::kEmpty:
            std::puts(file.emptyMessage);
            break;
        case LoadFault::kNoStepBack:
            std::printf(file.failedMessage, -1);
            break;
    }
    return -1;
}

}  // namespace

void KoFileParse::KoCmdInfo::Clear() {
    *this = KoCmdInfo();
}

void KoFileParse::Init() {
    if (ParseModules() != 0) {
        std::puts("ParseModules fail");
        m_ioExceptionStatus = 1;
    }
    if (ParseCmds() != 0) {
        std::puts("ParseCmds fail");
        m_ioExceptionStatus = 1;
    }
}

int KoFileParse::ParseModules() {
    return Load(*this, kModulesFile);
}

int KoFileParse::ParseCmds() {
    return Load(*this, kCmdsFile);
}

Array<std::string> KoFileParse::GetModNames() const {
    Array<std::string> names;
    for (const auto& [name, module] : m_modInfos) {
        names.push_back(name);
    }
    return names;
}

Array<std::string> KoFileParse::GetModCmds() const {
    Array<std::string> words;
    for (const auto& [name, module] : m_modInfos) {
        words.push_back(module.m_strCmd);
    }
    return words;
}

std::int32_t KoFileParse::GetModInstruct(const std::string& module) const {
    return FieldOr(FindModule(module), &KoModuleInfo::m_instruct, -1);
}

std::string KoFileParse::GetModToCmd(const std::string& module) const {
    return FieldOr(FindModule(module), &KoModuleInfo::m_strCmd, std::string());
}

std::string KoFileParse::GetModDescrip(const std::string& module) const {
    return FieldOr(FindModule(module), &KoModuleInfo::m_strDescrip, std::string());
}

Array<std::string> KoFileParse::GetModHoldCmds(int instruct) const {
    Array<std::string> words;
    const auto table = m_cmdInfos.find(static_cast<unsigned int>(instruct));
    if (table != m_cmdInfos.end()) {
        for (const auto& [word, cmd] : table->second) {
            words.push_back(word);
        }
    }
    return words;
}

std::string KoFileParse::GetCmdPrintFmt(int instruct, const std::string& cmd) const {
    return FieldOr(FindCmd(instruct, cmd), &KoCmdInfo::m_strPrintFmt, std::string());
}

Array<std::string> KoFileParse::GetCmdPrintTags(int instruct, const std::string& cmd) const {
    return FieldOr(FindCmd(instruct, cmd), &KoCmdInfo::m_printTags, Array<std::string>());
}

std::string KoFileParse::GetCmdParaFmt(int instruct, const std::string& cmd) const {
    return FieldOr(FindCmd(instruct, cmd), &KoCmdInfo::m_strParaFmt, std::string());
}

std::int32_t KoFileParse::GetCmdInstruct(int instruct, const std::string& cmd) const {
    return FieldOr(FindCmd(instruct, cmd), &KoCmdInfo::m_instruct, -1);
}

std::string KoFileParse::GetCmdDescrip(int instruct, const std::string& cmd) const {
    return FieldOr(FindCmd(instruct, cmd), &KoCmdInfo::m_strDescrip, std::string());
}

const KoFileParse::KoModuleInfo* KoFileParse::FindModule(const std::string& module) const {
    const auto found = m_modInfos.find(module);
    return found != m_modInfos.end() ? &found->second : nullptr;
}

const KoFileParse::KoCmdInfo* KoFileParse::FindCmd(int instruct, const std::string& cmd) const {
    const auto table = m_cmdInfos.find(static_cast<unsigned int>(instruct));
    if (table == m_cmdInfos.end()) {
        return nullptr;
    }
    const auto found = table->second.find(cmd);
    return found != table->second.end() ? &found->second : nullptr;
}
