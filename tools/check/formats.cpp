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
        findings.Error(line, "the {} {} has unknown letters: {}",
                       {name, Quoted(format), Quoted(unknown)},
                       "write one letter per value and nothing else: " + LettersText());
    }
    if (std::any_of(format.begin(), format.end(), IsWithoutValue)) {
        findings.Warning(line, "the {} {} has the letter \"S\", which has no value",
                         {name, Quoted(format)}, "use \"s\"");
    }
}

// The labels and letters of a format that has both.
void CheckCount(std::size_t line, std::size_t labels, std::size_t letters, FindingList& findings) {
    if (labels != letters) {
        findings.Error(line, "{} for {} of the print format: {}",
                       {Counted(labels, "label"), Counted(letters, "letter"),
                        labels < letters ? "the other values are read as the next record"
                                         : "the last labels are not printed"},
                       "write one label per letter, and no comma in a label");
    }
}

void CheckLabels(std::size_t line, const Array<std::string>& labels, FindingList& findings) {
    std::set<std::string_view> seen;
    std::set<std::string> repeated;
    std::vector<std::string> padded;
    for (const std::string& label : labels) {
        CheckShown(line, "label", label, findings);
        if (TrimConfigText(label) != label) {
            padded.push_back(Quoted(label));
        }
        if (!label.empty() && !seen.insert(label).second) {
            repeated.insert(label);
        }
    }
    if (!padded.empty()) {
        findings.Warning(line, "the labels {} begin or end with a blank", {Joined(padded, ", ")},
                         "write no blank next to a comma");
    }
    for (const std::string& label : repeated) {
        findings.Warning(line, "the label {} is used more than once", {Quoted(label)},
                         "give each value its own label");
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
                         "the print tags {} have no print format: replies print nothing",
                         {Quoted(row->Value())}, "write one letter per label");
    } else if (!format.empty()) {
        findings.Warning(block.LineOf(kPrintFmtKey),
                         "the print format {} has no print tags: replies print nothing",
                         {Quoted(format)}, "write one label per letter");
    }
}

// Each argument takes a character of its own and the blank before it.
void CheckArgumentText(const CmdBlock& block, FindingList& findings) {
    const std::size_t arguments = LettersWithValue(block.record.m_strParaFmt).size();
    const std::size_t most = kArgumentTextLimit / 2;
    if (arguments > most) {
        findings.Warning(
            block.LineOf(kParaFormatKey),
            "the {} arguments of the para format do not fit the {} characters of argument text",
            {std::to_string(arguments), std::to_string(kArgumentTextLimit)},
            FormatText("use at most {}", {std::to_string(most)}));
    }
}

}  // namespace

void CheckFormats(const CmdBlock& block, FindingList& findings) {
    CheckLetters(block, kParaFormatKey, block.record.m_strParaFmt, findings);
    CheckLetters(block, kPrintFmtKey, block.record.m_strPrintFmt, findings);
    CheckTags(block, findings);
    CheckArgumentText(block, findings);
}
