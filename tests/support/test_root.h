#pragma once

#include <filesystem>
#include <fstream>
#include <string>

// A television of a test's own: a fresh directory, made the working directory, in which the test
// builds find the device's files below "root/". Removed at the end.
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

    // Writes the modules and the commands file where the console finds them.
    void WriteCatalogue(const std::string& modules, const std::string& commands) const {
        std::filesystem::create_directories("root/vendor/etc/atv/dbg");
        Write("root/vendor/etc/atv/dbg/mods.conf", modules);
        Write("root/vendor/etc/atv/dbg/cmds.conf", commands);
    }

    // Writes a file into the directory. Returns its path.
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary) << text;
        return m_folder / name;
    }

private:
    std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_folder;
};

// The page file, from the working directory of a TestRoot.
constexpr char kTestPage[] = "root/data/vendor/.tv";
