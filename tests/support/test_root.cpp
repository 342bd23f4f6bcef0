#include "tests/support/test_root.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TestRoot::TestRoot() : m_before(fs::current_path()) {
    std::string folder = fs::temp_directory_path() / "ko_test.XXXXXX";
    m_folder = mkdtemp(folder.data());
    fs::current_path(m_folder);
    fs::create_directories("root/data/vendor");
}

TestRoot::~TestRoot() {
    fs::current_path(m_before);
    fs::remove_all(m_folder);
}

std::string TestRoot::Write(const std::string& path, const std::string& text) const {
    const fs::path full = fs::path(m_folder) / path;
    fs::create_directories(full.parent_path());
    std::ofstream(full, std::ios::binary) << text;
    return full;
}

void TestRoot::Install(const std::string& path) {
    fs::create_directories("root/vendor/etc/atv/dbg");
    fs::copy(SourcePath(path), "root/vendor/etc/atv/dbg");
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string SourcePath(const std::string& path) {
    return std::string(KO_SOURCE_DIR "/") + path;
}
