#pragma once

#include <optional>
#include <string>

#include "catalogue/catalogue_file.h"
#include "catalogue/ko_file_parse.h"
#include "tools/failure.h"

// Where the two files of a catalogue are.
struct CataloguePaths {
    std::string modules;
    std::string commands;
};

// "mods.conf" and "cmds.conf" of the directory; without one, the files that the console finds, or
// for a missing file the place where the device's vendor would put it.
CataloguePaths FindCatalogue(const std::optional<std::string>& directory);

// Loads the catalogue as the console does, with the console's messages on standard error. Returns
// nullopt; or kExitNotSent, and `catalogue` then holds what was read before.
std::optional<Failure> LoadCatalogue(const CataloguePaths& paths, KoFileParse& catalogue);

// The reason of a fault as people read it, such as "the file is empty".
std::string FaultText(const LoadResult& result);
