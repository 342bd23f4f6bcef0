#include <unordered_map>
#include <utility>
#include <vector>

#include "catalogue/block_reader.h"
#include "catalogue/ko_file_parse.h"

namespace {

using ModuleRecord = KoFileParse::KoModuleInfo;
using CmdRecord = KoFileParse::KoCmdInfo;

class ModuleFiler : public BlockListener {
public:
    explicit ModuleFiler(KoFileParse& catalogue) : m_catalogue(catalogue) {}

    ModuleRecord& Current() { return m_module; }
    void End() {
        m_catalogue.StoreModule(std::move(m_module));
        m_module = ModuleRecord();
    }

private:
    KoFileParse& m_catalogue;
    ModuleRecord m_module;
};

// Keeps the commands until the file has been read and then files them a table at a time, each
// table's in the order of the file: where the file changes its module with every block, the
// processor's cache holds what a table's filing needs, and not what all of them need.
class CmdFiler : public BlockListener {
public:
    explicit CmdFiler(KoFileParse& catalogue) : m_catalogue(catalogue) {}

    CmdRecord& Current() { return m_cmd.mapped(); }
    void End() {
        if (m_last == nullptr || m_last->first != Current().m_strBelongMod) {
            m_last = &Know(Current().m_strBelongMod);
        }
        if (m_last->second == nullptr) {
            Current().Clear();
            return;
        }
        m_last->second->cmds.push_back(std::move(m_cmd));
        m_cmd = KoFileParse::NewCmd();
    }
    void FileAll() {
        for (auto& [table, gathered] : m_gathered) {
            for (KoFileParse::CmdNode& cmd : gathered.cmds) {
                KoFileParse::StoreCmd(gathered.place, std::move(cmd));
            }
        }
    }

private:
    struct Gathered {
        KoFileParse::CmdPlace place;
        std::vector<KoFileParse::CmdNode> cmds;
    };

    // By the module's name; null for one whose commands are dropped.
    using KnownModules = std::unordered_map<std::string, Gathered*>;

    KnownModules::value_type& Know(const std::string& module) {
        const auto [known, isNew] = m_known.try_emplace(module);
        if (!isNew) {
            return *known;
        }
        const KoFileParse::CmdPlace place = m_catalogue.PlaceFor(module);
        if (place.table != nullptr) {
            known->second = &m_gathered[place.table];
            known->second->place = place;
        }
        return *known;
    }

    KoFileParse& m_catalogue;
    KoFileParse::CmdNode m_cmd = KoFileParse::NewCmd();
    // By the table: modules of one number fill one.
    std::unordered_map<const KoFileParse::CmdTable*, Gathered> m_gathered;
    KnownModules m_known;
    KnownModules::value_type* m_last = nullptr;  // the module of the last command
};

}  // namespace

int KoFileParse::ParseModulePtr(KoFile* reader) {
    ModuleFiler filer(*this);
    return ReadBlocks<KoModuleInfo>(reader, stdout, filer);
}

int KoFileParse::ParseCmdPtr(KoFile* reader) {
    CmdFiler filer(*this);
    const int result = ReadBlocks<KoCmdInfo>(reader, stdout, filer);
    filer.FileAll();
    return result;
}

KoFileParse::StoredModule KoFileParse::StoreModule(KoModuleInfo&& module) {
    // Of two modules with one name the first stays, and so does its number.
    const auto [stored, isNew] = m_modInfos.try_emplace(module.m_strName, std::move(module));
    m_cmdInfos.try_emplace(static_cast<unsigned int>(stored->second.m_instruct));
    return {isNew ? Fate::kStored : Fate::kTaken, &stored->second};
}

KoFileParse::CmdNode KoFileParse::NewCmd() {
    CmdTable table;
    return table.extract(table.try_emplace(std::string()).first);
}

KoFileParse::CmdPlace KoFileParse::PlaceFor(const std::string& module) {
    const KoModuleInfo* found = FindModule(module);
    if (found == nullptr) {
        return {Fate::kNoModule, nullptr, nullptr};
    }
    if (found->m_instruct == -1) {
        return {Fate::kNoNumber, found, nullptr};
    }
    return {Fate::kStored, found, &m_cmdInfos[static_cast<unsigned int>(found->m_instruct)]};
}

KoFileParse::StoredCmd KoFileParse::StoreCmd(const CmdPlace& place, CmdNode&& cmd) {
    if (place.table == nullptr) {
        return {place.fate, nullptr};
    }
    // Of two commands with one word the first stays.
    cmd.key() = cmd.mapped().m_strCmd;
    const auto filed = place.table->insert(std::move(cmd));
    return {filed.inserted ? Fate::kStored : Fate::kTaken, &filed.position->second};
}
