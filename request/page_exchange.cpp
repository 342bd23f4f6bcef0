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

// One turn at the page. Neither the turn nor the answer has a time limit: only the engineer knows
// when to give up.
PageResult Exchange(PageLock& lock, const android::Parcel& request,
                    std::vector<std::uint8_t>& reply) {
    const PageTurn turn(lock);
    SharePageClient client(g_pSharePage);
    PageResult result = client.Post(request.data(), request.dataSize());
    if (result == PageResult::kDone) {
        result = client.Wait();
    }
    return result == PageResult::kDone ? client.TakeReply(reply) : result;
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
    const PageResult result = Exchange(m_pageLock, request, bytes);
    if (result != PageResult::kDone) {
        // No message says which failure of the page it was; the log does.
        KoLog::PrintLog(ATV_LOG_PRIO_ERROR, kLogTag, __func__, __LINE__, "exchange failed: %s",
                        PageResultText(result));
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
