#include "platform/ko_cfg_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "platform/device_root.h"
#include "platform/ko_securec.h"

const int CUST_TYPE_CONFIG = 1;

namespace {

// In the order of precedence.
constexpr const char* kConfigDirectories[] = {
    KO_DEVICE_ROOT "/data/vendor/etc/",
    KO_DEVICE_ROOT "/odm/etc/",
    KO_DEVICE_ROOT "/vendor/etc/",
};

// A name that cannot be looked at counts as there.
bool IsThere(const std::string& path) {
    struct stat info = {};
    return lstat(path.c_str(), &info) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

}  // namespace

const char* ko_get_one_cfg_file(const char* path, int type, char (&buffer)[kCfgPathSize]) {
    if (path == nullptr || type != CUST_TYPE_CONFIG) {
        return nullptr;
    }
    for (const char* directory : kConfigDirectories) {
        const std::string candidate = std::string(directory) + path;
        if (candidate.size() < kCfgPathSize && IsThere(candidate)) {
            return strcpy_s(buffer, kCfgPathSize, candidate.c_str()) == 0 ? buffer : nullptr;
        }
    }
    return nullptr;
}
