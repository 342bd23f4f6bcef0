#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "catalogue/row_grammar.h"
#include "console/ko_cmd_debug.h"
#include "tools/catalogue_blocks.h"
#include "tools/check.h"
#include "tools/text.h"

namespace {

using BlockTable = std::map<std::string, const CatalogueBlock*>;  // in the console's order

// Stores the blocks by the console's rules and reports what the rules lose.
class Lookup {
public:
    Lookup(FindingList& moduleFindings, FindingList& commandFindings)
        : m_moduleFindings(moduleFindings), m_commandFindings(commandFindings) {}

    void StoreModule(const CatalogueBlock& block);
    void StoreCommand(const CatalogueBlock& block);

    // Once all blocks are stored.
    void CheckModuleWords() const;
    void CheckGroups() const;
    void CheckModulesWithoutCommands() const;

private:
    bool BelongsToModule(const CatalogueBlock& block) const;
    void CheckShadowed(const CatalogueBlock& block) const;
    void CheckInstructionUse(const CatalogueBlock& block);
    static void CheckGroup(const BlockTable& group, const std::string& what, FindingList& findings);

    FindingList& m_moduleFindings;
    FindingList& m_commandFindings;
    BlockTable m_modules;                            // by name
    std::set<std::string> m_named;                   // what "belong module" says
    std::map<std::int32_t, BlockTable> m_cmdTables;  // by the module's number, then by word
    std::map<std::int32_t, const CatalogueBlock*> m_byNumber;  // the first of each number
};

void Lookup::StoreModule(const CatalogueBlock& block) {
    const auto [stored, isNew] = m_modules.emplace(block.Name(), &block);
    if (!isNew) {
        m_moduleFindings.Error(block.title.line,
                               "the module " + Quoted(block.Name()) + " is defined at " +
                                   m_moduleFindings.Place(stored->second->title.line) +
                                   " already: this block is lost");
    }
}

void Lookup::StoreCommand(const CatalogueBlock& block) {
    CheckShadowed(block);
    m_named.insert(block.Text(kBelongModKey));
    for (const KeyRow& stray : block.strays) {
        if (stray.word == kBelongModKey) {
            m_named.insert(stray.Value());
        }
    }
    if (!BelongsToModule(block)) {
        return;
    }
    const CatalogueBlock& module = *m_modules.at(block.Text(kBelongModKey));
    const std::string word = block.Text(kCommandKey);
    const auto [stored, isNew] = m_cmdTables[module.Instruction()].emplace(word, &block);
    if (isNew) {
        CheckInstructionUse(block);
        return;
    }
    const std::string other = stored->second->Text(kBelongModKey);
    const std::string sharing = other == module.Name() ? ""
                                                       : " for the module " + Quoted(other) +
                                                             ", which has the same instruction";
    m_commandFindings.Error(block.LineOf(kCommandKey),
                            "the command word " + Quoted(word) + " is defined at " +
                                m_commandFindings.Place(stored->second->LineOf(kCommandKey)) +
                                " already" + sharing + ": this block is lost");
}

bool Lookup::BelongsToModule(const CatalogueBlock& block) const {
    const std::string name = block.Text(kBelongModKey);
    const std::size_t line = block.LineOf(kBelongModKey);
    const auto module = m_modules.find(name);
    if (block.Find(kBelongModKey) == nullptr && block.Lost(kBelongModKey)) {
        return false;  // reported with the row that ended the block
    }
    if (block.Find(kBelongModKey) == nullptr && module == m_modules.end()) {
        m_commandFindings.Error(
            line, "the block " + Quoted(block.Name()) + " has no \"belong module\": it is lost");
        return false;
    }
    if (module == m_modules.end()) {
        m_commandFindings.Error(
            line, "the belong module " + Quoted(name) + " names no module: the block is lost");
        return false;
    }
    if (module->second->Instruction() == -1) {
        m_commandFindings.Error(line, "the belong module " + Quoted(name) + ", defined at " +
                                          m_moduleFindings.Place(module->second->title.line) +
                                          ", has no instruction: the block is lost");
        return false;
    }
    return true;
}

void Lookup::CheckShadowed(const CatalogueBlock& block) const {
    const std::string word = block.Text(kCommandKey);
    for (const auto& [name, module] : m_modules) {
        if (!word.empty() && module->Text(kCommandKey) == word) {
            m_commandFindings.Error(
                block.LineOf(kCommandKey),
                "the word " + Quoted(word) + " is shadowed: it selects the module " + Quoted(name) +
                    " of " + m_moduleFindings.Place(module->LineOf(kCommandKey)));
            return;
        }
    }
}

void Lookup::CheckInstructionUse(const CatalogueBlock& block) {
    if (block.Find(kInstructionKey) == nullptr) {
        return;
    }
    const auto [first, isNew] = m_byNumber.emplace(block.Instruction(), &block);
    for (const std::string_view format :
         {std::string_view(kParaFormatKey), std::string_view(kPrintFmtKey)}) {
        const std::string other = first->second->Text(format);
        if (block.Text(format) != other) {
            m_commandFindings.Warning(
                block.LineOf(kInstructionKey),
                "the instruction " + Hex(block.Instruction()) + " has the " + std::string(format) +
                    " " + Quoted(block.Text(format)) + " here and " + Quoted(other) + " at " +
                    m_commandFindings.Place(first->second->LineOf(kInstructionKey)));
        }
    }
}

// A line selects the first module of its word in the order of the names.
void Lookup::CheckModuleWords() const {
    std::map<std::string, const CatalogueBlock*> selected;
    for (const auto& [name, module] : m_modules) {
        const std::string word = module->Text(kCommandKey);
        if (word.empty()) {
            continue;
        }
        const auto [first, isNew] = selected.emplace(word, module);
        if (!isNew) {
            m_moduleFindings.Error(module->LineOf(kCommandKey),
                                   "the word " + Quoted(word) + " selects the module " +
                                       Quoted(first->second->Name()) + " of " +
                                       m_moduleFindings.Place(first->second->LineOf(kCommandKey)) +
                                       ", never " + Quoted(name));
        }
    }
}

void Lookup::CheckGroup(const BlockTable& group, const std::string& what, FindingList& findings) {
    if (group.size() <= kWordTableSize) {
        return;
    }
    const auto& [key, block] = *std::next(group.begin(), kWordTableSize);
    findings.Error(block->title.line, what + " are " + std::to_string(group.size()) +
                                          ": completion offers " + std::to_string(kWordTableSize) +
                                          " of them and leaves out " + Quoted(key) +
                                          " and what sorts behind it");
}

void Lookup::CheckGroups() const {
    CheckGroup(m_modules, "the modules", m_moduleFindings);
    for (const auto& [number, table] : m_cmdTables) {
        CheckGroup(table, "the command words of the module instruction " + Hex(number),
                   m_commandFindings);
    }
}

void Lookup::CheckModulesWithoutCommands() const {
    for (const auto& [name, module] : m_modules) {
        if (m_named.find(name) == m_named.end()) {
            m_moduleFindings.Warning(module->title.line,
                                     "the module " + Quoted(name) + " has no commands");
        }
    }
}

}  // namespace

void CheckLookup(const CatalogueBlocks& modules, const CatalogueBlocks& commands,
                 FindingList& moduleFindings, FindingList& commandFindings) {
    Lookup lookup(moduleFindings, commandFindings);
    for (const CatalogueBlock& block : modules.blocks) {
        lookup.StoreModule(block);
    }
    for (const CatalogueBlock& block : commands.blocks) {
        lookup.StoreCommand(block);
    }
    lookup.CheckModuleWords();
    lookup.CheckGroups();
    lookup.CheckModulesWithoutCommands();
}
