#include "tools/catalogue_blocks.h"

#include <algorithm>
#include <utility>

#include "catalogue/block_walk.h"
#include "catalogue/row_grammar.h"
#include "tools/catalogue_source.h"

namespace {

// The key word that the row counts as; empty when there is none.
std::string_view FindKeyWord(const std::vector<std::string_view>& words, std::string_view row) {
    const std::size_t length = RawKeyLength(row);
    if (length >= kConfigTextSize) {
        return {};
    }
    const auto found = std::find_if(words.begin(), words.end(), [&](std::string_view word) {
        return KeyMatches(word, row.substr(0, length));
    });
    return found != words.end() ? *found : std::string_view();
}

// Keeps every row that the walk shows.
class BlockRecorder {
public:
    BlockRecorder(const KoFile& reader, CatalogueBlocks& file) : m_reader(reader), m_file(file) {}

    bool IsTitle(const std::string& row) const { return IsTitleRow(row); }
    void Open(const std::string& row) { m_file.blocks.push_back({Here(row), {}, {}}); }

    // A row that ended a block and is no title comes here too, as the first one behind the block.
    void Stray(const std::string& row) {
        (m_file.blocks.empty() ? m_file.head : m_file.blocks.back().strays)
            .push_back({FindKeyWord(m_file.words, row), Here(row)});
    }

    bool TakeKey(const std::string& row) {
        const std::string_view word = FindKeyWord(m_file.words, row);
        if (word.empty()) {
            return false;
        }
        m_file.blocks.back().keys.push_back({word, Here(row)});
        return true;
    }

    void Close() {}

private:
    CatalogueRow Here(const std::string& row) const { return {m_reader.RowNumber(), row}; }

    const KoFile& m_reader;
    CatalogueBlocks& m_file;
};

}  // namespace

bool KeyRow::ValueFits() const {
    return RawValueLength(row.text) < kConfigTextSize;
}

std::string KeyRow::Value() const {
    return std::string(RowValue(row.text));
}

std::string CatalogueBlock::Name() const {
    return std::string(TitleName(title.text));
}

const KeyRow* CatalogueBlock::Find(std::string_view word) const {
    const auto found = std::find_if(keys.rbegin(), keys.rend(),
                                    [word](const KeyRow& key) { return key.word == word; });
    return found != keys.rend() ? &*found : nullptr;
}

bool CatalogueBlock::Lost(std::string_view word) const {
    return std::any_of(strays.begin(), strays.end(),
                       [word](const KeyRow& stray) { return stray.word == word; });
}

std::string CatalogueBlock::Text(std::string_view word) const {
    const KeyRow* key = Find(word);
    return key != nullptr ? key->Value() : std::string();
}

std::size_t CatalogueBlock::LineOf(std::string_view word) const {
    const KeyRow* key = Find(word);
    return key != nullptr ? key->row.line : title.line;
}

std::int32_t CatalogueBlock::Instruction() const {
    const KeyRow* key = Find(kInstructionKey);
    return key != nullptr ? ParseHexNumber(key->Value()).value : -1;
}

std::optional<CatalogueBlocks> ReadBlocks(const std::string& path,
                                          std::vector<std::string_view> words,
                                          std::string& reason) {
    KoFile reader;
    reader.Init(path, "r");
    CatalogueBlocks file;
    file.words = std::move(words);
    BlockRecorder recorder(reader, file);
    // The walk steps back only behind a row that it has just read, which cannot fail.
    WalkBlocks(reader, recorder);
    reason = ReadFault(reader);
    return reason.empty() ? std::optional(std::move(file)) : std::nullopt;
}
