#include <map>

#include "tools/check/check.h"
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

// True for a row that is allowed outside the blocks.
bool IsIdle(const FileRow& row) {
    return WithoutMark(row.text).empty() || IsComment(row.text);
}

// Rows that the console ignores together: the first one, and the keys after it.
struct StrayGroup {
    const KeyRow* first;
    bool opensBlock;  // they have a command of their own
    Words lost;
};

// The name of the block that the group's first row was meant to open; empty if it is a key or a
// comment, or neither has a bracket at either end nor opens a block.
std::string TitleMeant(const StrayGroup& group) {
    const std::string_view text = WithoutMark(group.first->row.text);
    if (text.empty() || IsComment(text) || !group.first->word.empty()) {
        return {};
    }
    if (text.front() != '[' && text.back() != ']') {
        return std::string(group.opensBlock && group.first->meant.empty() ? text : "");
    }
    const std::string_view name = text.substr(text.front() == '[' ? 1 : 0);
    const std::size_t open = name.find('[') + 1;
    return std::string(TrimConfigText(name.substr(open, name.find(']', open) - open)));
}

// What a row is that the console ignores, and what to do about it.
struct Description {
    std::string what;
    std::string remedy;
};

Description DescribeUnknown(const KeyRow& stray, const std::string& title, const Words& keys) {
    const bool hasKey = stray.Parts().HasKey();
    const std::string what = hasKey ? "not a key of this file" : "neither a title nor a key";
    const std::string meant(stray.meant);
    if (!stray.ValueMeant().empty()) {
        return {what, "write " + Quoted(meant + " = " + stray.Value())};
    }
    if (!meant.empty()) {
        return {what, "did you mean " + Quoted(meant) + "?"};
    }
    if (!title.empty() && !hasKey) {
        return {what, "write " + Quoted("[" + title + "]")};
    }
    return {what, hasKey ? "the keys are: " + Joined(keys, ", ")
                         : "remove it, or write a key, \"=\" and a value"};
}

Description Describe(const KeyRow& stray, const std::string& title, const Words& keys) {
    const std::string& row = stray.row.text;
    const RowParts parts = stray.Parts();
    if (row.size() >= kConfigTextSize && IsInBrackets(row)) {
        return {LimitText("a title line", row.size(), kConfigTextSize - 1), "shorten it"};
    }
    if (IsComment(row)) {
        return {"a comment", "put it above the title"};
    }
    if (IsMarked(row)) {
        return {"a line after a byte order mark", "save the file as UTF-8 without the mark"};
    }
    if (parts.HasKey() && !parts.KeyFits()) {
        return {LimitText("a key", parts.keyLength, kConfigTextSize - 1), "shorten it"};
    }
    if (TrimConfigText(row).empty()) {
        return {"a line of blanks", "leave the line empty"};
    }
    if (!stray.word.empty()) {
        return {"a key", "write a title above it"};
    }
    return DescribeUnknown(stray, title, keys);
}

// `ended` is the block that the first row ended, whatever it is; null before the first block.
std::vector<StrayGroup> GroupStrays(const std::vector<KeyRow>& strays,
                                    const CatalogueBlock* ended) {
    const bool needsCommand = ended != nullptr && ended->Find(kCommandKey) == nullptr;
    std::vector<StrayGroup> groups;
    for (const KeyRow& stray : strays) {
        if (!groups.empty() && stray.meant == kCommandKey.word) {
            groups.back().opensBlock |= !needsCommand;
        }
        const bool isKey = !stray.word.empty();
        const bool begins =
            groups.empty() ? ended != nullptr || !IsIdle(stray.row) : !isKey && !IsIdle(stray.row);
        if (begins) {
            groups.push_back({&stray, false, {}});
        } else if (isKey) {
            groups.back().lost.push_back(Quoted(stray.word) + " (line " +
                                         std::to_string(stray.row.line) + ")");
        }
    }
    return groups;
}

// `effect` is what the row does.
void ReportGroup(const StrayGroup& group, const std::string& effect, CheckedRows& file) {
    const FileRow& row = group.first->row;
    if (group.lost.empty() && IsIdle(row)) {
        return;
    }
    const std::string title = TitleMeant(group);
    if (!title.empty()) {
        file.titlesMeant.insert(title);
    }
    const Description description = Describe(*group.first, title, file.keys);
    file.findings.Error(
        row.line, "{} is {}: {}{}",
        {Quoted(row.text), description.what, effect,
         group.lost.empty() ? "" : "; ignored after it: " + Joined(group.lost, ", ")},
        description.remedy);
}

// The console prints a line for a row so long, whatever the row is.
void ReportLongRow(const FileRow& row, FindingList& findings) {
    if (row.text.size() >= kConfigTextSize) {
        findings.Warning(row.line, "{} has {} bytes: the console prints a message at every start",
                         {Quoted(row.text), std::to_string(row.text.size() + row.rest.size)},
                         FormatText("keep it below {}", {std::to_string(kConfigTextSize)}));
    }
}

void CheckStrays(const std::vector<KeyRow>& strays, const CatalogueBlock* ended,
                 CheckedRows& file) {
    for (const KeyRow& stray : strays) {
        if (IsComment(stray.row.text)) {
            ReportLongRow(stray.row, file.findings);
        }
    }
    const std::string outside = "it is outside any block and ignored";
    std::string effect =
        ended != nullptr ? "it ends the block " + Quoted(TitleName(ended->title.text)) : outside;
    for (const StrayGroup& group : GroupStrays(strays, ended)) {
        ReportGroup(group, effect, file);
        effect = outside;
    }
}

void CheckSize(const KeyRow& key, FindingList& findings) {
    if (key.Parts().ValueFits()) {
        ReportLongRow(key.row, findings);
        return;
    }
    findings.Error(
        key.row.line, "{} has {}: it is read as empty",
        {Quoted(key.row.text), LimitText("a value", key.Parts().valueLength - 1, kValueLimit)},
        "shorten it, blanks included");
}

void CheckKeys(const CatalogueBlock& block, FindingList& findings) {
    std::map<std::string_view, const KeyRow*> seen;
    for (const KeyRow& key : block.keys) {
        CheckBytes(key.row, findings);
        const std::string_view given = key.Parts().key;
        if (given.size() < key.word.size()) {
            findings.Warning(key.row.line, "the key {} is read as {}, cut short",
                             {Quoted(given), Quoted(key.word)}, "write it in full");
        }
        CheckSize(key, findings);
        const KeyRow*& earlier = seen[key.word];
        if (earlier != nullptr) {
            findings.Error(
                key.row.line, "{} is given twice: {} at {} is ignored",
                {Quoted(key.word), Quoted(earlier->Value()), findings.Place(earlier->row.line)},
                "keep one of them");
        }
        earlier = &key;
    }
}

}  // namespace

void CheckHead(CheckedRows& file) {
    CheckStrays(file.head, nullptr, file);
}

void CheckRows(const CatalogueBlock& block, CheckedRows& file) {
    CheckBytes(block.title, file.findings);
    CheckKeys(block, file.findings);
    CheckStrays(block.strays, &block, file);
}
