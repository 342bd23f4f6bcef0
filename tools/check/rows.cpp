#include <map>

#include "tools/check/check.h"
#include "tools/nearest.h"
#include "tools/text.h"

namespace {

using Words = std::vector<std::string>;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kValueLimit = kConfigTextSize - 2;  // the "=" counts with the value

std::string LimitText(const char* what, std::size_t size, std::size_t limit) {
    return FormatText("{} of {} bytes, over the limit of {}",
                      {what, std::to_string(size), std::to_string(limit)});
}

bool IsMarked(std::string_view row) {
    return row.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

std::string_view WithoutMark(std::string_view row) {
    return TrimConfigText(IsMarked(row) ? row.substr(kByteOrderMark.size()) : row);
}

bool IsComment(std::string_view row) {
    const std::string_view text = WithoutMark(row);
    return !text.empty() && (text.front() == '#' || text.front() == ';');
}

// True for a row that may stand outside the blocks.
bool IsIdle(const FileRow& row) {
    return WithoutMark(row.text).empty() || IsComment(row.text);
}

// A row that the console does not take: what it is, and what to do about it.
struct Description {
    std::string what;
    std::string remedy;
};

Description DescribeUnknownKey(std::string_view key, const Words& keys) {
    return {"no key of this file",
            DidYouMean(Nearest(key, keys), "the keys are: " + Joined(keys, ", "))};
}

Description DescribeUnknown(const std::string& row) {
    const std::string name(TitleMeant(row));
    return {"neither a title nor a key", name.empty()
                                             ? "remove it, or write a key, \"=\" and a value"
                                             : "write " + Quoted("[" + name + "]")};
}

Description Describe(const KeyRow& stray, const Words& keys) {
    const std::string& row = stray.row.text;
    const RowParts parts = stray.Parts();
    if (row.size() >= kConfigTextSize && IsInBrackets(row)) {
        return {LimitText("a title row", row.size(), kConfigTextSize - 1), "shorten it"};
    }
    if (IsComment(row)) {
        return {"a comment, which no block can hold", "put it above the title"};
    }
    if (IsMarked(row)) {
        return {"a row behind a byte order mark", "save the file as UTF-8 without the mark"};
    }
    if (parts.HasKey() && !parts.KeyFits()) {
        return {LimitText("a key", parts.keyLength, kConfigTextSize - 1), "shorten it"};
    }
    if (TrimConfigText(row).empty()) {
        return {"a row of blanks", "leave the row empty"};
    }
    if (!stray.word.empty()) {
        return {"a key", "write a title above it"};
    }
    return parts.HasKey() ? DescribeUnknownKey(parts.key, keys) : DescribeUnknown(row);
}

// Rows that the console passes over together: the first one, and the keys behind it.
struct StrayGroup {
    const KeyRow* first;
    Words lost;
};

// `endsBlock`: the first row ended a block, whatever it is.
std::vector<StrayGroup> GroupStrays(const std::vector<KeyRow>& strays, bool endsBlock) {
    std::vector<StrayGroup> groups;
    for (const KeyRow& stray : strays) {
        const bool isKey = !stray.word.empty();
        const bool begins =
            groups.empty() ? endsBlock || !IsIdle(stray.row) : !isKey && !IsIdle(stray.row);
        if (begins) {
            groups.push_back({&stray, {}});
        } else if (isKey) {
            groups.back().lost.push_back(Quoted(stray.word) + " (line " +
                                         std::to_string(stray.row.line) + ")");
        }
    }
    return groups;
}

// `place` says where the row stands.
void ReportGroup(const StrayGroup& group, const std::string& place, const Words& keys,
                 FindingList& findings) {
    const FileRow& row = group.first->row;
    if (group.lost.empty() && IsIdle(row)) {
        return;
    }
    const Description description = Describe(*group.first, keys);
    findings.Error(row.line, "{} is {}{}{}; {}",
                   {Quoted(row.text), description.what, place,
                    group.lost.empty() ? "" : "; lost behind it: " + Joined(group.lost, ", "),
                    description.remedy});
}

// The console prints a line for a row so long, whatever the row is.
void ReportLongRow(const FileRow& row, FindingList& findings) {
    if (row.text.size() >= kConfigTextSize) {
        findings.Warning(row.line,
                         "{} has {} bytes: the console prints a message about it at every start; "
                         "keep it below {}",
                         {Quoted(row.text), std::to_string(row.text.size() + row.rest.size),
                          std::to_string(kConfigTextSize)});
    }
}

void CheckStrays(const std::vector<KeyRow>& strays, const CatalogueBlock* ended, const Words& keys,
                 FindingList& findings) {
    for (const KeyRow& stray : strays) {
        if (IsComment(stray.row.text)) {
            ReportLongRow(stray.row, findings);
        }
    }
    std::string place =
        ended != nullptr ? ": it ends the block " + Quoted(TitleName(ended->title.text)) : "";
    for (const StrayGroup& group : GroupStrays(strays, ended != nullptr)) {
        ReportGroup(group, place.empty() ? ", outside any block: ignored" : place, keys, findings);
        place.clear();
    }
}

void ReportShortened(const KeyRow& key, FindingList& findings) {
    const std::string_view given = key.Parts().key;
    if (given.size() < key.word.size()) {
        findings.Warning(key.row.line,
                         "the key {} is taken for {}, which it begins; write it in full",
                         {Quoted(given), Quoted(key.word)});
    }
}

void CheckSize(const KeyRow& key, FindingList& findings) {
    if (key.Parts().ValueFits()) {
        ReportLongRow(key.row, findings);
        return;
    }
    findings.Error(
        key.row.line, "{} has {}: an empty one is taken; shorten it; blanks count",
        {Quoted(key.row.text), LimitText("a value", key.Parts().valueLength - 1, kValueLimit)});
}

void CheckKeys(const CatalogueBlock& block, FindingList& findings) {
    std::map<std::string_view, const KeyRow*> seen;
    for (const KeyRow& key : block.keys) {
        CheckBytes(key.row, findings);
        ReportShortened(key, findings);
        CheckSize(key, findings);
        const KeyRow*& earlier = seen[key.word];
        if (earlier != nullptr) {
            findings.Error(
                key.row.line, "{} is given twice: {} at {} is lost; keep one of them",
                {Quoted(key.word), Quoted(earlier->Value()), findings.Place(earlier->row.line)});
        }
        earlier = &key;
    }
}

}  // namespace

void CheckRows(const std::vector<KeyRow>& head, const Words& keys, FindingList& findings) {
    CheckStrays(head, nullptr, keys, findings);
}

void CheckRows(const CatalogueBlock& block, const Words& keys, FindingList& findings) {
    CheckBytes(block.title, findings);
    CheckKeys(block, findings);
    CheckStrays(block.strays, &block, keys, findings);
}

std::string_view TitleMeant(std::string_view row) {
    const std::string_view text = WithoutMark(row);
    if (text.empty() || IsComment(text) || (text.front() != '[' && text.back() != ']')) {
        return {};
    }
    const std::string_view name = text.substr(text.front() == '[' ? 1 : 0);
    const std::size_t open = name.find('[') + 1;
    return TrimConfigText(name.substr(open, name.find(']', open) - open));
}
