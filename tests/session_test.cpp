#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/test_root.h"

// Whole sessions: each file of tests/sessions holds what the television has, what is typed, and
// every byte that the console prints. Sections begin with "--- NAME": modules, commands (files to
// install), folder (a folder where a file is looked for), service (the stand-in service's options),
// keys, output. "\r", "\t", "\b" and "\xHH" stand for those bytes; a backslash at the end of a row
// takes the line end away.

namespace {

using Sections = std::map<std::string, std::string>;

std::string Unescape(const std::string& text) {
    constexpr std::string_view kLetters = "rtb";
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text[++i] == 'x') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else if (kLetters.find(text[i]) != std::string_view::npos) {
            bytes += "\r\t\b"[kLetters.find(text[i])];
        }
    }
    return bytes;
}

Sections ReadSections(const std::string& path) {
    Sections sections;
    std::istringstream rows(ReadFile(path));
    std::string row;
    std::string name;
    while (std::getline(rows, row)) {
        if (row.rfind("--- ", 0) == 0) {
            name = row.substr(4);
            sections[name];
        } else {
            sections[name] += row + "\n";
        }
    }
    return sections;
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

class SessionTest : public testing::TestWithParam<std::filesystem::path> {};

std::vector<std::filesystem::path> FilesOf(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(SourcePath(folder))) {
        files.push_back(entry.path());
    }
    return files;
}

std::string NameOf(const testing::TestParamInfo<std::filesystem::path>& file) {
    return file.param.stem().string();
}

// Faults that a shell sets up best: each file of tests/shell is run where $KO is the console and
// $SERVICE the service, beside the example catalogue, and ends with what it must print, as
// comments.
class ShellTest : public SessionTest {};

}  // namespace

TEST_P(SessionTest, PrintsEveryByte) {
    Sections sections = ReadSections(GetParam());
    const TestRoot root;
    if (sections.count("modules") != 0) {
        root.WriteModules(Unescape(sections["modules"]));
    }
    if (sections.count("commands") != 0) {
        root.WriteCommands(Unescape(sections["commands"]));
    }
    for (const std::string& folder : Words(sections["folder"])) {
        std::filesystem::create_directories(folder);
    }
    std::unique_ptr<Service> service;
    if (sections.count("service") != 0) {
        service = std::make_unique<Service>(Words(sections["service"]));
    }
    Child console("ko_cmd_debug", {}, Child::Io::kPipes);
    console.Type(Unescape(sections["keys"]));
    console.CloseInput();
    EXPECT_EQ(Unescape(sections["output"]), console.ReadRest());
    EXPECT_EQ(0, console.Wait());
}

// What stands behind the prompts of the session in README.md is typed; what comes back must be the
// session.
TEST(ReadmeTest, ItsSessionIsARealOne) {
    const std::string readme = ReadFile(SourcePath("README.md"));
    const std::string open = "```session\n";
    const std::size_t start = readme.find(open) + open.size();
    const std::string session = readme.substr(start, readme.find("```", start) - start);
    std::string keys;
    std::istringstream rows(session);
    for (std::string row; std::getline(rows, row);) {
        const std::size_t prompt = row.find("TV $");
        if (prompt != std::string::npos) {
            keys += row.substr(prompt + 4) + "\n";
        }
    }
    const ExampleRoot root;
    const Service service;
    Child console("ko_cmd_debug", {}, Child::Io::kPipes);
    console.Type(keys);
    std::string output = console.ReadRest();
    output.erase(std::remove(output.begin(), output.end(), '\r'), output.end());
    EXPECT_EQ(session, output.substr(output.find("TV $")));
}

TEST_P(ShellTest, PrintsWhatItExpects) {
    const ExampleRoot root;
    const std::string script = ReadFile(GetParam());
    const std::string mark = "# expected:\n";
    const std::string programs =
        "KO='" KO_EMULATOR " " KO_BIN_DIR "/ko_cmd_debug'; SERVICE='" KO_EMULATOR " " KO_BIN_DIR
        "/ko_tv_service'; ";
    std::FILE* output = popen((programs + script).c_str(), "r");
    std::string printed;
    for (int byte = 0; (byte = std::fgetc(output)) != EOF;) {
        printed += printed.empty() || printed.back() == '\n' ? "# " : "";
        printed += static_cast<char>(byte);
    }
    pclose(output);
    EXPECT_EQ(script.substr(script.find(mark) + mark.size()), printed);
}

INSTANTIATE_TEST_SUITE_P(Sessions, SessionTest, testing::ValuesIn(FilesOf("tests/sessions")),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Faults, ShellTest, testing::ValuesIn(FilesOf("tests/shell")), NameOf);
