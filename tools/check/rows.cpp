#include <map>

#include "tools/check/check.h"
#include "tools/text.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kValueLimit = kConfigTextSize - 2;  // the "=" counts with the value

std::string LimitText(const char* what, std::size_t size, std::size_t limit) {
    return std::string(what) + " of " + std::to_string(size) + " bytes, over the limit of " +
           std::to_string(limit);
}

bool IsBlankRow(const FileRow& row) {
    return TrimConfigText(row.text).empty();
}

// What a row is that the console does not take.
std::string NameStray(const KeyRow& stray) {
    const std::string& row = stray.row.text;
    const RowParts parts = stray.Parts();
    if (row.size() >= kConfigTextSize && IsInBrackets(row)) {
        return LimitText("a title row", row.size(), kConfigTextSize - 1);
    }
    if (parts.HasKey() && !parts.KeyFits()) {
        return LimitText("a key", parts.keyLength, kConfigTextSize - 1);
    }
    if (row.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
        return "a row behind a byte order mark";
    }
    const std::string_view text = TrimConfigText(row);
    if (text.empty()) {
        return "a row of blanks";
    }
    if (text.front() == '#' || text.front() == ';') {
        return "a comment, which the file cannot hold";
    }
    if (!stray.word.empty()) {
        return "a key";
    }
    return parts.HasKey() ? "no key of this file" : "neither a title nor a key";
}

void ReportOutside(const KeyRow& stray, FindingList& findings) {
    if (!IsBlankRow(stray.row)) {
        findings.Error(stray.row.line, Quoted(stray.row.text) + " is " + NameStray(stray) +
                                           ", outside any block: ignored");
    }
}

// The keys that the end of the block takes along.
std::string LostKeys(const CatalogueBlock& block) {
    std::string keys;
    for (const KeyRow& stray : block.strays) {
        if (!stray.word.empty()) {
            keys += (keys.empty() ? "" : ", ") + Quoted(stray.word) + " (line " +
                    std::to_string(stray.row.line) + ")";
        }
    }
    return keys;
}

// The first row behind the block ended it; the keys behind it belong to its finding.
void ReportEarlyEnd(const CatalogueBlock& block, FindingList& findings) {
    const KeyRow& end = block.strays.front();
    const std::string lost = LostKeys(block);
    if (!IsBlankRow(end.row) || !lost.empty()) {
        findings.Error(end.row.line, Quoted(end.row.text) + " is " + NameStray(end) +
                                         ": it ends the block " +
                                         Quoted(TitleName(block.title.text)) +
                                         (lost.empty() ? "" : "; ignored behind it: " + lost));
    }
    for (std::size_t i = 1; i < block.strays.size(); ++i) {
        if (block.strays[i].word.empty()) {
            ReportOutside(block.strays[i], findings);
        }
    }
}

// Bytes at which the console, or whoever reads the file, sees the end of a row that goes on.
void ReportHiddenEnd(const FileRow& row, FindingList& findings) {
    if (row.text.find('\0') != std::string::npos) {
        findings.Error(row.line, Quoted(row.text) + " is cut at its NUL byte");
    }
    if (TrimConfigText(row.text).find('\r') != std::string::npos) {
        findings.Error(row.line, Quoted(row.text) +
                                     " holds a carriage return, which is no line end by itself");
    }
}

void ReportShortened(const KeyRow& key, FindingList& findings) {
    const std::string_view given = key.Parts().key;
    if (given.size() < key.word.size()) {
        findings.Warning(key.row.line, "the key " + Quoted(given) + " is taken for " +
                                           Quoted(key.word) + ", which it begins");
    }
}

void CheckKeys(const CatalogueBlock& block, FindingList& findings) {
    std::map<std::string_view, const KeyRow*> seen;
    for (const KeyRow& key : block.keys) {
        ReportHiddenEnd(key.row, findings);
        ReportShortened(key, findings);
        if (!key.Parts().ValueFits()) {
            const std::size_t size = key.Parts().valueLength - 1;
            findings.Error(key.row.line, Quoted(key.row.text) + " has " +
                                             LimitText("a value", size, kValueLimit) +
                                             ": an empty one is taken");
        }
        const KeyRow*& earlier = seen[key.word];
        if (earlier != nullptr) {
            findings.Error(key.row.line,
                           Quoted(key.word) + " is given twice: " + Quoted(earlier->Value()) +
                               " at " + findings.Place(earlier->row.line) + " is lost");
        }
        earlier = &key;
    }
}

}  // namespace

void CheckRows(const std::vector<KeyRow>& head, FindingList& findings) {
    for (const KeyRow& stray : head) {
        ReportOutside(stray, findings);
    }
}

void CheckRows(const CatalogueBlock& block, FindingList& findings) {
    ReportHiddenEnd(block.title, findings);
    CheckKeys(block, findings);
    if (!block.strays.empty()) {
        ReportEarlyEnd(block, findings);
    }
}
