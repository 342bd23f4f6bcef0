#pragma once

#include <string>

// A television of a test's own: a fresh folder, made the working directory, in which the programs
// of the test builds find the device's files below "root/". Removed at the end.
class TestRoot {
public:
    TestRoot();
    ~TestRoot();
    TestRoot(const TestRoot&) = delete;
    TestRoot& operator=(const TestRoot&) = delete;

    // Writes a file below the folder and makes the folders it needs. Returns its path.
    std::string Write(const std::string& path, const std::string& text) const;

    // Puts a catalogue file of the source tree, or both of a folder, where the programs look.
    static void Install(const std::string& path);

private:
    std::string m_before;
    std::string m_folder;
};

// One with the example catalogue.
class ExampleRoot : public TestRoot {
public:
    ExampleRoot() { Install("examples/atv/dbg"); }
};

// The path of the shared page's file, from the working directory of a TestRoot.
constexpr char kTestPage[] = "root/data/vendor/.tv";

// The whole content of a file; fails the test when there is none.
std::string ReadFile(const std::string& path);

// A path in the source tree.
std::string SourcePath(const std::string& path);
