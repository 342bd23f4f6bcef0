#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

#include "catalogue/ko_file_parse.h"
#include "common/ko_mw_array.h"
#include "console/ko_mutex.h"
#include "lineedit/ko_stream.h"
#include "page/page_lock.h"
#include "page/share_page.h"
#include "platform/ko_mw_thread.h"
#include "platform/ko_types.h"
#include "platform/parcel.h"

// The console. One object a process, created by main and never destroyed. Everything runs on the
// main thread but the signal actions, which the watcher thread carries out.
//
// The operations are grouped by the file that defines them; encoding and exchange stand in
// request/.
class KoCmdDebug {
public:
    // The one object. The first call creates it and puts the terminal into the line editor's mode.
    static KoCmdDebug& GetInstance();

    KoCmdDebug();
    KoCmdDebug(const KoCmdDebug&) = delete;
    KoCmdDebug& operator=(const KoCmdDebug&) = delete;

    // ko_cmd_debug.cpp

    // Creates and fills the catalogue. 0; or -1 after a message, when a file could not be read: the
    // console then goes on with what the catalogue holds and empty module lists.
    int LoadConfig();

    // Sets what the watcher thread calls, with a null argument, before the interrupt key ends the
    // process; null for none. Before Exec.
    void SetRelease(void (*release)(const void*)) { m_pfnRelease = release; }

    // Runs the console: maps the page, catches the signals, reads lines until the end, then
    // restores the terminal and unmaps the page. Early failures print their reason and leave the
    // terminal as it is.
    void Exec();

    // command_loop.cpp

    // Prompts, reads and handles lines. 0 when input ended or the user quit; -1 when the completion
    // words could not be registered.
    int DoWork();

    // Registers the completion groups: `modCount` words of `modList` and `cmdCount` words of
    // `cmdList`, copied to `regList`, which stays the caller's, has room for both and lives until
    // the line has been read. 0, or -1 when a list is missing or cannot be copied.
    int DoWorkSub(unsigned int cmdCount, unsigned int modCount, char** regList, char** cmdList,
                  char** modList);

    // Refreshes the current module's commands and hands out the table of their words. 0; -1 for a
    // null pointer or without a catalogue.
    int GetSupportCmds(char*** list, unsigned int* count);

    // input_dispatch.cpp

    // Handles one line, given without its line end.
    void Proc(const char* line);

    // Splits a line into its first word, at most 255 characters of it, and the rest, at most 255.
    // The buffers have 256 bytes. -1 for a null pointer, else 0.
    int SeparateCmd(const char* line, char* cmd, char* args, unsigned int, unsigned int);

    // Encodes and exchanges one command. 0; or non-zero after a message.
    int HandleCmd(const char* cmd, const char* args, unsigned int, unsigned int);

    // request/request_encoder.cpp: the command's arguments become the request

    // Writes the command's instruction number and one field for each letter of its para format. 0;
    // or -1 after a message (none without a catalogue), with the parcel to be discarded. `args`
    // ends with a blank, or the last argument counts as missing.
    int ParseCmd(const char* cmd, android::Parcel& request, std::istringstream& args);

    // Encodes by the para format. 0, also when an argument was missing or unreadable, which clears
    // `valid` and ends the encoding; -1 for an unknown letter or a failed write.
    static int ParseCmdImp(std::string format, KO_BOOL& valid, android::Parcel& request,
                           std::istringstream& args);

    // One letter each, with the results of ParseCmdImp: `f`, `F`, `s` or `S` (any other is passed
    // over); `D` when `wide`, else `d`; `S` when `wide`, else `s`. A failed write is reported by
    // ParseCmdSub, and left to the caller to report by the other two.
    static int ParseCmdSub(char letter, KO_BOOL& valid, std::istringstream& args,
                           android::Parcel& request);
    static int ParseIntegerCmd(KO_BOOL wide, KO_BOOL& valid, std::istringstream& args,
                               android::Parcel& request);
    static int ParseStringCmd(KO_BOOL wide, KO_BOOL& valid, std::istringstream& args,
                              android::Parcel& request);

    // request/page_exchange.cpp: request and reply cross the page

    // Posts the request, waits without a time limit, and prints the reply. 0; or -1 when the
    // exchange failed, silently or after a message.
    int CopyCmdToBuf(const char* cmd, android::Parcel& request);

    // Prints the values after the reply's status. Returns 0, or -1 without a catalogue.
    int FlushCmd(android::Parcel& reply, const std::string& cmd);

    // process_signals.cpp

    // Installs the three handlers and blocks their signals on the calling thread, and so on every
    // thread it starts: the watcher alone lets them in.
    static void CatchSignals();

    // Gives the three signals their default effect, unblocked on the calling thread: for a console
    // without a watcher.
    static void LeaveSignals();

    // Each only stores what the signal asks for.
    static void QuitHandler(int);
    static void SuspendHandler(int);
    static void ResumeHandler(int);

    // The watcher thread's body; never returns.
    static void SignalDectThread(const void*);

    // What the watcher does, under g_mutex: end, stop and continue the process.
    static void OnQuit();
    static void OnSuspend();
    static void OnResume();

private:
    void PrintHelp() const;
    void Leave();
    bool SelectModule(const std::string& word);
    void RunCommand(const char* line);

    // Prints "call failed" for a result that is not 0, and passes the result on.
    static int ReportFailedCall(int result);

    Array<std::string> m_modNames;
    Array<std::string> m_modCmds;     // element i selects module i of m_modNames
    Array<std::string> m_curModCmds;  // the current module's command words
    std::string m_strCurMod;          // empty while no module is selected
    std::int32_t m_bRunning = 0;
    KoStream m_stream;
    pid_t m_pid = 0;
    std::unique_ptr<KoFileParse> m_pFileParse;  // null until LoadConfig
    std::string m_strPrompt;
    void (*m_pfnRelease)(const void*) = nullptr;
    KoMWThread m_sigThread;
    PageLock m_pageLock;  // on the file that is mapped
};

// The default release callback; does nothing.
void Release(const void*);

// The single console object; set before the watcher thread starts and never changed after.
extern KoCmdDebug* g_pCmdDebug;

// Path of the page file.
extern std::string g_strSwapFile;

// Serialises the signal actions.
extern KoMutex g_mutex;

// The mapped page; MAP_FAILED while there is none.
extern SharePage* g_pSharePage;

// What the last signal asks for; written by the handlers, acted on by the watcher thread.
extern std::atomic<std::int32_t> g_sigState;
static_assert(std::atomic<std::int32_t>::is_always_lock_free, "written in signal handlers");

enum SigState : std::int32_t {
    kSigQuit = 0,
    kSigSuspend = 1,
    kSigResume = 2,
    kSigNone = 3,
};

// Scratch tables of the command loop: the words offered to completion.
extern char* g_modCmdTable[kWordTableSize];
extern char* g_cmdTable[kWordTableSize];
