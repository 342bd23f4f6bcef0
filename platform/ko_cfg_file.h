#pragma once

#include <cstddef>

// Room for the longest resolved path (4096 characters) and its terminator.
constexpr std::size_t kCfgPathSize = 4097;

// The file type of configuration files; the only one the console asks for.
extern const int CUST_TYPE_CONFIG;

// Resolves a configuration file's path, such as "atv/dbg/mods.conf", under /data/vendor/etc,
// /odm/etc and /vendor/etc; the first name that is there wins, so that an engineer can override a
// vendor file without remounting, and is told of one that cannot be read. Writes the full path into
// `buffer` and returns its address; null, with `buffer` untouched, when there is no such name, the
// type is unknown, or the path does not fit.
const char* ko_get_one_cfg_file(const char* path, int type, char (&buffer)[kCfgPathSize]);
