#include <sstream>

#include "tests/fuzz/fuzz_input.h"
#include "tests/support/editor_model.h"

// Parts: completion words (a row each, an empty row begins another group), keys.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 2);
    std::vector<WordGroup> groups(1);
    std::istringstream rows(parts[0].substr(0, parts[0].find('\0')));
    for (std::string row; std::getline(rows, row);) {
        if (row.empty()) {
            groups.emplace_back();
        } else {
            groups.back().words.push_back(row);
        }
    }
    Require(RunEditor(parts[1], groups) == RunModel(parts[1], groups),
            "the editor does what its model does");
    return 0;
}
