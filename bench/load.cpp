#include <ini.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <map>
#include <string>
#include <utility>

#include "bench/bench.h"
#include "catalogue/ko_file_parse.h"

namespace {

// A module or a command, and the maps that the console has too.
struct Record {
    std::string name;
    std::string word;
    std::string module;
    std::string parameters;
    std::string print;
    std::string description;
    unsigned int number = 0;
    std::list<std::string> tags;
};

struct Catalogue {
    std::map<std::string, Record> modules;
    std::map<unsigned int, std::map<std::string, Record>> commands;
    Record block;

    void Store() {
        if (block.module.empty()) {
            modules.emplace(block.name, std::move(block));
        } else if (const auto module = modules.find(block.module); module != modules.end()) {
            commands[module->second.number].emplace(block.word, std::move(block));
        }
    }
};

constexpr std::pair<const char*, std::string Record::*> kTexts[] = {
    {"command", &Record::word},
    {"belong module", &Record::module},
    {"para format", &Record::parameters},
    {"print format", &Record::print},
    {"description", &Record::description},
};

int TakeKey(void* user, const char* section, const char* key, const char* value) {
    auto& catalogue = *static_cast<Catalogue*>(user);
    Record& block = catalogue.block;
    if (block.name != section) {
        if (!block.name.empty()) {
            catalogue.Store();
        }
        block = Record();
        block.name = section;
    }
    for (const auto& [name, field] : kTexts) {
        if (std::strcmp(key, name) == 0) {
            block.*field = value;
            return 1;
        }
    }
    if (std::strcmp(key, "instruction") == 0) {
        block.number = static_cast<unsigned int>(std::strtoul(value, nullptr, 16));
    } else if (std::strcmp(key, "print tags") == 0) {
        for (std::size_t size = 0; *value != '\0'; value += size + (value[size] == ',' ? 1 : 0)) {
            size = std::strcspn(value, ",");
            block.tags.emplace_back(value, size);
        }
    }
    return 1;
}

}  // namespace

// Loads the catalogue below root/ as the console does, or with inih for the argument "inih"; prints
// the nanoseconds that this took and the kB that it added to the most memory of the process.
int main(int argc, char**) {
    const long long before = ProcNumber("/proc/self/status", "VmHWM:");
    const auto start = std::chrono::steady_clock::now();
    KoFileParse ours;
    Catalogue theirs;
    if (argc == 1) {
        ours.Init();
    } else {
        for (const std::string file : {"mods.conf", "cmds.conf"}) {
            if (ini_parse(("root/vendor/etc/atv/dbg/" + file).c_str(), TakeKey, &theirs) != 0) {
                return 1;
            }
            theirs.Store();
        }
    }
    const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - start;
    std::printf("%lld %lld\n", static_cast<long long>(time.count()),
                ProcNumber("/proc/self/status", "VmHWM:") - before);
    std::fflush(stdout);
    std::_Exit(0);
}
