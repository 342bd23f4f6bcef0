#include "tools/check/checked_catalogue.h"

#include <algorithm>

#include "catalogue/block_reader.h"
#include "tools/nearest.h"

namespace {

void Store(KoFileParse& catalogue, ModuleBlock& block) {
    block.stored = catalogue.StoreModule(KoFileParse::KoModuleInfo(block.record));
}

void Store(KoFileParse& catalogue, CmdBlock& block) {
    block.stored = catalogue.StoreCmd(KoFileParse::KoCmdInfo(block.record));
}

// The value of a row that begins with the key and a colon or, without "=", blanks.
std::string_view ValueWithoutEquals(std::string_view row, std::string_view key) {
    const std::string_view text = TrimConfigText(row);
    const std::size_t start = text.find_first_not_of(" \t:=", key.size());
    if (text.substr(0, key.size()) != key || start == std::string_view::npos ||
        start == key.size() || text.find('=') < text.find(':')) {
        return {};
    }
    return text.substr(start);
}

// The key word that a row, which is not a key, was probably meant to have. Empty for a comment.
std::string_view KeyMeant(const FileRow& row, const std::vector<std::string>& keys) {
    if (row.text.find_first_of("#;") == row.text.find_first_not_of(" \t")) {
        return {};
    }
    const std::string nearest = Nearest(CutRow(row.text, row.rest).key, keys);
    const auto found = std::find_if(keys.begin(), keys.end(), [&](const std::string& key) {
        return key == nearest || !ValueWithoutEquals(row.text, key).empty();
    });
    return found != keys.end() ? std::string_view(*found) : std::string_view();
}

// Has each block stored as the console does, and keeps the block, its rows and its fate.
template <typename Block>
class BlockRecorder : public BlockListener {
public:
    using Record = decltype(Block::record);

    BlockRecorder(const KoFile& reader, CheckedFile<Block>& file, KoFileParse& catalogue)
        : m_reader(reader), m_file(file), m_catalogue(catalogue) {}

    Record& Current() { return m_file.blocks.back().record; }
    void Title(const std::string& row) { m_file.blocks.emplace_back().title = Here(row); }
    void Key(const ConfigKey& key, const std::string& row) {
        m_file.blocks.back().keys.push_back({key.word, key.word, Here(row)});
    }
    void End() { Store(m_catalogue, m_file.blocks.back()); }

    // A row that ended a block and is no title comes here too, as the first one after the block.
    void Stray(const std::string& row) {
        const KeyField<Record>* key = FindKey<Record>(CutRow(row, m_reader.Rest()), nullptr);
        const std::string_view word = key != nullptr ? key->key.word : std::string_view();
        (m_file.blocks.empty() ? m_file.head : m_file.blocks.back().strays)
            .push_back({word, word.empty() ? KeyMeant(Here(row), m_file.keys) : word, Here(row)});
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
    for (const auto& field : KeysOf<decltype(Block::record)>()) {
        file.keys.emplace_back(field.key.word);
    }
    file.result = LoadCatalogueFile(path, [&](KoFile* reader) {
        BlockRecorder<Block> recorder(*reader, file, catalogue);
        return ReadBlocks<decltype(Block::record)>(reader, nullptr, recorder);
    });
}

}  // namespace

std::string KeyRow::Value() const {
    if (!ValueMeant().empty()) {
        return std::string(ValueMeant());
    }
    std::string value;
    ReadValue({}, Parts(), nullptr, value);
    return value;
}

std::string_view KeyRow::ValueMeant() const {
    return meant.empty() ? std::string_view() : ValueWithoutEquals(row.text, meant);
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
                       [&](const KeyRow& stray) { return stray.meant == key.word; });
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
