#include "console/ko_cmd_debug.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/device_root.h"
#include "platform/standard_streams.h"
#include "platform/unique_fd.h"

KoCmdDebug* g_pCmdDebug = nullptr;
std::string g_strSwapFile = kSharePageFile;
KoMutex g_mutex;
SharePage* g_pSharePage = static_cast<SharePage*>(MAP_FAILED);
std::atomic<std::int32_t> g_sigState{kSigNone};
char* g_modCmdTable[kWordTableSize];
char* g_cmdTable[kWordTableSize];

namespace {

constexpr mode_t kPageFileMode = 0660;
constexpr unsigned int kWatcherOption = 2;

// Opens the page file, or the target if the path is a symbolic link. The file's size stays as it
// is: giving the page its 4096 bytes is the service's part.
UniqueFd OpenSwapFile() {
    char resolved[PATH_MAX] = {};
    const char* path = realpath(g_strSwapFile.c_str(), resolved);
    return UniqueFd(open(path != nullptr ? path : g_strSwapFile.c_str(),
                         O_RDWR | O_CREAT | O_CLOEXEC, kPageFileMode));
}

}  // namespace

void Release(const void*) {}

KoCmdDebug::KoCmdDebug() : m_strPrompt("TV $"), m_sigThread(SignalDectThread, this, nullptr) {}

KoCmdDebug& KoCmdDebug::GetInstance() {
    if (g_pCmdDebug == nullptr) {
        g_pCmdDebug = new KoCmdDebug;
        g_pCmdDebug->m_stream.Init();
    }
    return *g_pCmdDebug;
}

int KoCmdDebug::LoadConfig() {
    m_pFileParse = std::make_unique<KoFileParse>();
    m_pFileParse->Init();
    if (m_pFileParse->GetIOExceptionStatus() != 0) {
        std::puts("ParseModules fail or ParseCmds fail.");
        return -1;
    }
    m_modNames = m_pFileParse->GetModNames();
    m_modCmds = m_pFileParse->GetModCmds();
    return 0;
}

void KoCmdDebug::Exec() {
    m_pid = getpid();
    {
        const UniqueFd swapFile = OpenSwapFile();
        if (!swapFile.IsOpen()) {
            std::printf("can't open swap file %s, errno = %d\n", g_strSwapFile.c_str(), errno);
            return;
        }
        g_pSharePage = static_cast<SharePage*>(
            mmap(nullptr, kPageSize, PROT_READ | PROT_WRITE, MAP_SHARED, swapFile.Get(), 0));
        m_pageLock = PageLock(swapFile.Get());
    }
    if (g_pSharePage == MAP_FAILED) {
        PrintSystemError("map share memery failed!\n");
        return;
    }
    CatchSignals();
    const int error = m_sigThread.Run(kWatcherOption);
    if (error != 0) {
        LeaveSignals();
        errno = error;
        PrintSystemError("can't start the watcher of the signals");
    }
    if (m_pFileParse == nullptr) {
        std::printf("please load cfg before call <%s>.\n", "Exec");
        return;
    }
    m_bRunning = 1;
    if (DoWork() != 0) {
        return;
    }
    g_pCmdDebug->m_stream.ResetTermios();
    if (munmap(g_pSharePage, kPageSize) != 0) {
        PrintSystemError("munmap failed!\n");
        return;
    }
    g_pSharePage = static_cast<SharePage*>(MAP_FAILED);
}
