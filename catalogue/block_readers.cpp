#include <cstdio>
#include <iterator>
#include <utility>

#include "catalogue/block_walk.h"
#include "catalogue/ko_file_parse.h"
#include "catalogue/row_grammar.h"

namespace {

// One key word of a file: its test, and the store of its value in the record.
template <typename Record>
struct KeyHandler {
    std::string_view word;
    bool (*test)(const std::string& row);
    void (*take)(Record& record, const std::string& row);
};

using ModuleRecord = KoFileParse::KoModuleInfo;
using CmdRecord = KoFileParse::KoCmdInfo;

constexpr KeyHandler<ModuleRecord> kModuleKeys[] = {
    {kCommandKey, KoFileParse::IsCommand,
     [](ModuleRecord& m, const std::string& row) { m.m_strCmd = KoFileParse::GetCommand(row); }},
    {kInstructionKey, KoFileParse::IsInstruction,
     [](ModuleRecord& m, const std::string& row) {
         m.m_instruct = KoFileParse::GetInstruction(row);
     }},
    {kDescriptionKey, KoFileParse::IsDescription,
     [](ModuleRecord& m, const std::string& row) {
         m.m_strDescrip = KoFileParse::GetDescription(row);
     }},
};

constexpr KeyHandler<CmdRecord> kCmdKeys[] = {
    {kCommandKey, KoFileParse::IsCommand,
     [](CmdRecord& c, const std::string& row) { c.m_strCmd = KoFileParse::GetCommand(row); }},
    {kBelongModKey, KoFileParse::IsBelongMod,
     [](CmdRecord& c, const std::string& row) {
         c.m_strBelongMod = KoFileParse::GetBelongMod(row);
     }},
    {kInstructionKey, KoFileParse::IsInstruction,
     [](CmdRecord& c, const std::string& row) { c.m_instruct = KoFileParse::GetInstruction(row); }},
    {kParaFormatKey, KoFileParse::IsParaFormat,
     [](CmdRecord& c, const std::string& row) {
         c.m_strParaFmt = KoFileParse::GetParaFormat(row);
     }},
    {kPrintFmtKey, KoFileParse::IsPrintFmt,
     [](CmdRecord& c, const std::string& row) { c.m_strPrintFmt = KoFileParse::GetPrintFmt(row); }},
    {kPrintTagsKey, KoFileParse::IsPrintTags,
     [](CmdRecord& c, const std::string& row) {
         c.m_printTags.m_list = KoFileParse::GetPrintTags(row).m_list;
     }},
    {kDescriptionKey, KoFileParse::IsDescription,
     [](CmdRecord& c, const std::string& row) {
         c.m_strDescrip = KoFileParse::GetDescription(row);
     }},
};

// True when the handlers stand in the order that row_grammar.h fixes for all readers of the file.
template <typename Handlers, typename Order>
constexpr bool FollowsOrder(const Handlers& handlers, const Order& order) {
    if (std::size(handlers) != std::size(order)) {
        return false;
    }
    for (std::size_t i = 0; i < std::size(order); ++i) {
        if (handlers[i].word != order[i]) {
            return false;
        }
    }
    return true;
}

static_assert(FollowsOrder(kModuleKeys, kModuleKeyOrder));
static_assert(FollowsOrder(kCmdKeys, kCmdKeyOrder));

void Reset(ModuleRecord& module) {
    module = ModuleRecord();
}

void Reset(CmdRecord& cmd) {
    cmd.Clear();
}

// Fills one record from the rows of a block and hands it to `store` when the block ends.
template <typename Record, typename Keys, typename Store>
class BlockCollector {
public:
    BlockCollector(const Keys& keys, Store store) : m_keys(keys), m_store(store) {}

    bool IsTitle(const std::string& row) const { return KoFileParse::IsBlockTitile(row); }
    void Open(const std::string& row) { m_record.m_strName = KoFileParse::GetBlockTitile(row); }
    void Stray(const std::string&) {}

    bool TakeKey(const std::string& row) {
        for (const auto& key : m_keys) {
            if (key.test(row)) {
                key.take(m_record, row);
                return true;
            }
        }
        return false;
    }

    void Close() {
        m_store(std::move(m_record));
        Reset(m_record);
    }

private:
    const Keys& m_keys;
    Store m_store;
    Record m_record;
};

template <typename Record, typename Keys, typename Store>
int ReadBlocks(KoFile* reader, const Keys& keys, Store store) {
    if (reader == nullptr) {
        return -1;
    }
    BlockCollector<Record, Keys, Store> collector(keys, store);
    if (WalkBlocks(*reader, collector) != 0) {
        std::puts("rollBack failed");
        delete reader;
        return -1;
    }
    return 0;
}

}  // namespace

int KoFileParse::ParseModulePtr(KoFile* reader) {
    return ReadBlocks<KoModuleInfo>(
        reader, kModuleKeys, [this](KoModuleInfo&& module) { StoreModule(std::move(module)); });
}

int KoFileParse::ParseCmdPtr(KoFile* reader) {
    return ReadBlocks<KoCmdInfo>(reader, kCmdKeys,
                                 [this](KoCmdInfo&& cmd) { StoreCmd(std::move(cmd)); });
}

void KoFileParse::StoreModule(KoModuleInfo&& module) {
    // Of two modules with one name the first stays, and so does its number.
    const auto stored = m_modInfos.try_emplace(module.m_strName, std::move(module)).first;
    m_cmdInfos.try_emplace(static_cast<unsigned int>(stored->second.m_instruct));
}

void KoFileParse::StoreCmd(KoCmdInfo&& cmd) {
    const KoModuleInfo* module = FindModule(cmd.m_strBelongMod);
    if (module == nullptr || module->m_instruct == -1) {
        return;
    }
    m_cmdInfos[static_cast<unsigned int>(module->m_instruct)].try_emplace(cmd.m_strCmd,
                                                                          std::move(cmd));
}
