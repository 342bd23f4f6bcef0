#pragma once

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string>

#include "catalogue/config_keys.h"
#include "platform/ko_file.h"

// The row of the table for a row of one of its keys; null for any other row. Prints a line for each
// key word that is tried on a key over the limit.
template <typename Record>
const KeyField<Record>* FindKey(const RowParts& row, std::FILE* messages) {
    const auto& keys = KeysOf<Record>();
    const auto* found = std::find_if(std::begin(keys), std::end(keys), [&](const auto& field) {
        return IsKeyRow(field.key, row, messages);
    });
    return found != std::end(keys) ? found : nullptr;
}

// Receives the blocks of a file of KoModuleInfo or KoCmdInfo records, in file order. This one
// ignores every row; others derive from it and add
//   Record& Current()  the record that the open block fills, which begins reset
//   void End()         the block has ended: takes its record
// A row that ended a block follows it, as a title or as a stray.
struct BlockListener {
    void Title(const std::string&) {}                  // it opened a block
    void Key(const ConfigKey&, const std::string&) {}  // it set a field
    void Stray(const std::string&) {}                  // it was ignored
};

// Sets the field that belongs to the row's key; false if the row has none.
template <typename Record, typename Listener>
bool TakeKey(const std::string& row, const KoFile::RowRest& rest, std::FILE* messages,
             Listener& listener) {
    const RowParts parts = CutRow(row, rest);
    const KeyField<Record>* key = FindKey<Record>(parts, messages);
    if (key == nullptr) {
        return false;
    }
    std::visit([&](auto field) { ReadValue(key->key, parts, messages, listener.Current().*field); },
               key->field);
    listener.Key(key->key, row);
    return true;
}

// Reads the blocks of a file. 0; or -1 when the reader could not step back to the row that ended a
// block.
template <typename Record, typename Listener>
int WalkBlocks(KoFile& reader, std::FILE* messages, Listener& listener) {
    bool inBlock = false;
    while (!reader.IsEOF()) {
        const std::string& row = reader.NextRow();
        if (row.empty()) {
            continue;
        }
        const bool title = IsTitleRow(row, messages, reader.Rest());
        if (!inBlock && title) {
            listener.Title(row);
            listener.Current().m_strName = ReadTitle(row, messages);
            inBlock = true;
            continue;
        }
        if (!inBlock) {
            listener.Stray(row);
            continue;
        }
        if (TakeKey<Record>(row, reader.Rest(), messages, listener)) {
            continue;
        }
        listener.End();
        if (reader.RollBack() != 0) {
            return -1;
        }
        inBlock = false;
    }
    if (inBlock) {
        listener.End();
    }
    return 0;
}

// The same for a reader that belongs to the caller, and still does after a return of 0. -1 for a
// null reader, or when it could not step back: it has then been destroyed, after a message.
template <typename Record, typename Listener>
int ReadBlocks(KoFile* reader, std::FILE* messages, Listener& listener) {
    if (reader == nullptr) {
        return -1;
    }
    if (WalkBlocks<Record>(*reader, messages, listener) == 0) {
        return 0;
    }
    if (messages != nullptr) {
        std::fputs("rollBack failed\n", messages);
    }
    delete reader;
    return -1;
}
