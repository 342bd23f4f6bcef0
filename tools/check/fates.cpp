#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <unordered_map>

#include "lineedit/mod_info.h"
#include "tools/check/check.h"
#include "tools/nearest.h"
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
    void CheckBelonging(const CmdBlock& block);
    void CheckTaken(const CmdBlock& block) const;
    void NoteName(const KeyRow& stray);
    void NoteLostTitles(const std::vector<KeyRow>& strays);
    std::string NameRemedy(const std::string& name);

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
    std::set<std::string> m_lostTitles;                       // of modules; rows.cpp reports them
    std::unordered_map<std::string, std::string> m_remedies;  // by the name of no module
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
    NoteLostTitles(checked.modules.head);
    for (const ModuleBlock& block : checked.modules.blocks) {
        NoteLostTitles(block.strays);
    }
    for (const KeyRow& stray : checked.commands.head) {
        NoteName(stray);
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
            block.title.line,
            "the module " + Quoted(name) + " is defined at " +
                m_moduleFindings.Place(BlockOf(*block.stored.module).title.line) +
                " already: this block is lost",
            "rename one");
        return;
    }
    if (word.empty() || m_selected.at(word) == &block) {
        return;
    }
    const ModuleBlock& first = *m_selected.at(word);
    m_moduleFindings.Error(
        block.LineOf(kCommandKey),
        "the word " + Quoted(word) + " selects the module " + Quoted(first.record.m_strName) +
            " of " + m_moduleFindings.Place(first.LineOf(kCommandKey)) + ", never " + Quoted(name),
        "give one of them another word");
}

void FateCheck::CheckCommand(const CmdBlock& block) {
    CheckShadowed(block);
    m_named.insert(block.record.m_strBelongMod);
    for (const KeyRow& stray : block.strays) {
        NoteName(stray);
    }
    if (block.stored.fate == Fate::kTaken) {
        CheckTaken(block);
    } else if (block.stored.fate != Fate::kStored) {
        CheckBelonging(block);
    }
}

void FateCheck::CheckShadowed(const CmdBlock& block) const {
    const auto module = m_selected.find(block.record.m_strCmd);
    if (module != m_selected.end()) {
        m_commandFindings.Error(block.LineOf(kCommandKey),
                                "the word " + Quoted(block.record.m_strCmd) +
                                    " is shadowed: it selects the module " +
                                    Quoted(module->second->record.m_strName) + " of " +
                                    m_moduleFindings.Place(module->second->LineOf(kCommandKey)),
                                "choose another");
    }
}

void FateCheck::NoteName(const KeyRow& stray) {
    if (stray.word == kBelongModKey.word) {
        m_named.insert(stray.Value());
    }
}

void FateCheck::NoteLostTitles(const std::vector<KeyRow>& strays) {
    for (const KeyRow& stray : strays) {
        const std::string_view title = TitleMeant(stray.row.text);
        if (stray.word.empty() && !title.empty()) {
            m_lostTitles.emplace(title);
        }
    }
}

// What to write instead of the name that no module has.
std::string FateCheck::NameRemedy(const std::string& name) {
    constexpr std::size_t kMostSearches = 8;  // each looks at every module
    const std::string otherwise = "write the title of a module";
    const auto selected = m_selected.find(name);
    if (selected != m_selected.end()) {
        return DidYouMean(selected->second->record.m_strName, otherwise);
    }
    if (m_remedies.count(name) == 0 && m_remedies.size() < kMostSearches) {
        const auto names = m_catalogue.GetModNames();
        m_remedies[name] = DidYouMean(Nearest(name, {names.begin(), names.end()}), otherwise);
    }
    const auto remedy = m_remedies.find(name);
    return remedy != m_remedies.end() ? remedy->second : otherwise;
}

void FateCheck::CheckBelonging(const CmdBlock& block) {
    const bool given = block.Find(kBelongModKey) != nullptr;
    const std::string& name = block.record.m_strBelongMod;
    const std::size_t line = block.LineOf(kBelongModKey);
    if (block.IsLost(kBelongModKey) ||
        (block.stored.fate == Fate::kNoModule && m_lostTitles.count(name) == 1)) {
        return;  // reported with the row that ended the block, or that should have been the title
    }
    if (block.stored.fate == Fate::kNoNumber) {
        m_commandFindings.Error(
            line,
            "the belong module " + Quoted(name) + ", defined at " +
                m_moduleFindings.Place(BlockOf(*block.stored.module).title.line) +
                ", has no instruction: the block is lost",
            "give the module one");
    } else if (given) {
        m_commandFindings.Error(
            line, "the belong module " + Quoted(name) + " names no module: the block is lost",
            NameRemedy(name));
    } else {
        m_commandFindings.Error(
            line,
            "the block " + Quoted(block.record.m_strName) + " has no \"belong module\": it is lost",
            "add the title of its module");
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
                                sharing + ": this block is lost",
                            "rename one");
}

// Reports a group of words that completion cannot offer in full; `blocks` finds a record's block.
template <typename Table, typename Blocks>
void CheckGroup(const Table& group, const Blocks& blocks, const std::string& what,
                const std::string& remedy, FindingList& findings) {
    if (group.size() <= kWordTableSize) {
        return;
    }
    const auto& [key, record] = *std::next(group.begin(), kWordTableSize);
    findings.Error(blocks.at(&record)->title.line,
                   what + " are " + std::to_string(group.size()) + ": completion offers " +
                       std::to_string(kWordTableSize) + " of them and leaves out " + Quoted(key) +
                       " and what sorts behind it",
                   remedy);
}

void FateCheck::CheckGroups() const {
    CheckGroup(m_catalogue.AllModules(), m_moduleBlocks, "the modules", "they can still be typed",
               m_moduleFindings);
    for (const auto& [number, table] : m_catalogue.AllCmds()) {
        CheckGroup(
            table, m_cmdBlocks,
            "the command words of the module instruction " + Hex(static_cast<std::int32_t>(number)),
            "split the module; they can still be typed", m_commandFindings);
    }
}

void FateCheck::CheckModulesWithoutCommands() const {
    for (const auto& [name, module] : m_catalogue.AllModules()) {
        const auto number = static_cast<unsigned int>(module.m_instruct);
        if (m_named.count(name) == 0 && m_catalogue.AllCmds().at(number).empty()) {
            m_moduleFindings.Warning(BlockOf(module).title.line,
                                     "the module " + Quoted(name) + " has no commands",
                                     "add one, or mend the \"belong module\" that should name it");
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
