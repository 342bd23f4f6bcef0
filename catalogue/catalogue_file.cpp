#include "catalogue/catalogue_file.h"

#include <memory>

LoadResult LoadCatalogueFile(const std::string& path,
                             const std::function<int(KoFile* reader)>& readBlocks) {
    auto reader = std::make_unique<KoFile>();
    reader->Init(path, "r");
    if (reader->GetIOExceptionStatus() != 0) {
        return {LoadFault::kUnreadable, reader->GetIOExceptionStatus()};
    }
    if (reader->IsEmpty()) {
        return {LoadFault::kEmpty, 0};
    }
    if (readBlocks(reader.get()) != 0) {
        // The block reader has destroyed the file reader.
        static_cast<void>(reader.release());
        return {LoadFault::kNoStepBack, 0};
    }
    // A file that broke off in the middle has failed as well.
    const int error = reader->GetIOExceptionStatus();
    return {error != 0 ? LoadFault::kUnreadable : LoadFault::kNone, error};
}
