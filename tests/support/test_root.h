#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

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

private:
    std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_folder;
};

// The path of the shared page's file, from the working directory of a TestRoot.
constexpr char kTestPage[] = "root/data/vendor/.tv";
