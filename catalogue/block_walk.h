#pragma once

#include <string>

#include "platform/ko_file.h"

// Walks the blocks of a catalogue file. The visitor decides what a title and a key row are and
// hears, in file order:
//   bool IsTitle(row)   asked of every row that is not empty
//   bool TakeKey(row)   asked inside a block; true when the row was one of its keys
//   void Open(row)      a title row opened a block
//   void Stray(row)     a row outside any block was passed over
//   void Close()        the open block ended
// Returns 0, or -1 when the reader could not step back to the row that ended a block.
template <typename Visitor>
int WalkBlocks(KoFile& reader, Visitor& visitor) {
    bool inBlock = false;
    while (!reader.IsEOF()) {
        const std::string row = reader.NextRow();
        if (row.empty()) {
            continue;
        }
        const bool title = visitor.IsTitle(row);
        if (!inBlock) {
            if (title) {
                visitor.Open(row);
            } else {
                visitor.Stray(row);
            }
            inBlock = title;
            continue;
        }
        if (visitor.TakeKey(row)) {
            continue;
        }
        visitor.Close();
        if (reader.RollBack() != 0) {
            return -1;
        }
        inBlock = false;
    }
    if (inBlock) {
        visitor.Close();
    }
    return 0;
}
