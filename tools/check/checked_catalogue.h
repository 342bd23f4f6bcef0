#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue_file.h"
#include "catalogue/config_keys.h"
#include "tools/catalogue_source.h"
#include "tools/check/finding.h"

// A catalogue as the console reads and stores it, with every row that it ignores and the fate of
// every block: the console's own functions do both, and what is here listens.

struct FileRow {
    std::size_t line;  // counted from 1
    std::string text;
    KoFile::RowRest rest;  // what it has after the text
};

struct KeyRow {
    std::string_view word;   // the key word that the row counts as; empty for any other row
    std::string_view meant;  // that, or the one that was probably meant; empty if none is near
    FileRow row;

    RowParts Parts() const { return CutRow(row.text, row.rest); }

    // The value as far as the console takes it, empty when it is over the limit; or ValueMeant.
    std::string Value() const;

    // The value of a row without "=" that begins with the key meant, as in "instruction: 0x101";
    // empty for any other row.
    std::string_view ValueMeant() const;
};

struct CatalogueBlock {
    FileRow title;
    std::vector<KeyRow> keys;
    std::vector<KeyRow> strays;  // the row that ended the block early, and those after it

    // The row that gives the key its value, the last one; null when there is none.
    const KeyRow* Find(const ConfigKey& key) const;

    // True when the key is given with a value within its limit.
    bool IsGiven(const ConfigKey& key) const;

    // True when the key is there, but misspelt, over its limit or after the row that ended the
    // block: rows.cpp reports that, and what follows from it is not a mistake of its own.
    bool IsLost(const ConfigKey& key) const;

    // The line of the key, or of the title when there is none.
    std::size_t LineOf(const ConfigKey& key) const;
};

struct ModuleBlock : CatalogueBlock {
    KoFileParse::KoModuleInfo record;
    KoFileParse::StoredModule stored;
};

struct CmdBlock : CatalogueBlock {
    KoFileParse::KoCmdInfo record;
    KoFileParse::StoredCmd stored;
};

// What a file has whatever its records are.
struct CheckedRows {
    explicit CheckedRows(const std::string& path) : findings(path) {}

    FindingList findings;
    LoadResult result = {LoadFault::kNone, 0};
    std::vector<std::string> keys;      // the key words of the file
    std::vector<KeyRow> head;           // rows before the first block, empty ones excepted
    std::set<std::string> titlesMeant;  // by rows that are not titles; rows.cpp reports them
};

template <typename Block>
struct CheckedFile : CheckedRows {
    using CheckedRows::CheckedRows;

    std::deque<Block> blocks;  // in the order of the file; their addresses last
};

struct CheckedCatalogue {
    // Reads both files. Prints nothing.
    explicit CheckedCatalogue(const CataloguePaths& paths);

    KoFileParse catalogue;  // what the console has of the files
    CheckedFile<ModuleBlock> modules;
    CheckedFile<CmdBlock> commands;
};
