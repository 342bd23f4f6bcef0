#include <cstdint>
#include <cstdio>
#include <string>

#include "console/ko_cmd_debug.h"
#include "page/share_page_client.h"
#include "printer/printer.h"

int KoCmdDebug::CopyCmdToBuf(const char* cmd, android::Parcel& request) {
    if (request.data() == nullptr) {
        std::puts("requestData is the null");
        return -1;
    }
    SharePageClient client(g_pSharePage, g_strSwapFile);
    if (!client.Post(request.data(), request.dataSize())) {
        return -1;
    }
    android::Parcel reply;
    if (client.Wait() != SharePageClient::State::kReady || !client.TakeReply(reply)) {
        return -1;
    }
    const std::int32_t status = reply.readInt32();
    if (status != 0) {
        std::printf("request failure! ret:0x%x\n", static_cast<std::uint32_t>(status));
        return -1;
    }
    return FlushCmd(reply, cmd);
}

int KoCmdDebug::FlushCmd(android::Parcel& reply, const std::string& cmd) {
    if (m_pFileParse == nullptr) {
        return -1;
    }
    const std::int32_t module = m_pFileParse->GetModInstruct(m_strCurMod);
    Printer printer(reply);
    printer.Fmt(m_pFileParse->GetCmdPrintFmt(module, cmd).c_str(),
                m_pFileParse->GetCmdPrintTags(module, cmd));
    printer.Flush();
    return 0;
}
