#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

// The block that a document opens with "```NAME".
std::string Block(const std::string& document, const std::string& name) {
    const std::string text = ReadFile(SourcePath(document));
    const std::string open = "```" + name + "\n";
    const std::size_t start = text.find(open) + open.size();
    return text.substr(start, text.find("```", start) - start);
}

// The bytes that the protocol's page shows, without their offsets.
std::string DocumentedRows(const std::string& name) {
    std::istringstream rows(Block("docs/protocol.md", "hex " + name));
    std::string bytes;
    for (std::string row; std::getline(rows, row);) {
        bytes += row.substr(6) + "\n";
    }
    return bytes;
}

}  // namespace

// What stands behind the prompts is typed; what comes back must be the session.
TEST(DocumentTest, TheSessionInTheReadmeIsARealOne) {
    const std::string session = Block("README.md", "session");
    const ExampleRoot root;
    const Service service;
    Child console("ko_cmd_debug", {}, Child::Io::kPipes);
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

TEST(DocumentTest, TheBytesOfTheProtocolAreTheRealOnes) {
    const std::string examples[][3] = {{"aud", "setvol", " 0 35"}, {"pic", "setmode", " movie"}};
    for (const auto& [module, command, arguments] : examples) {
        const ExampleRoot root;
        PlayedPage page;
        Child console("ko_cmd_debug", {}, Child::Io::kPipes);
        console.Type(module + "\n" + command + arguments + "\n");
        EXPECT_EQ(DocumentedRows(command + "-request"), page.TakeRequest());
        const Service service;
        console.ReadUntil("=\n");
        EXPECT_EQ(DocumentedRows(command + "-reply"), PageRows());
    }
}
