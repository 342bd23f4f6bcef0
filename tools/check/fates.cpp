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
using ModuleInfo = KoFileParse::KoModuleInfo;
using CmdInfo = KoFileParse::KoCmdInfo;

// Reports a group of words that completion cannot offer in full; `blocks` finds a record's block.
template <typename Table, typename Blocks>
void CheckGroup(const Table& group, const Blocks& blocks, const std::string& what,
                const std::string& remedy, FindingList& findings) {
    if (group.size() <= kWordTableSize) {
        return;
    }
    const auto& [key, record] = *std::next(group.begin(), kWordTableSize);
    findings.Error(
        blocks.at(&record)->title.line,
        "{} are {}: completion offers {} of them and leaves out {} and what sorts "
        "behind it; {}",
        {what, std::to_string(group.size()), std::to_string(kWordTableSize), Quoted(key), remedy});
}

// Words what became of the blocks, and what stored blocks are to each other.
class FateCheck {
public:
    explicit FateCheck(CheckedCatalogue& checked)
        : m_catalogue(checked.catalogue),
          m_modules(checked.modules.findings),
          m_commands(checked.commands.findings) {
        NoteLostTitles(checked.modules.head);
        for (const ModuleBlock& block : checked.modules.blocks) {
            NoteLostTitles(block.strays);
            if (block.stored.fate == Fate::kStored) {
                m_moduleBlocks.emplace(block.stored.module, &block);
            }
        }
        NoteNames(checked.commands.head);
        for (const CmdBlock& block : checked.commands.blocks) {
            NoteNames(block.strays);
            m_named.insert(block.record.m_strBelongMod);
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

    void CheckModule(const ModuleBlock& block) {
        const std::string& name = block.record.m_strName;
        const std::string& word = block.record.m_strCmd;
        if (block.stored.fate == Fate::kTaken) {
            m_modules.Error(
                block.title.line,
                "the module {} is defined at {} already: this block is lost; rename one",
                {Quoted(name), m_modules.Place(BlockOf(*block.stored.module).title.line)});
            return;
        }
        if (word.empty() || m_selected.at(word) == &block) {
            return;
        }
        const ModuleBlock& first = *m_selected.at(word);
        m_modules.Error(block.LineOf(kCommandKey),
                        "the word {} selects the module {} of {}, never {}; "
                        "give one of them another word",
                        {Quoted(word), Quoted(first.record.m_strName),
                         m_modules.Place(first.LineOf(kCommandKey)), Quoted(name)});
    }

    void CheckCommand(const CmdBlock& block) {
        CheckShadowed(block);
        if (block.stored.fate == Fate::kTaken) {
            CheckTaken(block);
        } else if (block.stored.fate != Fate::kStored) {
            CheckBelonging(block);
        }
    }

    void CheckGroups() {
        CheckGroup(m_catalogue.AllModules(), m_moduleBlocks, "the modules",
                   "they can still be typed", m_modules);
        for (const auto& [number, table] : m_catalogue.AllCmds()) {
            CheckGroup(table, m_cmdBlocks,
                       "the command words of the module instruction " +
                           Hex(static_cast<std::int32_t>(number)),
                       "split the module; they can still be typed", m_commands);
        }
    }

    void CheckModulesWithoutCommands() {
        for (const auto& [name, module] : m_catalogue.AllModules()) {
            const auto number = static_cast<unsigned int>(module.m_instruct);
            if (m_named.count(name) == 0 && m_catalogue.AllCmds().at(number).empty()) {
                m_modules.Warning(BlockOf(module).title.line,
                                  "the module {} has no commands; add one, or mend the "
                                  "\"belong module\" that should name it",
                                  {Quoted(name)});
            }
        }
    }

private:
    void CheckShadowed(const CmdBlock& block) {
        const auto module = m_selected.find(block.record.m_strCmd);
        if (module != m_selected.end()) {
            m_commands.Error(
                block.LineOf(kCommandKey),
                "the word {} is shadowed: it selects the module {} of {}; choose another",
                {Quoted(block.record.m_strCmd), Quoted(module->second->record.m_strName),
                 m_modules.Place(module->second->LineOf(kCommandKey))});
        }
    }

    void CheckTaken(const CmdBlock& block) {
        const CmdBlock& first = *m_cmdBlocks.at(block.stored.cmd);
        const std::string& other = first.record.m_strBelongMod;
        const std::string sharing =
            other == block.record.m_strBelongMod
                ? ""
                : FormatText(" for the module {}, which has the same instruction", {Quoted(other)});
        m_commands.Error(
            block.LineOf(kCommandKey),
            "the command word {} is defined at {} already{}: this block is lost; rename one",
            {Quoted(block.record.m_strCmd), m_commands.Place(first.LineOf(kCommandKey)), sharing});
    }

    void CheckBelonging(const CmdBlock& block) {
        const std::string& name = block.record.m_strBelongMod;
        const std::size_t line = block.LineOf(kBelongModKey);
        if (block.IsLost(kBelongModKey) ||
            (block.stored.fate == Fate::kNoModule && m_lostTitles.count(name) == 1)) {
            return;  // reported with the row that ended the block or was meant as the title
        }
        if (block.stored.fate == Fate::kNoNumber) {
            m_commands.Error(
                line,
                "the belong module {}, defined at {}, has no instruction: the block is lost; "
                "give the module one",
                {Quoted(name), m_modules.Place(BlockOf(*block.stored.module).title.line)});
        } else if (block.Find(kBelongModKey) != nullptr) {
            m_commands.Error(line, "the belong module {} names no module: the block is lost; {}",
                             {Quoted(name), NameRemedy(name)});
        } else {
            m_commands.Error(
                line,
                "the block {} has no \"belong module\": it is lost; add the title of its module",
                {Quoted(block.record.m_strName)});
        }
    }

    // What to write instead of the name that no module has.
    std::string NameRemedy(const std::string& name) {
        constexpr std::size_t kMostSearches = 8;  // each looks at every module
        const std::string otherwise = "write the title of a module";
        const auto selected = m_selected.find(name);
        if (selected != m_selected.end()) {
            return DidYouMean(selected->second->record.m_strName, otherwise);
        }
        const auto [remedy, isNew] = m_remedies.try_emplace(name, otherwise);
        if (isNew && m_remedies.size() <= kMostSearches) {
            const auto names = m_catalogue.GetModNames();
            remedy->second = DidYouMean(Nearest(name, {names.begin(), names.end()}), otherwise);
        }
        return remedy->second;
    }

    void NoteLostTitles(const std::vector<KeyRow>& strays) {
        for (const KeyRow& stray : strays) {
            const std::string_view title = TitleMeant(stray.row.text);
            if (stray.word.empty() && !title.empty()) {
                m_lostTitles.emplace(title);
            }
        }
    }

    void NoteNames(const std::vector<KeyRow>& strays) {
        for (const KeyRow& stray : strays) {
            if (stray.word == kBelongModKey.word) {
                m_named.insert(stray.Value());
            }
        }
    }

    const ModuleBlock& BlockOf(const ModuleInfo& module) const {
        return *m_moduleBlocks.at(&module);
    }

    const KoFileParse& m_catalogue;
    FindingList& m_modules;  // the findings about each file
    FindingList& m_commands;
    // The blocks that the console has, by its records.
    std::unordered_map<const ModuleInfo*, const ModuleBlock*> m_moduleBlocks;
    std::unordered_map<const CmdInfo*, const CmdBlock*> m_cmdBlocks;
    std::unordered_map<std::string, const ModuleBlock*> m_selected;  // by the word that selects it
    std::set<std::string> m_named;                                   // what "belong module" says
    std::set<std::string> m_lostTitles;                       // of modules; rows.cpp reports them
    std::unordered_map<std::string, std::string> m_remedies;  // by the name of no module
};

}  // namespace

void CheckFates(CheckedCatalogue& checked) {
    FateCheck check(checked);
    for (const ModuleBlock& block : checked.modules.blocks) {
        check.CheckModule(block);
    }
    for (const CmdBlock& block : checked.commands.blocks) {
        check.CheckCommand(block);
    }
    check.CheckGroups();
    check.CheckModulesWithoutCommands();
}
