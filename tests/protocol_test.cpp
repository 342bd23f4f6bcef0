#include <sstream>

#include <gtest/gtest.h>

#include "service/tv_service_page.h"
#include "tests/support/child.h"
#include "tests/support/test_root.h"

namespace {

// The rows of the block "```hex NAME" of docs/protocol.md, without their offsets.
std::string DocumentedBytes(const std::string& name) {
    const std::string page = ReadFile(SourcePath("docs/protocol.md"));
    const std::string open = "```hex " + name + "\n";
    const std::size_t start = page.find(open) + open.size();
    std::istringstream rows(page.substr(start, page.find("```", start) - start));
    std::string bytes;
    for (std::string row; std::getline(rows, row);) {
        bytes += row.substr(4);
    }
    return bytes;
}

// The page's header and as many bytes of data as it tells, as the document writes them.
std::string PageBytes() {
    const std::string page = ReadFile(kTestPage);
    std::string text;
    for (std::size_t i = 0; i < 8U + static_cast<unsigned char>(page[4]); ++i) {
        char byte[8];
        std::snprintf(byte, sizeof(byte), i % 8 == 0 ? "  %02hhx" : " %02hhx", page[i]);
        text += byte;
    }
    return text;
}

}  // namespace

TEST(ProtocolTest, TheDocumentedBytesAreTheRealOnes) {
    const char* const examples[][2] = {{"aud", "setvol 0 35"}, {"pic", "setmode movie"}};
    for (const auto& [module, line] : examples) {
        const ExampleRoot root;
        TvServicePage page;
        ASSERT_TRUE(page.Open(kTestPage));
        Child console("ko_cmd_debug", {}, Child::Io::kPipes);
        console.Type(std::string(module) + "\n" + line + "\n");
        android::Parcel request;
        ASSERT_TRUE(page.WaitRequest(std::chrono::seconds(60), request));
        const std::string name = std::string(line, std::string(line).find(' '));
        EXPECT_EQ(DocumentedBytes(name + "-request"), PageBytes());
        const Service service;
        console.ReadUntil("=\n");
        EXPECT_EQ(DocumentedBytes(name + "-reply"), PageBytes());
    }
}
