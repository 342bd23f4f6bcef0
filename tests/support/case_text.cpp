#include "tests/support/case_text.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

namespace {

bool BeginsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

bool Matches(std::string_view text, std::string_view pattern) {
    const std::size_t any = pattern.find("...");
    if (any == std::string_view::npos || !BeginsWith(text, pattern.substr(0, any))) {
        return text == pattern;
    }
    for (std::size_t i = any; i <= text.size(); ++i) {
        if (Matches(text.substr(i), pattern.substr(any + 3))) {
            return true;
        }
    }
    return text == pattern;
}

// Appends what the mark at the beginning of the text stands for. Returns the mark's length, 0 when
// there is none.
std::size_t TakeRepetition(std::string_view text, std::string& expanded) {
    const std::size_t star = std::min(text.find('*'), text.size() - 1);
    const std::size_t end = text.find_first_not_of("0123456789", star + 1);
    if (end == std::string_view::npos || end == star + 1 || text[end] != '}') {
        return 0;
    }
    const std::string once(text.substr(1, star - 1));
    for (int n = 0; n < std::stoi(std::string(text.substr(star + 1))); ++n) {
        expanded += Expand(Replace(once, "(n)", std::to_string(n)));
    }
    return end + 1;
}

std::size_t TakeEscape(std::string_view text, std::string& expanded) {
    constexpr std::string_view kLetters = "rtb";
    const char letter = text.size() > 1 ? text[1] : '\\';
    if (letter == 'x') {
        expanded += static_cast<char>(std::stoi(std::string(text.substr(2, 2)), nullptr, 16));
        return 4;
    }
    if (kLetters.find(letter) != std::string_view::npos) {
        expanded += "\r\t\b"[kLetters.find(letter)];
        return 2;
    }
    return letter == '\n' ? 2 : 0;
}

// Appends a row as it is written, or the block that it stands for. Returns the line that findings
// about it name: that of the last row that was changed, or of the title.
std::size_t Append(Words& rows, const std::string& row, bool isCommand) {
    const std::size_t end = BeginsWith(row, "[") ? row.find("]+") : std::string::npos;
    if (end == std::string::npos) {
        rows.push_back(row);
        return rows.size();
    }
    const std::size_t title = rows.size() + 1;
    Words block = {row.substr(0, end + 1), "command = " + row.substr(1, end - 1),
                   "instruction = 0x" + std::to_string(title), "description = text"};
    if (isCommand) {
        block.insert(block.end() - 1, {"belong module = m", "para format = d", "print format = d",
                                       "print tags = n"});
    }
    std::size_t place = title;
    for (const std::string& change : Split(row.substr(std::min(end + 3, row.size())), " | ")) {
        const bool leaveOut = BeginsWith(change, "-");
        const std::string key = change.substr(leaveOut ? 1 : 0, change.find(" =")) + " =";
        const auto found = std::find_if(block.begin(), block.end(),
                                        [&key](const auto& r) { return BeginsWith(r, key); });
        place = title + static_cast<std::size_t>(leaveOut ? 0 : found - block.begin());
        if (leaveOut) {
            block.erase(found);
        } else if (found != block.end()) {
            *found = change;
        } else if (!change.empty()) {
            block.push_back(change);
        }
    }
    rows.insert(rows.end(), block.begin(), block.end());
    return row.size() > end + 2 ? place : title;
}

}  // namespace

std::string Expand(std::string_view text) {
    std::string expanded;
    while (!text.empty()) {
        std::size_t taken = text[0] == '{' ? TakeRepetition(text, expanded) : 0;
        taken += text[0] == '\\' ? TakeEscape(text, expanded) : 0;
        expanded += taken == 0 ? text.substr(0, 1) : "";
        text.remove_prefix(std::max<std::size_t>(taken, 1));
    }
    return expanded;
}

std::string Replace(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t i = 0; (i = text.find(from, i)) != std::string::npos; i += to.size()) {
        text.replace(i, from.size(), to);
    }
    return text;
}

Words SplitWords(const std::string& text) {
    std::istringstream stream(text);
    Words words{std::istream_iterator<std::string>(stream), {}};
    std::transform(words.begin(), words.end(), words.begin(), Expand);
    return words;
}

Words Split(const std::string& text, std::string_view separator) {
    Words pieces;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find(separator, start)) != std::string::npos;) {
        pieces.push_back(text.substr(start, end - start));
        start = end + separator.size();
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

void ExpectRows(const std::string& expected, const std::string& printed, const std::string& what) {
    const Words patterns = Split(expected, "\n");
    const Words rows = Split(printed, "\n");
    std::string seen;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        seen +=
            (i < patterns.size() && Matches(rows[i], patterns[i]) ? patterns[i] : rows[i]) + "\n";
    }
    EXPECT_EQ(expected + "\n", seen) << what;
}

CatalogueText ReadCatalogue(const std::string& file, const std::string& body) {
    const bool isCommand = file.find("cmds.conf") != std::string::npos;
    CatalogueText text;
    Words rows;
    std::size_t place = 1;
    for (const std::string& written : Split(Expand(body), "\n")) {
        const Words parts = Split(" " + written, " #! ");
        if (!parts[0].empty()) {
            place = Append(rows, parts[0].substr(1), isCommand);
        }
        for (auto finding = parts.begin() + 1; finding != parts.end(); ++finding) {
            const std::size_t words = finding->find(' ') + 1;
            text.findings += "./" + file + ":" + std::to_string(place) + ": " +
                             finding->substr(0, words) + "..." + finding->substr(words) + "...\n";
        }
    }
    for (const std::string& row : rows) {
        text.rows += (&row == &rows.front() ? "" : "\n") + row;
    }
    return text;
}
