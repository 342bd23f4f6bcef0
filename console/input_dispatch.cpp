#include <cstdio>
#include <cstring>
#include <iomanip>
#include <sstream>

#include "catalogue/word_search.h"
#include "console/ko_cmd_debug.h"
#include "console/prompt_words.h"
#include "format/argument_text.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kTextSize = 256;  // bytes of a word or an argument text, terminator included

static_assert(kArgumentTextLimit + sizeof(" ") == kTextSize, "the text takes a blank after it");

void ReportIllegalCommand() {
    std::puts("Error:Illegal Command.");
}

}  // namespace

void KoCmdDebug::Proc(const char* line) {
    if (kHelpWord.IsTyped(line)) {
        PrintHelp();
        return;
    }
    if (kQuitWord.IsTyped(line)) {
        Leave();
        return;
    }
    // A module's word is taken for that module inside another one too, before any command of that
    // name.
    if (SelectModule(line)) {
        return;
    }
    if (m_strCurMod.empty()) {
        ReportIllegalCommand();
        return;
    }
    RunCommand(line);
}

void KoCmdDebug::PrintHelp() const {
    std::puts("======= Command ============== Description ============");
    const auto printRow = [](const std::string& word, const std::string& description) {
        std::printf("\t%s\t\t%s\n", word.c_str(), description.c_str());
    };
    if (m_strCurMod.empty()) {
        for (const std::string& name : m_modNames) {
            printRow(m_pFileParse->GetModToCmd(name), m_pFileParse->GetModDescrip(name));
        }
        return;
    }
    const std::int32_t module = m_pFileParse->GetModInstruct(m_strCurMod);
    for (const std::string& word : m_curModCmds) {
        printRow(word, m_pFileParse->GetCmdDescrip(module, word));
    }
}

void KoCmdDebug::Leave() {
    if (m_strCurMod.empty()) {
        m_bRunning = 0;
    } else {
        m_strCurMod.clear();
    }
}

bool KoCmdDebug::SelectModule(const std::string& word) {
    const auto position = FindWord(m_modCmds, word);
    if (!position) {
        return false;
    }
    m_strCurMod = m_modNames[*position];
    m_curModCmds = m_pFileParse->GetModHoldCmds(m_pFileParse->GetModInstruct(m_strCurMod));
    return true;
}

void KoCmdDebug::RunCommand(const char* line) {
    char cmd[kTextSize] = {};
    char args[kTextSize] = {};
    SeparateCmd(line, cmd, args, sizeof(cmd), sizeof(args));
    if (!FindWord(m_curModCmds, cmd)) {
        ReportIllegalCommand();
        return;
    }
    HandleCmd(cmd, args, sizeof(cmd), sizeof(args));
}

int KoCmdDebug::SeparateCmd(const char* line, char* cmd, char* args, unsigned int, unsigned int) {
    if (line == nullptr || cmd == nullptr || args == nullptr) {
        return -1;
    }
    std::istringstream stream(line);
    // A longer word is truncated, and matches no command: their words are shorter.
    stream >> std::setw(kTextSize) >> cmd;
    stream.get(args, kTextSize, '\0');
    return 0;
}

int KoCmdDebug::HandleCmd(const char* cmd, const char* args, unsigned int, unsigned int) {
    if (cmd == nullptr || args == nullptr) {
        return -1;
    }
    char line[kTextSize] = {};
    const std::size_t length = std::strlen(args);
    if (length > kArgumentTextLimit) {
        std::printf("Error:arg size:%d too large\n", static_cast<int>(length));
        return -1;
    }
    if (strncpy_s(line, kTextSize, args, length) != 0 ||
        strcpy_s(line + length, kTextSize - length, " ") != 0) {
        return -1;
    }
    std::istringstream stream(line);
    android::Parcel request;
    const int encoded = ReportFailedCall(ParseCmd(cmd, request, stream));
    if (encoded != 0) {
        return encoded;
    }
    return ReportFailedCall(CopyCmdToBuf(cmd, request));
}
