#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "format/argument_text.h"
#include "format/format_letters.h"
#include "page/share_page.h"
#include "tools/check/check.h"
#include "tools/strict_argument.h"
#include "tools/text.h"

namespace {

// The prompt's words that come before any of the catalogue's.
constexpr const char* kPromptWords[] = {"help", "?", "quit", "q"};

// Bytes that the line editor takes for arrow keys.
constexpr std::string_view kArrowBytes = "ABCD[";

constexpr std::size_t LargestValue() {
    std::size_t largest = 0;
    for (const FormatLetter& row : kFormatLetters) {
        largest = std::max(largest, row.leastSize);
    }
    return largest;
}

static_assert(sizeof(std::int32_t) + kConfigTextSize * LargestValue() <= kDataCapacity,
              "the shortest record of every print format fits the page behind the status");

// True when the key is given with a value within its limit.
bool IsGiven(const CatalogueBlock& block, const ConfigKey& key) {
    const KeyRow* row = block.Find(key);
    return row != nullptr && row->Parts().ValueFits();
}

// True when the key is there, but over its limit or behind the row that ended the block: rows.cpp
// reports that, and what follows from it is no mistake of its own.
bool IsLost(const CatalogueBlock& block, const ConfigKey& key) {
    const KeyRow* row = block.Find(key);
    return row != nullptr ? !row->Parts().ValueFits() : block.Lost(key);
}

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
    if (IsLost(block, kCommandKey)) {
        return;
    }
    const std::string& word = block.record.m_strCmd;
    const std::size_t line = block.LineOf(kCommandKey);
    if (word.empty()) {
        findings.Error(line, "the block " + Quoted(block.record.m_strName) + " has no \"command\"");
    }
    for (const char byte : word) {
        const std::string fault = TypingFault(byte, blanksCount);
        if (!fault.empty()) {
            findings.Error(line, "the word " + Quoted(word) + " cannot be typed: " + fault);
            break;
        }
    }
    for (const char* own : kPromptWords) {
        if (strcasecmp(own, word.c_str()) == 0) {
            findings.Error(line, "the word " + Quoted(word) + " is shadowed by the prompt's own");
        }
    }
}

template <typename Block>
void CheckInstruction(const Block& block, FindingList& findings) {
    if (!IsGiven(block, kInstructionKey)) {
        return;
    }
    const std::string value = block.Find(kInstructionKey)->Value();
    const std::size_t line = block.LineOf(kInstructionKey);
    const HexNumber number = ParseHexNumber(value);
    const std::string taken = ": " + Hex(block.record.m_instruct) + " is taken";
    if (number.usedLength == 0) {
        findings.Error(line, "the instruction " + Quoted(value) + " is not hexadecimal" + taken);
    } else if (number.usedLength != value.size()) {
        findings.Error(line,
                       "the instruction " + Quoted(value) + " has trailing characters" + taken);
    }
    if (number.clamped) {
        findings.Error(line, "the instruction " + Quoted(value) + " does not fit 32 bits" + taken);
    }
}

template <typename Block>
void CheckDescription(const Block& block, FindingList& findings) {
    if (!IsLost(block, kDescriptionKey) && block.record.m_strDescrip.empty()) {
        findings.Warning(block.LineOf(kDescriptionKey),
                         "the block " + Quoted(block.record.m_strName) + " has no description");
    }
}

void CheckLetters(const CmdBlock& block, const ConfigKey& key, const std::string& format,
                  FindingList& findings) {
    std::string unknown;
    bool wide = false;
    for (const char letter : format) {
        if (FindFormatLetter(letter) == nullptr) {
            unknown += letter;
        }
        wide = wide || IsWithoutValue(letter);
    }
    const std::size_t line = block.LineOf(key);
    const std::string what = "the " + std::string(key.word) + " " + Quoted(format);
    if (!unknown.empty()) {
        findings.Error(line, what + " has unknown letters: " + Quoted(unknown));
    }
    if (wide) {
        findings.Warning(line, what + " has the letter \"S\", which carries no value");
    }
}

void CheckTags(const CmdBlock& block, FindingList& findings) {
    if (IsLost(block, kPrintFmtKey) || IsLost(block, kPrintTagsKey)) {
        return;
    }
    const std::string& format = block.record.m_strPrintFmt;
    const KeyRow* row = block.Find(kPrintTagsKey);
    if (row == nullptr) {
        if (!format.empty()) {
            findings.Warning(block.LineOf(kPrintFmtKey),
                             "the print format " + Quoted(format) +
                                 " has no print tags: nothing of a reply is printed");
        }
        return;
    }
    const std::size_t tags = block.record.m_printTags.size();
    const std::string what = "the print tags " + Quoted(row->Value());
    if (format.empty()) {
        findings.Warning(row->row.line, what + " have no print format");
    } else if (tags != format.size()) {
        findings.Warning(row->row.line, what + " are " + std::to_string(tags) +
                                            (tags < format.size() ? ", fewer" : ", more") +
                                            " than the letters of the print format (" +
                                            std::to_string(format.size()) + ")");
    }
}

// Each argument takes a character of its own and the blank before it.
void CheckArgumentText(const CmdBlock& block, FindingList& findings) {
    const std::size_t arguments = ArgumentLetters(block.record.m_strParaFmt).size();
    if (arguments > kArgumentTextLimit / 2) {
        findings.Warning(block.LineOf(kParaFormatKey),
                         "the " + std::to_string(arguments) +
                             " arguments of the para format cannot fit the " +
                             std::to_string(kArgumentTextLimit) + " characters of argument text");
    }
}

}  // namespace

void CheckValues(const ModuleBlock& block, FindingList& findings) {
    const std::string& name = block.record.m_strName;
    if (name.empty()) {
        findings.Error(block.title.line,
                       Quoted(block.title.text) + " names no module: it cannot be selected");
    } else if (TrimConfigText(name) != name) {
        findings.Warning(block.title.line, "no \"belong module\" can name " + Quoted(name) +
                                               ", whose blanks belong to the name");
    }
    CheckWord(block, false, findings);
    CheckInstruction(block, findings);
    if (IsGiven(block, kInstructionKey) && block.record.m_instruct == -1) {
        findings.Error(
            block.LineOf(kInstructionKey),
            "the instruction " + Quoted(block.Find(kInstructionKey)->Value()) + " counts as none");
    }
    CheckDescription(block, findings);
}

void CheckValues(const CmdBlock& block, FindingList& findings) {
    CheckWord(block, true, findings);
    CheckInstruction(block, findings);
    if (block.Find(kInstructionKey) == nullptr && !block.Lost(kInstructionKey)) {
        findings.Error(block.title.line, "the block " + Quoted(block.record.m_strName) +
                                             " has no \"instruction\": -1 is sent");
    }
    CheckLetters(block, kParaFormatKey, block.record.m_strParaFmt, findings);
    CheckLetters(block, kPrintFmtKey, block.record.m_strPrintFmt, findings);
    CheckTags(block, findings);
    CheckArgumentText(block, findings);
    CheckDescription(block, findings);
}
