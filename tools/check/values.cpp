#include <algorithm>
#include <cctype>
#include <optional>

#include "console/prompt_words.h"
#include "format/printable.h"
#include "format/utf8.h"
#include "lineedit/keys.h"
#include "tools/check/check.h"
#include "tools/text.h"

namespace {

// What keeps the byte from being typed as part of a word; empty when nothing does.
std::string TypingFault(char byte, bool blanksCount) {
    if (IsPartOfArrowKey(byte)) {
        return FormatText("the prompt reads \"{}\" as part of an arrow key",
                          {std::string(1, byte)});
    }
    if (std::iscntrl(static_cast<unsigned char>(byte)) != 0) {
        return "it has the control byte " + Hex(static_cast<unsigned char>(byte));
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
        findings.Error(line, "the block {} has no \"command\"", {Quoted(block.record.m_strName)},
                       "add the word to type for it");
    }
    for (const char byte : word) {
        const std::string fault = TypingFault(byte, blanksCount);
        if (!fault.empty()) {
            findings.Error(line, "the word {} cannot be typed: {}", {Quoted(word), fault},
                           "use lower case, digits, \"_\" and \"-\"");
            break;
        }
    }
    if (kHelpWord.IsTyped(word.c_str()) || kQuitWord.IsTyped(word.c_str())) {
        findings.Error(line, "the word {} is one of the prompt's own", {Quoted(word)},
                       "choose another");
    }
}

template <typename Block>
void CheckDescription(const Block& block, FindingList& findings) {
    const std::string& description = block.record.m_strDescrip;
    const std::size_t line = block.LineOf(kDescriptionKey);
    if (!block.IsLost(kDescriptionKey) && description.empty()) {
        findings.Warning(line, "the block {} has no description", {Quoted(block.record.m_strName)},
                         "add one for \"help\"");
    }
    CheckShown(line, "description", description, findings);
}

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return byte >= ' ' && byte <= '~'; });
}

// The first control character. Not a carriage return, which CheckBytes reports.
std::optional<unsigned char> FindControl(std::string_view text) {
    while (!text.empty()) {
        const std::string_view character = TakeUtf8(text);
        if (IsControl(character) && character != "\r") {
            return static_cast<unsigned char>(character.back());
        }
    }
    return std::nullopt;
}

}  // namespace

void CheckValues(const ModuleBlock& block, FindingList& findings) {
    const std::string& name = block.record.m_strName;
    if (name.empty()) {
        findings.Error(block.title.line, "{} has no name: the module cannot be selected",
                       {Quoted(block.title.text)}, "write a name between the brackets");
    } else if (TrimConfigText(name) != name) {
        findings.Warning(
            block.title.line,
            "the name {} begins or ends with a blank: no \"belong module\" can match it",
            {Quoted(name)}, "remove the blanks");
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

void CheckBytes(const FileRow& row, FindingList& findings) {
    if (IsPlain(row.text)) {
        return;
    }
    // At these two the console, or whoever reads the file, sees the end of a row that goes on.
    if (row.text.find('\0') != std::string::npos) {
        findings.Error(row.line, "{} is read only up to its NUL byte", {Quoted(row.text)},
                       "save the file as plain text");
    }
    if (TrimConfigText(row.text).find('\r') != std::string::npos) {
        findings.Error(row.line, "{} has a carriage return, which alone does not end a line",
                       {Quoted(row.text)}, "save the file with LF line ends");
    }
    if (ValidUtf8(row.text) != row.text) {
        findings.Warning(row.line, "{} is not UTF-8", {Quoted(row.text)}, "save the file as UTF-8");
    }
}

void CheckShown(std::size_t line, const std::string& what, const std::string& text,
                FindingList& findings) {
    const auto control = IsPlain(text) ? std::nullopt : FindControl(text);
    if (control) {
        findings.Warning(line, "the {} {} has the control byte {}, which a terminal obeys",
                         {what, Quoted(text), Hex(*control)}, "remove it");
    }
}
