#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "console/ko_cmd_debug.h"
#include "page/page_lock.h"
#include "page/share_page_client.h"
#include "platform/ko_log.h"
#include "printer/printer.h"

namespace {

// The console words no failure of the page for its user; the log tells which it was.
bool Succeeded(PageResult result) {
    if (result == PageResult::kDone) {
        return true;
    }
    KoLog::PrintLog(ATV_LOG_PRIO_ERROR, kLogTag, "CopyCmdToBuf", __LINE__, "exchange failed: %s",
                    PageResultText(result));
    return false;
}

// One turn at the page. Neither the turn nor the answer has a time limit: only the engineer knows
// when to give up.
bool Exchange(PageLock& lock, const android::Parcel& request, std::vector<std::uint8_t>& reply) {
    const PageTurn turn(lock);
    SharePageClient client(g_pSharePage);
    return Succeeded(client.Post(request.data(), request.dataSize())) && Succeeded(client.Wait()) &&
           Succeeded(client.TakeReply(reply));
}

}  // namespace

int KoCmdDebug::CopyCmdToBuf(const char* cmd, android::Parcel& request) {
    if (request.data() == nullptr) {
        std::puts("requestData is the null");
        return -1;
    }
    // The wait has no limit and may end with the process; then nothing that was printed is lost.
    std::fflush(stdout);
    std::vector<std::uint8_t> bytes;
    if (!Exchange(m_pageLock, request, bytes)) {
        return -1;
    }
    android::Parcel reply;
    reply.setData(bytes.data(), bytes.size());
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
