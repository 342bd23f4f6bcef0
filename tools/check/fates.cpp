#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <unordered_map>

#include "lineedit/mod_info.h"
#include "tools/check/check.h"
#include "tools/text.h"

namespace {

using Fate = KoFileParse::Fate;

// Words what the filing did, and what stored blocks are to each other.
class FateCheck {
public:
    FateCheck(const CheckedCatalogue& checked, FindingList& moduleFindings,
              FindingList& commandFindings);

    void CheckModule(const ModuleBlock& block) const;
    void CheckCommand(const CmdBlock& block);

    // Once all commands have been seen.
    void CheckGroups() const;
    void CheckModulesWithoutCommands() const;

private:
    void CheckShadowed(const CmdBlock& block) const;
    void CheckBelonging(const CmdBlock& block) const;
    void CheckTaken(const CmdBlock& block) const;
    void CheckInstructionUse(const CmdBlock& block);
    void NoteNames(const CmdBlock& block);

    const ModuleBlock& BlockOf(const KoFileParse::KoModuleInfo& module) const {
        return *m_moduleBlocks.at(&module);
    }

    const KoFileParse& m_catalogue;
    FindingList& m_moduleFindings;
    FindingList& m_commandFindings;
    // The blocks that the console has, by its records.
    std::unordered_map<const KoFileParse::KoModuleInfo*, const ModuleBlock*> m_moduleBlocks;
    std::unordered_map<const KoFileParse::KoCmdInfo*, const CmdBlock*> m_cmdBlocks;
    std::unordered_map<std::string, const ModuleBlock*> m_selected;  // by the word that selects it
    std::set<std::string> m_named;                                   // what "belong module" says
    std::map<std::int32_t, const CmdBlock*> m_byNumber;  // the first of each instruction number
};

FateCheck::FateCheck(const CheckedCatalogue& checked, FindingList& moduleFindings,
                     FindingList& commandFindings)
    : m_catalogue(checked.catalogue),
      m_moduleFindings(moduleFindings),
      m_commandFindings(commandFindings) {
    for (const ModuleBlock& block : checked.modules.blocks) {
        if (block.stored.fate == Fate::kStored) {
            m_moduleBlocks.emplace(block.stored.module, &block);
        }
    }
    for (const CmdBlock& block : checked.commands.blocks) {
        if (block.stored.fate == Fate::kStored) {
            m_cmdBlocks.emplace(block.stored.cmd, &block);
        }
    }
    // A line selects the first module of its word in the order of the names.
    for (const auto& [name, module] : m_catalogue.AllModules()) {
        if (!module.m_strCmd.empty()) {
            m_selected.emplace(module.m_strCmd, &BlockOf(module));
        }
    }
}

void FateCheck::CheckModule(const ModuleBlock& block) const {
    const std::string& name = block.record.m_strName;
    const std::string& word = block.record.m_strCmd;
    if (block.stored.fate == Fate::kTaken) {
        m_moduleFindings.Error(
            block.title.line, "the module " + Quoted(name) + " is defined at " +
                                  m_moduleFindings.Place(BlockOf(*block.stored.module).title.line) +
                                  " already: this block is lost");
        return;
    }
    if (word.empty() || m_selected.at(word) == &block) {
        return;
    }
    const ModuleBlock& first = *m_selected.at(word);
    m_moduleFindings.Error(
        block.LineOf(kCommandKey),
        "the word " + Quoted(word) + " selects the module " + Quoted(first.record.m_strName) +
            " of " + m_moduleFindings.Place(first.LineOf(kCommandKey)) + ", never " + Quoted(name));
}

void FateCheck::CheckCommand(const CmdBlock& block) {
    CheckShadowed(block);
    NoteNames(block);
    switch (block.stored.fate) {
        case Fate::kStored:
            CheckInstructionUse(block);
            break;
        case Fate::kTaken:
            CheckTaken(block);
            break;
        default:
            CheckBelonging(block);
            break;
    }
}

void FateCheck::CheckShadowed(const CmdBlock& block) const {
    const auto module = m_selected.find(block.record.m_strCmd);
    if (module != m_selected.end()) {
        m_commandFindings.Error(block.LineOf(kCommandKey),
                                "the word " + Quoted(block.record.m_strCmd) +
                                    " is shadowed: it selects the module " +
                                    Quoted(module->second->record.m_strName) + " of " +
                                    m_moduleFindings.Place(module->second->LineOf(kCommandKey)));
    }
}

void FateCheck::NoteNames(const CmdBlock& block) {
    m_named.insert(block.record.m_strBelongMod);
    for (const KeyRow& stray : block.strays) {
        if (stray.word == kBelongModKey.word) {
            m_named.insert(stray.Value());
        }
    }
}

void FateCheck::CheckBelonging(const CmdBlock& block) const {
    const bool given = block.Find(kBelongModKey) != nullptr;
    const std::string name = Quoted(block.record.m_strBelongMod);
    const std::size_t line = block.LineOf(kBelongModKey);
    if (!given && block.Lost(kBelongModKey)) {
        return;  // reported with the row that ended the block
    }
    if (block.stored.fate == Fate::kNoNumber) {
        m_commandFindings.Error(
            line, "the belong module " + name + ", defined at " +
                      m_moduleFindings.Place(BlockOf(*block.place.module).title.line) +
                      ", has no instruction: the block is lost");
    } else if (given) {
        m_commandFindings.Error(
            line, "the belong module " + name + " names no module: the block is lost");
    } else {
        m_commandFindings.Error(line, "the block " + Quoted(block.record.m_strName) +
                                          " has no \"belong module\": it is lost");
    }
}

void FateCheck::CheckTaken(const CmdBlock& block) const {
    const CmdBlock& first = *m_cmdBlocks.at(block.stored.cmd);
    const std::string& other = first.record.m_strBelongMod;
    const std::string sharing =
        other == block.record.m_strBelongMod
            ? ""
            : " for the module " + Quoted(other) + ", which has the same instruction";
    m_commandFindings.Error(block.LineOf(kCommandKey),
                            "the command word " + Quoted(block.record.m_strCmd) +
                                " is defined at " +
                                m_commandFindings.Place(first.LineOf(kCommandKey)) + " already" +
                                sharing + ": this block is lost");
}

void FateCheck::CheckInstructionUse(const CmdBlock& block) {
    if (block.Find(kInstructionKey) == nullptr) {
        return;
    }
    const CmdBlock& first = *m_byNumber.emplace(block.record.m_instruct, &block).first->second;
    const auto compare = [&](const ConfigKey& key, const std::string& here,
                             const std::string& there) {
        if (here != there) {
            m_commandFindings.Warning(block.LineOf(kInstructionKey),
                                      "the instruction " + Hex(block.record.m_instruct) +
                                          " has the " + std::string(key.word) + " " + Quoted(here) +
                                          " here and " + Quoted(there) + " at " +
                                          m_commandFindings.Place(first.LineOf(kInstructionKey)));
        }
    };
    compare(kParaFormatKey, block.record.m_strParaFmt, first.record.m_strParaFmt);
    compare(kPrintFmtKey, block.record.m_strPrintFmt, first.record.m_strPrintFmt);
}

// Reports a group of words that completion cannot offer in full; `blocks` finds a record's block.
template <typename Table, typename Blocks>
void CheckGroup(const Table& group, const Blocks& blocks, const std::string& what,
                FindingList& findings) {
    if (group.size() <= kWordTableSize) {
        return;
    }
    const auto& [key, record] = *std::next(group.begin(), kWordTableSize);
    findings.Error(blocks.at(&record)->title.line,
                   what + " are " + std::to_string(group.size()) + ": completion offers " +
                       std::to_string(kWordTableSize) + " of them and leaves out " + Quoted(key) +
                       " and what sorts behind it");
}

void FateCheck::CheckGroups() const {
    CheckGroup(m_catalogue.AllModules(), m_moduleBlocks, "the modules", m_moduleFindings);
    for (const auto& [number, table] : m_catalogue.AllCmds()) {
        CheckGroup(
            table, m_cmdBlocks,
            "the command words of the module instruction " + Hex(static_cast<std::int32_t>(number)),
            m_commandFindings);
    }
}

void FateCheck::CheckModulesWithoutCommands() const {
    for (const auto& [name, module] : m_catalogue.AllModules()) {
        if (m_named.find(name) == m_named.end()) {
            m_moduleFindings.Warning(BlockOf(module).title.line,
                                     "the module " + Quoted(name) + " has no commands");
        }
    }
}

}  // namespace

void CheckFates(const CheckedCatalogue& checked, FindingList& moduleFindings,
                FindingList& commandFindings) {
    FateCheck check(checked, moduleFindings, commandFindings);
    for (const ModuleBlock& block : checked.modules.blocks) {
        check.CheckModule(block);
    }
    for (const CmdBlock& block : checked.commands.blocks) {
        check.CheckCommand(block);
    }
    check.CheckGroups();
    check.CheckModulesWithoutCommands();
}
