#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

// A path in the source tree.
inline std::string SourcePath(const std::string& path) {
    return std::string(KO_SOURCE_DIR "/") + path;
}

// The whole content of a file; fails the test when there is none.
inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// A television of a test's own: a fresh folder, made the working directory, in which the programs
// of the test builds find the device's files below "root/". Removed at the end.
class TestRoot {
public:
    TestRoot() {
        std::string folder = std::filesystem::temp_directory_path() / "ko_test.XXXXXX";
        m_folder = mkdtemp(folder.data());
        std::filesystem::current_path(m_folder);
        std::filesystem::create_directories("root/data/vendor");
    }
    ~TestRoot() {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_folder);
    }
    TestRoot(const TestRoot&) = delete;
    TestRoot& operator=(const TestRoot&) = delete;

    // Writes a file below the folder and makes the folders it needs. Returns its path.
    std::string Write(const std::string& path, const std::string& text) const {
        const std::filesystem::path full = m_folder / path;
        std::filesystem::create_directories(full.parent_path());
        std::ofstream(full, std::ios::binary) << text;
        return full;
    }

    // Puts a catalogue file of the source tree, or both of a folder, where the programs look.
    static void Install(const std::string& path) {
        std::filesystem::create_directories("root/vendor/etc/atv/dbg");
        std::filesystem::copy(SourcePath(path), "root/vendor/etc/atv/dbg");
    }

private:
    std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_folder;
};

// One with the example catalogue.
class ExampleRoot : public TestRoot {
public:
    ExampleRoot() { Install("examples/atv/dbg"); }
};

// The path of the shared page's file, from the working directory of a TestRoot.
constexpr char kTestPage[] = "root/data/vendor/.tv";
