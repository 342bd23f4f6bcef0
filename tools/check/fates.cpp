#include <iterator>
#include <map>
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
        "{} number {}: completion offers {} of them, not {} or any after it",
        {what, std::to_string(group.size()), std::to_string(kWordTableSize), Quoted(key)}, remedy);
}

// Words what became of the blocks, and what stored blocks are to each other.
class FateCheck {
public:
    explicit FateCheck(CheckedCatalogue& checked)
        : m_catalogue(checked.catalogue),
          m_modules(checked.modules.findings),
          m_commands(checked.commands.findings),
          m_titlesMeant(checked.modules.titlesMeant) {
        for (const ModuleBlock& block : checked.modules.blocks) {
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
                block.title.line, "the module {} is already defined at {}: this block is ignored",
                {Quoted(name), m_modules.Place(BlockOf(*block.stored.module).title.line)},
                "rename one");
            return;
        }
        if (word.empty() || m_selected.at(word) == &block) {
            return;
        }
        const ModuleBlock& first = *m_selected.at(word);
        m_modules.Error(block.LineOf(kCommandKey),
                        "the word {} selects the module {} of {}, never {}",
                        {Quoted(word), Quoted(first.record.m_strName),
                         m_modules.Place(first.LineOf(kCommandKey)), Quoted(name)},
                        "give one of them another word");
    }

    void CheckCommand(const CmdBlock& block) {
        CheckShadowed(block);
        if (block.stored.fate == Fate::kTaken && !block.record.m_strCmd.empty()) {
            CheckTaken(block);
        } else if (block.stored.fate == Fate::kNoModule || block.stored.fate == Fate::kNoNumber) {
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

    // Each name that costs blocks is one finding, unless its cause is reported by itself: an
    // instruction that does not count or is lost, or a row that was meant as the title.
    void CheckIgnored() {
        for (const auto& [name, blocks] : m_ignored) {
            const ModuleInfo* module = blocks[0]->stored.module;
            if (module != nullptr) {
                CheckNumberless(BlockOf(*module), blocks);
            } else if (m_titlesMeant.count(name) == 0) {
                CheckUnknown(name, blocks);
            }
        }
    }

    void CheckModulesWithoutCommands() {
        for (const auto& [name, module] : m_catalogue.AllModules()) {
            const auto number = static_cast<unsigned int>(module.m_instruct);
            if (m_named.count(name) == 0 && TrimConfigText(name) == name &&
                m_catalogue.AllCmds().at(number).empty()) {
                m_modules.Warning(BlockOf(module).title.line, "the module {} has no commands",
                                  {Quoted(name)},
                                  "add one, or fix the \"belong module\" that should name it");
            }
        }
    }

private:
    using Blocks = std::vector<const CmdBlock*>;

    void CheckShadowed(const CmdBlock& block) {
        const auto module = m_selected.find(block.record.m_strCmd);
        if (module != m_selected.end()) {
            m_commands.Error(
                block.LineOf(kCommandKey),
                "the word {} is shadowed: it selects the module {} of {}",
                {Quoted(block.record.m_strCmd), Quoted(module->second->record.m_strName),
                 m_modules.Place(module->second->LineOf(kCommandKey))},
                "choose another");
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
            "the command word {} is already defined at {}{}: this block is ignored",
            {Quoted(block.record.m_strCmd), m_commands.Place(first.LineOf(kCommandKey)), sharing},
            "rename one");
    }

    void CheckBelonging(const CmdBlock& block) {
        if (block.IsGiven(kBelongModKey)) {
            m_ignored[block.record.m_strBelongMod].push_back(&block);
        } else if (!block.IsLost(kBelongModKey)) {
            m_commands.Error(block.title.line,
                             "the block {} has no \"belong module\": it is ignored",
                             {Quoted(block.record.m_strName)}, "add the title of its module");
        }
    }

    void CheckNumberless(const ModuleBlock& module, const Blocks& blocks) {
        if (module.Find(kInstructionKey) == nullptr && !module.IsLost(kInstructionKey)) {
            m_modules.Error(module.title.line, "the module {} has no \"instruction\": {}",
                            {Quoted(module.record.m_strName), Ignored(blocks)}, "add one");
        }
    }

    // The title is to blame if several blocks agree on a name and none has that of the nearest
    // module.
    void CheckUnknown(const std::string& name, const Blocks& blocks) {
        const ModuleInfo* nearest = NearestModule(name);
        const bool isNew = nearest != nullptr && m_named.insert(nearest->m_strName).second;
        if (isNew && blocks.size() > 1 && m_selected.count(name) == 0) {
            m_modules.Error(BlockOf(*nearest).title.line,
                            "no block belongs to the module {}, but to {}: {}",
                            {Quoted(nearest->m_strName), Quoted(name), Ignored(blocks)},
                            DidYouMean("[" + name + "]", ""));
            return;
        }
        m_commands.Error(blocks[0]->LineOf(kBelongModKey), "no module is called {}: {}",
                         {Quoted(name), Ignored(blocks)},
                         DidYouMean(nearest != nullptr ? nearest->m_strName : "",
                                    "write the title of a module"));
    }

    // The module that has the name for its word, or the one whose name is nearest; null if none is.
    const ModuleInfo* NearestModule(const std::string& name) {
        constexpr int kMostSearches = 8;  // each looks at every module
        const auto selected = m_selected.find(name);
        if (selected != m_selected.end()) {
            return selected->second->stored.module;
        }
        if (++m_searches > kMostSearches) {
            return nullptr;
        }
        const auto names = m_catalogue.GetModNames();
        const auto nearest =
            m_catalogue.AllModules().find(Nearest(name, {names.begin(), names.end()}));
        return nearest != m_catalogue.AllModules().end() ? &nearest->second : nullptr;
    }

    // "2 blocks ignored (cmds.conf:3, 12)"
    std::string Ignored(const Blocks& blocks) const {
        constexpr std::size_t kMostPlaces = 8;
        std::string places = m_commands.Place(blocks[0]->LineOf(kBelongModKey));
        for (std::size_t i = 1; i < blocks.size() && i <= kMostPlaces; ++i) {
            places += ", " +
                      (i == kMostPlaces ? "..." : std::to_string(blocks[i]->LineOf(kBelongModKey)));
        }
        return FormatText("{} ignored ({})", {Counted(blocks.size(), "block"), places});
    }

    void NoteNames(const std::vector<KeyRow>& strays) {
        for (const KeyRow& stray : strays) {
            if (stray.meant == kBelongModKey.word) {
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
    const std::set<std::string>& m_titlesMeant;                      // of modules
    std::map<std::string, Blocks> m_ignored;  // by a name without a module, or one without a number
    int m_searches = 0;
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
    check.CheckIgnored();
    check.CheckGroups();
    check.CheckModulesWithoutCommands();
}
