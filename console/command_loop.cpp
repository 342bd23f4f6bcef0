#include <cstdio>
#include <cstring>
#include <memory>

#include "console/ko_cmd_debug.h"
#include "platform/is_blank.h"
#include "platform/ko_log.h"
#include "platform/ko_securec.h"

namespace {

// A table of the words for completion, and what its words are called in the log.
struct WordTable {
    char** entries;  // kWordTableSize
    const char* noun;
    bool warned = false;  // an overflow is logged once
};

// Sets the table's entries to the words, which the array goes on owning, and returns how many there
// are. Words beyond the table are not offered by completion but work when typed.
unsigned int FillWordTable(Array<std::string>& words, WordTable& table) {
    unsigned int count = 0;
    for (std::string& word : words.m_list) {
        if (count == kWordTableSize) {
            if (!table.warned) {
                KoLog::PrintLog(ATV_LOG_PRIO_WARN, kLogTag, __func__, __LINE__,
                                "completion offers the first %u of %u %s words", kWordTableSize,
                                words.size(), table.noun);
            }
            table.warned = true;
            break;
        }
        table.entries[count++] = word.data();
    }
    return count;
}

// Copies the words after the first `offset` entries of `regList`.
int CopyWords(char** regList, unsigned int offset, char** words, unsigned int count) {
    if (regList == nullptr) {
        std::puts("regList is null");
        return -1;
    }
    if (words == nullptr) {
        return -1;
    }
    const std::size_t bytes = count * sizeof(*words);
    return memcpy_s(regList + offset, bytes, words, bytes) == 0 ? 0 : -1;
}

}  // namespace

int KoCmdDebug::DoWork() {
    static WordTable modTable = {g_modCmdTable, "module"};
    const unsigned int modCount = FillWordTable(m_modCmds, modTable);
    while (m_bRunning != 0) {
        unsigned int cmdCount = 0;
        char** cmdList = nullptr;
        if (m_strCurMod.empty()) {
            std::printf("%s", m_strPrompt.c_str());
        } else {
            std::printf("%s@%s", m_strCurMod.c_str(), m_strPrompt.c_str());
            GetSupportCmds(&cmdList, &cmdCount);
        }
        std::unique_ptr<char*[]> regList;
        if (cmdCount + modCount == 0) {
            std::puts("Error:modCount+cmdCount=0");
        } else {
            regList.reset(new char*[cmdCount + modCount]);
        }
        if (DoWorkSub(cmdCount, modCount, regList.get(), cmdList, g_modCmdTable) != 0) {
            return -1;
        }
        std::fflush(stdout);
        const char* line = m_stream.Gets();
        if (line == nullptr) {
            return 0;
        }
        if (IsBlank(line) == 0 && std::strcmp(line, "TAB") != 0) {
            Proc(line);
        }
    }
    return 0;
}

int KoCmdDebug::DoWorkSub(unsigned int cmdCount, unsigned int modCount, char** regList,
                          char** cmdList, char** modList) {
    if (modCount != 0) {
        if (CopyWords(regList, 0, modList, modCount) != 0) {
            return -1;
        }
        m_stream.RegistTab(" all mods ", modCount, regList, 1);
    }
    if (cmdCount == 0) {
        return 0;
    }
    if (CopyWords(regList, modCount, cmdList, cmdCount) != 0) {
        return -1;
    }
    m_stream.RegistTab(m_strCurMod + " cmds", cmdCount, regList + modCount, 0);
    return 0;
}

int KoCmdDebug::GetSupportCmds(char*** list, unsigned int* count) {
    if (list == nullptr || count == nullptr || m_pFileParse == nullptr) {
        return -1;
    }
    static WordTable cmdTable = {g_cmdTable, "command"};
    m_curModCmds.m_list =
        m_pFileParse->GetModHoldCmds(m_pFileParse->GetModInstruct(m_strCurMod)).m_list;
    *count = FillWordTable(m_curModCmds, cmdTable);
    *list = g_cmdTable;
    return 0;
}
