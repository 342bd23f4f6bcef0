#include <sstream>

#include "console/ko_cmd_debug.h"
#include "request/share_page_client.h"
#include "service/tv_service.h"
#include "tests/support/page_test_base.h"

// The worked example of docs/protocol.md, byte for byte.

namespace {

using ProtocolTest = PageTestBase;

// The rows of the block "```hex NAME", without their offsets.
std::string DocumentedBytes(const std::string& name) {
    std::istringstream rows(ReadFile(SourcePath("docs/protocol.md")));
    std::string bytes;
    bool inBlock = false;
    for (std::string row; std::getline(rows, row) && !(inBlock && row == "```");) {
        if (inBlock) {
            bytes += row.substr(4);
        }
        inBlock = inBlock || row == "```hex " + name;
    }
    return bytes;
}

// The page's header and as many bytes of its data as the header tells, as the document writes them.
std::string PageBytes(const SharePage& page) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&page);
    const std::size_t size = kHeaderSize + LoadHeader(page).length;
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char byte[8];
        std::snprintf(byte, sizeof(byte), i % 8 == 0 ? "  %02x" : " %02x", bytes[i]);
        text += byte;
    }
    return text;
}

}  // namespace

TEST_F(ProtocolTest, TheDocumentedBytesAreTheRealOnes) {
    KoFileParse catalogue;
    KoFile file;
    file.Init(SourcePath("examples/atv/dbg/mods.conf"), "r");
    ASSERT_EQ(0, catalogue.ParseModulePtr(&file));
    file.Init(SourcePath("examples/atv/dbg/cmds.conf"), "r");
    ASSERT_EQ(0, catalogue.ParseCmdPtr(&file));
    const TvService service(catalogue, {});
    struct {
        const char* module;
        const char* command;
        const char* arguments;
    } const examples[] = {{"audio", "setvol", "0 35 "}, {"picture", "setmode", "movie "}};
    for (const auto& example : examples) {
        const std::string name = example.command;
        const std::int32_t module = catalogue.GetModInstruct(example.module);
        android::Parcel request;
        request.writeInt32(catalogue.GetCmdInstruct(module, name));
        KO_BOOL valid = 1;
        std::istringstream arguments(example.arguments);
        ASSERT_EQ(0, KoCmdDebug::ParseCmdImp(catalogue.GetCmdParaFmt(module, name), valid, request,
                                             arguments));
        SharePageClient client(m_mapping.Get(), kTestPage);
        ASSERT_TRUE(client.Post(request.data(), request.dataSize()));
        EXPECT_EQ(DocumentedBytes(name + "-request"), PageBytes(*m_scribbler.Get()));
        android::Parcel taken;
        ASSERT_TRUE(m_service.WaitRequest(std::chrono::seconds(60), taken));
        ASSERT_TRUE(m_service.PostReply(service.Handle(taken).reply));
        EXPECT_EQ(DocumentedBytes(name + "-reply"), PageBytes(*m_scribbler.Get()));
    }
}
