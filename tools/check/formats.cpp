#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>

#include "format/argument_text.h"
#include "format/format_letters.h"
#include "page/share_page.h"
#include "tools/check/check.h"
#include "tools/text.h"

namespace {

constexpr const FormatLetter* kLargest =
    std::max_element(std::begin(kFormatLetters), std::end(kFormatLetters),
                     [](const auto& a, const auto& b) { return a.leastSize < b.leastSize; });
static_assert(sizeof(std::int32_t) + kConfigTextSize * kLargest->leastSize <= kDataCapacity,
              "the shortest record of every print format fits the page after the status");

// "d int32, ...".
std::string LettersText() {
    std::vector<std::string> letters;
    for (const FormatLetter& row : kFormatLetters) {
        letters.push_back(row.letter + std::string(" ") + row.typeName);
    }
    return Joined(letters, ", ");
}

void CheckLetters(const CmdBlock& block, const ConfigKey& key, const std::string& format,
                  FindingList& findings) {
    std::string unknown;
    std::copy_if(format.begin(), format.end(), std::back_inserter(unknown),
                 [](char letter) { return FindFormatLetter(letter) == nullptr; });
    const std::size_t line = block.LineOf(key);
    const std::string name(key.word);
    if (!unknown.empty()) {
        findings.Error(line,
                       "the {} {} has unknown letters: {}; "
                       "write one letter for each value and nothing between: {}",
                       {name, Quoted(format), Quoted(unknown), LettersText()});
    }
    if (std::any_of(format.begin(), format.end(), IsWithoutValue)) {
        findings.Warning(line, "the {} {} has the letter \"S\", which carries no value; use \"s\"",
                         {name, Quoted(format)});
    }
}

// The labels and letters of a format that has both.
void CheckCount(std::size_t line, std::size_t tags, std::size_t letters, FindingList& findings) {
    if (tags != letters) {
        findings.Warning(line,
                         "the print tags are {}, the letters of the print format {}: {}; "
                         "write one tag for each letter",
                         {std::to_string(tags), std::to_string(letters),
                          tags < letters ? "values without a tag are taken for the next record's"
                                         : "the last tags are never printed"});
    }
}

void CheckLabels(std::size_t line, const Array<std::string>& labels, FindingList& findings) {
    std::set<std::string_view> seen;
    std::set<std::string> repeated;
    std::vector<std::string> padded;
    for (const std::string& label : labels) {
        CheckShown(line, "print tag", label, findings);
        if (TrimConfigText(label) != label) {
            padded.push_back(Quoted(label));
        }
        if (!label.empty() && !seen.insert(label).second) {
            repeated.insert(label);
        }
    }
    if (!padded.empty()) {
        findings.Warning(line, "blanks belong to the print tags {}; write no blank beside a comma",
                         {Joined(padded, ", ")});
    }
    for (const std::string& label : repeated) {
        findings.Warning(line,
                         "the print tag {} stands for several values; give each a tag of its own",
                         {Quoted(label)});
    }
}

void CheckTags(const CmdBlock& block, FindingList& findings) {
    if (block.IsLost(kPrintFmtKey) || block.IsLost(kPrintTagsKey)) {
        return;
    }
    const std::string& format = block.record.m_strPrintFmt;
    const Array<std::string>& labels = block.record.m_printTags;
    const KeyRow* row = block.Find(kPrintTagsKey);
    if (row != nullptr) {
        CheckLabels(row->row.line, labels, findings);
    }
    if (row != nullptr && !format.empty()) {
        CheckCount(row->row.line, labels.size(), format.size(), findings);
    } else if (row != nullptr) {
        findings.Warning(row->row.line,
                         "the print tags {} have no print format: nothing of a reply is printed; "
                         "write one letter for each tag",
                         {Quoted(row->Value())});
    } else if (!format.empty()) {
        findings.Warning(block.LineOf(kPrintFmtKey),
                         "the print format {} has no print tags: nothing of a reply is printed; "
                         "write one tag for each letter",
                         {Quoted(format)});
    }
}

// Each argument takes a character of its own and the blank before it.
void CheckArgumentText(const CmdBlock& block, FindingList& findings) {
    const std::size_t arguments = LettersWithValue(block.record.m_strParaFmt).size();
    const std::size_t most = kArgumentTextLimit / 2;
    if (arguments > most) {
        findings.Warning(
            block.LineOf(kParaFormatKey),
            "the {} arguments of the para format cannot fit the {} characters of "
            "argument text; take {} at most",
            {std::to_string(arguments), std::to_string(kArgumentTextLimit), std::to_string(most)});
    }
}

}  // namespace

void CheckFormats(const CmdBlock& block, FindingList& findings) {
    CheckLetters(block, kParaFormatKey, block.record.m_strParaFmt, findings);
    CheckLetters(block, kPrintFmtKey, block.record.m_strPrintFmt, findings);
    CheckTags(block, findings);
    CheckArgumentText(block, findings);
}
