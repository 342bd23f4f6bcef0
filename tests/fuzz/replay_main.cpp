#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/fuzz_input.h"

// Runs a driver over the files on its command line, without the fuzzer.
int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    Require(argc > 1, "there are inputs");
    for (int i = 1; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        Require(file.is_open(), argv[i]);
        // No byte after the last, so that the sanitizer sees a read there.
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return 0;
}
