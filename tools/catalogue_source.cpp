#include "tools/catalogue_source.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/device_root.h"
#include "platform/ko_cfg_file.h"
#include "tools/text.h"

namespace {

std::string FindFile(const std::optional<std::string>& folder, const char* name) {
    if (folder) {
        return *folder + "/" + name;
    }
    const std::string relative = std::string("atv/dbg/") + name;
    char path[kCfgPathSize] = {};
    const char* found = ko_get_one_cfg_file(relative.c_str(), CUST_TYPE_CONFIG, path);
    return found != nullptr ? found : KO_DEVICE_ROOT "/vendor/etc/" + relative;
}

bool Complained(const std::string& path, const KoFile& reader) {
    const std::string fault = ReadFault(reader);
    if (!fault.empty()) {
        Complain(path + ": " + fault);
    }
    return !fault.empty();
}

bool LoadFile(const std::string& path, KoFileParse& catalogue,
              int (KoFileParse::*readBlocks)(KoFile* reader)) {
    auto reader = std::make_unique<KoFile>();
    reader->Init(path, "r");
    if (Complained(path, *reader)) {
        return false;
    }
    if ((catalogue.*readBlocks)(reader.get()) != 0) {
        // The block reader has destroyed the file reader.
        static_cast<void>(reader.release());
        return false;
    }
    // A file that broke off in the middle has failed as well.
    return !Complained(path, *reader);
}

}  // namespace

CataloguePaths FindCatalogue(const std::optional<std::string>& folder) {
    return {FindFile(folder, "mods.conf"), FindFile(folder, "cmds.conf")};
}

bool LoadCatalogue(const CataloguePaths& paths, KoFileParse& catalogue) {
    const StdoutToStderr redirect;
    return LoadFile(paths.modules, catalogue, &KoFileParse::ParseModulePtr) &&
           LoadFile(paths.commands, catalogue, &KoFileParse::ParseCmdPtr);
}

std::string ReadFault(const KoFile& reader) {
    if (reader.GetIOExceptionStatus() != 0) {
        return std::strerror(reader.GetIOExceptionStatus());
    }
    return reader.IsEmpty() ? "the file is empty" : "";
}

StdoutToStderr::StdoutToStderr() {
    std::fflush(stdout);
    m_failed = std::ferror(stdout) != 0;
    m_saved = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

StdoutToStderr::~StdoutToStderr() {
    std::fflush(stdout);
    if (!m_failed) {
        std::clearerr(stdout);  // what failed are messages, not the result
    }
    dup2(m_saved, STDOUT_FILENO);
    close(m_saved);
}
