#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

// The blocks that a document opens with "```NAME".
std::vector<std::string> Blocks(const std::string& document, const std::string& name) {
    const std::string text = ReadFile(SourcePath(document));
    const std::string open = "```" + name + "\n";
    std::vector<std::string> blocks;
    for (std::size_t start = 0; (start = text.find(open, start)) != std::string::npos;) {
        start += open.size();
        blocks.push_back(text.substr(start, text.find("```", start) - start));
    }
    return blocks;
}

// The bytes that the protocol's page shows, without their offsets.
std::string DocumentedRows(const std::string& name) {
    std::istringstream rows(Blocks("docs/protocol.md", "hex " + name).at(0));
    std::string bytes;
    for (std::string row; std::getline(rows, row);) {
        bytes += row.substr(6) + "\n";
    }
    return bytes;
}

// A shell carries out what stands behind the "$ " of a block; what it shows must be the block.
void ExpectReal(const std::string& block) {
    std::string script =
        "exec 2>&1; ko_cmd_tool() { " KO_EMULATOR " '" KO_BIN_DIR "/ko_cmd_tool' \"$@\"; }\n";
    std::istringstream rows(block);
    for (std::string row; std::getline(rows, row);) {
        if (row.rfind("$ ", 0) == 0) {
            script += "cat <<'END'\n" + row + "\nEND\n" + row.substr(2) + "\n";
        }
    }
    EXPECT_EQ(block, Child(script).ReadRest());
}

}  // namespace

// What stands behind the prompts is typed; what comes back must be the session.
TEST(DocumentTest, TheSessionInTheReadmeIsARealOne) {
    const std::string session = Blocks("README.md", "session").at(0);
    const ExampleRoot root;
    const Service service;
    Child console(kConsole);
    std::istringstream rows(session);
    for (std::string row; std::getline(rows, row);) {
        const std::size_t prompt = row.find("TV $");
        if (prompt != std::string::npos) {
            console.Type(row.substr(prompt + 4) + "\n");
        }
    }
    std::string output = console.ReadRest();
    output.erase(std::remove(output.begin(), output.end(), '\r'), output.end());
    EXPECT_EQ(session, output.substr(output.find("TV $")));
}

TEST(DocumentTest, ThePictureIsTheSession) {
    EXPECT_EQ(Child("'" KO_SOURCE_DIR "/script/draw-session'").ReadRest(),
              ReadFile(SourcePath("docs/session.svg")));
}

TEST(DocumentTest, TheBytesOfTheProtocolAreTheRealOnes) {
    const std::string examples[][3] = {{"aud", "setvol", " 0 35"}, {"pic", "setmode", " movie"}};
    for (const auto& [module, command, arguments] : examples) {
        const ExampleRoot root;
        PlayedPage page;
        Child console(kConsole);
        console.Type(module + "\n" + command + arguments + "\n");
        EXPECT_EQ(DocumentedRows(command + "-request"), page.TakeRequest(console));
        page.Die();
        const Service service("--accept-old");
        console.ReadUntil("=\n");
        EXPECT_EQ(DocumentedRows(command + "-reply"), PageRows());
    }
}

TEST(DocumentTest, TheCommandsShownAreReal) {
    const ExampleRoot root;
    root.Write("lamp/mods.conf", Blocks("docs/catalogue.md", "conf lamp/mods.conf").at(0));
    std::filesystem::create_directory_symlink(SourcePath("examples"), "examples");
    auto service = std::make_unique<Service>();
    for (const char* document : {"README.md", "docs/tool.md"}) {
        for (const std::string& block : Blocks(document, "console")) {
            ExpectReal(block);
        }
    }
    service.reset();
    ExpectReal(Blocks("docs/tool.md", "console unanswered").at(0));
    root.Write("lamp/cmds.conf", Blocks("docs/catalogue.md", "conf lamp/cmds.conf").at(0));
    std::filesystem::create_directories("build/host");
    std::filesystem::create_directory_symlink("../../root", "build/host/root");
    std::vector<std::string> blocks = Blocks("docs/catalogue.md", "console");
    const std::string tryIt = blocks.back();
    blocks.pop_back();
    for (const std::string& block : blocks) {
        ExpectReal(block);
    }
    service = std::make_unique<Service>();
    ExpectReal(tryIt);
}
