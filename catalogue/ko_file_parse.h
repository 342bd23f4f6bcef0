#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "common/ko_mw_array.h"
#include "platform/ko_file.h"

// The console's catalogue: modules and their commands, read once from the modules file and the
// commands file and only queried afterwards. Queries return copies; texts are compared byte for
// byte. Main thread only.
class KoFileParse {
public:
    struct KoModuleInfo {
        std::string m_strName;
        std::string m_strCmd;  // the word that selects the module at the prompt
        std::int32_t m_instruct = -1;
        std::string m_strDescrip;
    };

    struct KoCmdInfo {
        std::string m_strName;  // the block's title; never looked up
        std::string m_strCmd;   // the word typed at the prompt
        std::string m_strBelongMod;
        std::int32_t m_instruct = -1;
        std::string m_strParaFmt;
        std::string m_strPrintFmt;
        Array<std::string> m_printTags;
        std::string m_strDescrip;

        // Empties every text and the tags and sets the instruction number to -1.
        void Clear();
    };

    // Loads the modules file, then the commands file in any case. Prints a line for each that fails
    // and keeps what was read before the failure. Called once.
    void Init();

    // 0 when both files were read, 1 when either failed.
    std::int32_t GetIOExceptionStatus() const { return m_ioExceptionStatus; }

    // Each loads one file and returns 0, or -1 after printing why.
    int ParseModules();
    int ParseCmds();

    // Each reads all blocks of an open file and returns 0; then the reader stays the caller's. -1
    // for a null reader, or when the reader could not step back: then it has been destroyed.
    int ParseModulePtr(KoFile* reader);
    int ParseCmdPtr(KoFile* reader);

    // Module queries; -1 or an empty text for an unknown name. Names come in byte order, and
    // element i of GetModCmds selects element i of GetModNames.
    Array<std::string> GetModNames() const;
    Array<std::string> GetModCmds() const;
    std::int32_t GetModInstruct(const std::string& module) const;
    std::string GetModToCmd(const std::string& module) const;
    std::string GetModDescrip(const std::string& module) const;

    // Command queries by the module's instruction number; an empty list, an empty text or -1 when
    // the number or the word is unknown. Modules that share a number share their commands.
    Array<std::string> GetModHoldCmds(int instruct) const;
    std::string GetCmdPrintFmt(int instruct, const std::string& cmd) const;
    Array<std::string> GetCmdPrintTags(int instruct, const std::string& cmd) const;
    std::string GetCmdParaFmt(int instruct, const std::string& cmd) const;
    std::int32_t GetCmdInstruct(int instruct, const std::string& cmd) const;
    std::string GetCmdDescrip(int instruct, const std::string& cmd) const;

    // The whole tables, for a service that finds a command by its own instruction number and for
    // tools.
    using ModuleTable = std::map<std::string, KoModuleInfo>;
    using CmdTable = std::map<std::string, KoCmdInfo>;
    const ModuleTable& AllModules() const { return m_modInfos; }
    const std::map<unsigned int, CmdTable>& AllCmds() const { return m_cmdInfos; }

    // What became of a block.
    enum class Fate {
        kStored,
        kTaken,     // dropped: an earlier block has the module's name or, in its table, the word
        kNoModule,  // dropped: "belong module" names none
        kNoNumber,  // dropped: the module has no instruction number
    };
    struct StoredModule {
        Fate fate;
        const KoModuleInfo* module;  // the one of that name in the catalogue
    };
    struct StoredCmd {
        Fate fate;
        const KoModuleInfo* module;  // null when there is none of that name
        const KoCmdInfo* cmd;        // the one of that word in the table; null without a table
    };

    // Each stores one block and returns its fate; the record is moved from in any case. Store a
    // module before its commands. The pointers are valid as long as the catalogue.
    StoredModule StoreModule(KoModuleInfo&& module);
    StoredCmd StoreCmd(KoCmdInfo&& cmd);

    // Row tests: is the row a title, or a key row of that key word. Each prints a line for a row or
    // key that is over its limit and answers false.
    static bool IsBlockTitile(const std::string& row);
    static bool IsCommand(const std::string& row);
    static bool IsInstruction(const std::string& row);
    static bool IsDescription(const std::string& row);
    static bool IsBelongMod(const std::string& row);
    static bool IsPrintFmt(const std::string& row);
    static bool IsPrintTags(const std::string& row);
    static bool IsParaFormat(const std::string& row);

    // Value readers, for a row that its test has accepted. Each prints a line for a value that is
    // over its limit and returns the empty value (0 for the instruction number).
    static std::string GetBlockTitile(const std::string& row);
    static std::string GetCommand(const std::string& row);
    static std::string GetDescription(const std::string& row);
    static std::string GetBelongMod(const std::string& row);
    static std::string GetPrintFmt(const std::string& row);
    static std::string GetParaFormat(const std::string& row);
    static std::int32_t GetInstruction(const std::string& row);
    static Array<std::string> GetPrintTags(const std::string& row);

private:
    const KoModuleInfo* FindModule(const std::string& module) const;
    const KoCmdInfo* FindCmd(int instruct, const std::string& cmd) const;

    ModuleTable m_modInfos;                       // by name
    std::map<unsigned int, CmdTable> m_cmdInfos;  // by the module's number, then by command word
    std::int32_t m_ioExceptionStatus = 0;
};
