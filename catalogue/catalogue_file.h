#pragma once

#include <functional>
#include <string>

#include "platform/ko_file.h"

// Why a catalogue file could not be loaded.
enum class LoadFault {
    kNone,
    kUnreadable,  // it cannot be opened, or reading broke off; `error` says why
    kEmpty,
    kNoStepBack,  // the reader failed to step back a row
};

struct LoadResult {
    LoadFault fault;
    int error;  // an error number for kUnreadable, else 0
};

// Opens the file and has its blocks read by `readBlocks`, which returns 0 or destroys the reader
// and returns another number, as KoFileParse::ParseModulePtr does. Rows before a fault have been
// read. Prints nothing itself.
LoadResult LoadCatalogueFile(const std::string& path,
                             const std::function<int(KoFile* reader)>& readBlocks);
