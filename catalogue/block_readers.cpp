#include <utility>

#include "catalogue/block_reader.h"
#include "catalogue/ko_file_parse.h"

namespace {

class ModuleReader : public BlockListener {
public:
    explicit ModuleReader(KoFileParse& catalogue) : m_catalogue(catalogue) {}

    KoFileParse::KoModuleInfo& Current() { return m_module; }
    void End() {
        m_catalogue.StoreModule(std::move(m_module));
        m_module = KoFileParse::KoModuleInfo();
    }

private:
    KoFileParse& m_catalogue;
    KoFileParse::KoModuleInfo m_module;
};

class CmdReader : public BlockListener {
public:
    explicit CmdReader(KoFileParse& catalogue) : m_catalogue(catalogue) {}

    KoFileParse::KoCmdInfo& Current() { return m_cmd; }
    void End() {
        m_catalogue.StoreCmd(std::move(m_cmd));
        m_cmd.Clear();
    }

private:
    KoFileParse& m_catalogue;
    KoFileParse::KoCmdInfo m_cmd;
};

}  // namespace

int KoFileParse::ParseModulePtr(KoFile* reader) {
    ModuleReader modules(*this);
    return ReadBlocks<KoModuleInfo>(reader, stdout, modules);
}

int KoFileParse::ParseCmdPtr(KoFile* reader) {
    CmdReader cmds(*this);
    return ReadBlocks<KoCmdInfo>(reader, stdout, cmds);
}

KoFileParse::StoredModule KoFileParse::StoreModule(KoModuleInfo&& module) {
    // Of two modules with one name the first stays, and so does its number.
    const auto [stored, isNew] = m_modInfos.try_emplace(module.m_strName, std::move(module));
    m_cmdInfos.try_emplace(static_cast<unsigned int>(stored->second.m_instruct));
    return {isNew ? Fate::kStored : Fate::kTaken, &stored->second};
}

KoFileParse::StoredCmd KoFileParse::StoreCmd(KoCmdInfo&& cmd) {
    const KoModuleInfo* module = FindModule(cmd.m_strBelongMod);
    if (module == nullptr) {
        return {Fate::kNoModule, nullptr, nullptr};
    }
    if (module->m_instruct == -1) {
        return {Fate::kNoNumber, module, nullptr};
    }
    // Of two commands with one word the first stays.
    CmdTable& table = m_cmdInfos[static_cast<unsigned int>(module->m_instruct)];
    const auto [stored, isNew] = table.try_emplace(cmd.m_strCmd, std::move(cmd));
    return {isNew ? Fate::kStored : Fate::kTaken, module, &stored->second};
}
