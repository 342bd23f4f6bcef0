#include <strings.h>

#include <cctype>

#include "tools/check/check.h"
#include "tools/text.h"

namespace {

// The prompt's words that come before any of the catalogue's.
constexpr const char* kPromptWords[] = {"help", "?", "quit", "q"};

// Bytes that the line editor takes for arrow keys.
constexpr std::string_view kArrowBytes = "ABCD[";

// What keeps the byte from being typed as part of a word; empty when nothing does.
std::string TypingFault(char byte, bool blanksCount) {
    if (kArrowBytes.find(byte) != std::string_view::npos) {
        return std::string("the prompt takes \"") + byte + "\" for a part of an arrow key";
    }
    if (std::iscntrl(static_cast<unsigned char>(byte)) != 0) {
        return "it holds the control byte " + Hex(static_cast<unsigned char>(byte));
    }
    return blanksCount && byte == ' ' ? "a blank ends the word" : "";
}

// `blanksCount`: the word ends at a blank, as a command's does; a module's is the whole line.
template <typename Block>
void CheckWord(const Block& block, bool blanksCount, FindingList& findings) {
    if (block.IsLost(kCommandKey)) {
        return;
    }
    const std::string& word = block.record.m_strCmd;
    const std::size_t line = block.LineOf(kCommandKey);
    if (word.empty()) {
        findings.Error(line, "the block " + Quoted(block.record.m_strName) + " has no \"command\"",
                       "add the word that is typed for it");
    }
    for (const char byte : word) {
        const std::string fault = TypingFault(byte, blanksCount);
        if (!fault.empty()) {
            findings.Error(line, "the word " + Quoted(word) + " cannot be typed: " + fault,
                           "use lower case, digits, \"_\" and \"-\"");
            break;
        }
    }
    for (const char* own : kPromptWords) {
        if (strcasecmp(own, word.c_str()) == 0) {
            findings.Error(line, "the word " + Quoted(word) + " is shadowed by the prompt's own",
                           "choose another");
        }
    }
}

template <typename Block>
void CheckDescription(const Block& block, FindingList& findings) {
    const std::string& description = block.record.m_strDescrip;
    const std::size_t line = block.LineOf(kDescriptionKey);
    if (!block.IsLost(kDescriptionKey) && description.empty()) {
        findings.Warning(line,
                         "the block " + Quoted(block.record.m_strName) + " has no description",
                         "add one, which \"help\" shows");
    }
    CheckShown(line, "description", description, findings);
}

}  // namespace

void CheckValues(const ModuleBlock& block, FindingList& findings) {
    const std::string& name = block.record.m_strName;
    if (name.empty()) {
        findings.Error(block.title.line,
                       Quoted(block.title.text) + " names no module: it cannot be selected",
                       "write a name between the brackets");
    } else if (TrimConfigText(name) != name) {
        findings.Warning(
            block.title.line,
            "no \"belong module\" can name " + Quoted(name) + ", whose blanks belong to the name",
            "remove them");
    }
    CheckWord(block, false, findings);
    CheckNumber(block, findings);
    CheckDescription(block, findings);
}

void CheckValues(const CmdBlock& block, FindingList& findings) {
    CheckWord(block, true, findings);
    CheckNumber(block, findings);
    CheckFormats(block, findings);
    CheckDescription(block, findings);
}
