#include "tools/check/checked_catalogue.h"

#include <algorithm>

#include "catalogue/block_reader.h"

namespace {

void Store(KoFileParse& catalogue, ModuleBlock& block) {
    block.stored = catalogue.StoreModule(KoFileParse::KoModuleInfo(block.record));
}

void Store(KoFileParse& catalogue, CmdBlock& block) {
    block.stored = catalogue.StoreCmd(KoFileParse::KoCmdInfo(block.record));
}

// Has each block filed as the console does, and keeps the block, its rows and what became of it.
template <typename Block>
class BlockRecorder : public BlockListener {
public:
    using Record = decltype(Block::record);

    BlockRecorder(const KoFile& reader, CheckedFile<Block>& file, KoFileParse& catalogue)
        : m_reader(reader), m_file(file), m_catalogue(catalogue) {}

    Record& Current() { return m_file.blocks.back().record; }
    void Title(const std::string& row) { m_file.blocks.emplace_back().title = Here(row); }
    void Key(const ConfigKey& key, const std::string& row) {
        m_file.blocks.back().keys.push_back({key.word, Here(row)});
    }
    void End() { Store(m_catalogue, m_file.blocks.back()); }

    // A row that ended a block and is no title comes here too, as the first one behind the block.
    void Stray(const std::string& row) {
        const KeyField<Record>* key = FindKey<Record>(CutRow(row, m_reader.Rest()), nullptr);
        (m_file.blocks.empty() ? m_file.head : m_file.blocks.back().strays)
            .push_back({key != nullptr ? key->key.word : std::string_view(), Here(row)});
    }

private:
    FileRow Here(const std::string& row) const {
        return {m_reader.RowNumber(), row, m_reader.Rest()};
    }

    const KoFile& m_reader;
    CheckedFile<Block>& m_file;
    KoFileParse& m_catalogue;
};

template <typename Block>
void ReadFile(const std::string& path, CheckedFile<Block>& file, KoFileParse& catalogue) {
    file.result = LoadCatalogueFile(path, [&](KoFile* reader) {
        BlockRecorder<Block> recorder(*reader, file, catalogue);
        return ReadBlocks<decltype(Block::record)>(reader, nullptr, recorder);
    });
}

}  // namespace

std::string KeyRow::Value() const {
    std::string value;
    ReadValue({}, Parts(), nullptr, value);
    return value;
}

const KeyRow* CatalogueBlock::Find(const ConfigKey& key) const {
    const auto found = std::find_if(keys.rbegin(), keys.rend(),
                                    [&](const KeyRow& row) { return row.word == key.word; });
    return found != keys.rend() ? &*found : nullptr;
}

bool CatalogueBlock::IsGiven(const ConfigKey& key) const {
    const KeyRow* row = Find(key);
    return row != nullptr && row->Parts().ValueFits();
}

bool CatalogueBlock::IsLost(const ConfigKey& key) const {
    if (Find(key) != nullptr) {
        return !IsGiven(key);
    }
    return std::any_of(strays.begin(), strays.end(),
                       [&](const KeyRow& stray) { return stray.word == key.word; });
}

std::size_t CatalogueBlock::LineOf(const ConfigKey& key) const {
    const KeyRow* row = Find(key);
    return row != nullptr ? row->row.line : title.line;
}

CheckedCatalogue::CheckedCatalogue(const CataloguePaths& paths)
    : modules(paths.modules), commands(paths.commands) {
    ReadFile(paths.modules, modules, catalogue);
    ReadFile(paths.commands, commands, catalogue);
}
