#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A catalogue file as the console takes it apart, with everything that it passes over. Walked with
// the console's own walk and row tests.

struct CatalogueRow {
    std::size_t line;
    std::string text;
};

struct KeyRow {
    std::string_view word;  // the key word that the row counts as; empty for any other row
    CatalogueRow row;

    // False when the value is over its limit; the console then takes an empty one.
    bool ValueFits() const;
    std::string Value() const;
};

struct CatalogueBlock {
    CatalogueRow title;
    std::vector<KeyRow> keys;
    std::vector<KeyRow> strays;  // the row that ended the block early, and those behind it

    std::string Name() const;

    // The row that gives the key its value, the last one; null when there is none.
    const KeyRow* Find(std::string_view word) const;

    // True when the key stands behind the row that ended the block.
    bool Lost(std::string_view word) const;

    // The value, as far as the console takes it; empty when there is none.
    std::string Text(std::string_view word) const;

    // The line of the key, or of the title when there is none.
    std::size_t LineOf(std::string_view word) const;

    // The number in "instruction"; -1 when there is none.
    std::int32_t Instruction() const;
};

struct CatalogueBlocks {
    std::vector<std::string_view> words;  // the file's key words in their order
    std::vector<KeyRow> head;             // rows before the first block, empty ones excepted
    std::vector<CatalogueBlock> blocks;
};

// Reads the file. Nothing when the console cannot load it; `reason` says why.
std::optional<CatalogueBlocks> ReadBlocks(const std::string& path,
                                          std::vector<std::string_view> words, std::string& reason);
