#include "tools/catalogue_source.h"

#include <cstring>
#include <functional>

#include "platform/device_root.h"
#include "platform/ko_cfg_file.h"
#include "tools/stdout_to_stderr.h"
#include "tools/text.h"

namespace {

std::string FindFile(const std::optional<std::string>& directory, const char* name) {
    if (directory) {
        return *directory + "/" + name;
    }
    const std::string relative = std::string("atv/dbg/") + name;
    char path[kCfgPathSize] = {};
    const char* found = ko_get_one_cfg_file(relative.c_str(), CUST_TYPE_CONFIG, path);
    return found != nullptr ? found : KO_DEVICE_ROOT "/vendor/etc/" + relative;
}

std::optional<Failure> LoadFile(const std::string& path,
                                const std::function<int(KoFile* reader)>& readBlocks) {
    const LoadResult result = LoadCatalogueFile(path, readBlocks);
    if (result.fault == LoadFault::kNone) {
        return std::nullopt;
    }
    return Failure{kExitNotSent, path + ": " + FaultText(result)};
}

}  // namespace

CataloguePaths FindCatalogue(const std::optional<std::string>& directory) {
    return {FindFile(directory, "mods.conf"), FindFile(directory, "cmds.conf")};
}

std::optional<Failure> LoadCatalogue(const CataloguePaths& paths, KoFileParse& catalogue) {
    const StdoutToStderr redirect;
    auto failure =
        LoadFile(paths.modules, [&](KoFile* reader) { return catalogue.ParseModulePtr(reader); });
    return failure ? failure : LoadFile(paths.commands, [&](KoFile* reader) {
        return catalogue.ParseCmdPtr(reader);
    });
}

std::string FaultText(const LoadResult& result) {
    switch (result.fault) {
        case LoadFault::kUnreadable:
            return std::strerror(result.error);
        case LoadFault::kEmpty:
            return "the file is empty";
        case LoadFault::kNoStepBack:
            return "the reader cannot step back";
        default:
            return "";
    }
}
