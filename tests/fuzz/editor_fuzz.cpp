#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "lineedit/ko_stream.h"
#include "tests/fuzz/fuzz_input.h"

// The line editor, and a model of it that works the same out from the rules, with plain strings and
// indexes: whatever is typed, both write the same bytes and hand out the same lines in between.

namespace {

struct WordGroup {
    std::string title;
    std::vector<std::string> words;
};

// A line that was handed out, as it stands among what was written.
std::string HandedOut(const char* line) {
    return std::string("\r<") + line + ">\r";
}

constexpr std::size_t kMostHistory = 10000;
constexpr std::size_t kMostLine = 1023;

struct Model {
    void Take(char key, const std::vector<WordGroup>& groups) {
        if (key == '\b') {
            Erase(line.empty() ? 0 : 1);
        } else if (key == '\t') {
            Complete(groups);
        } else if (key == '\n') {
            Accept();
        } else if (key == 'A' && cursor > 0) {
            Recall(--cursor);
        } else if (key == 'B' && cursor < history.size()) {
            Recall(++cursor);
        } else if (std::string_view("\x1b[ABCD").find(key) == std::string_view::npos) {
            output += key;
            line += key;
        }
    }

    void Erase(std::size_t count) {
        for (; count > 0; --count) {
            line.pop_back();
            output += "\b \b";
        }
    }

    void Recall(std::size_t entry) {
        if (entry < history.size()) {
            Erase(line.size());
            line = history[entry];
            output += line.c_str();
        }
    }

    void Accept() {
        if (history.size() == kMostHistory) {
            history.erase(history.begin());
        }
        if (!line.empty()) {
            history.push_back(line);
        }
        cursor = history.size();
        ended = line.size() > kMostLine;
        output += ended ? "\n\rError:m_strInbuffer too large\n" : "\n\r";
        if (!ended) {
            output += HandedOut(line.c_str());
        }
        line.clear();
    }

    void Complete(const std::vector<WordGroup>& groups) {
        const std::string rule(34, '=');
        std::string listing;
        std::vector<std::string> matches;
        for (const WordGroup& group : groups) {
            std::size_t inGroup = 0;
            for (const std::string& word : group.words) {
                if (word.compare(0, line.size(), line) == 0) {
                    listing += inGroup == 0 ? "\n" + rule + group.title + rule + "\n" : "";
                    listing += inGroup % 10 == 0 ? word : "\t" + word;
                    listing += inGroup % 10 == 9 ? "\n" : "";
                    ++inGroup;
                    matches.push_back(word);
                }
            }
        }
        if (matches.size() == 1) {
            output += matches[0].substr(line.size());
            line = matches[0];
        } else if (matches.size() > 1) {
            output += listing + "\n" + HandedOut("TAB") + line.c_str();
        }
    }

    std::vector<std::string> history;
    std::size_t cursor = 0;
    std::string line;
    bool ended = false;
    std::string output;
};

std::string RunEditor(std::string keys, const std::vector<WordGroup>& groups) {
    std::vector<std::vector<char*>> tables;
    KoStream editor;
    for (const WordGroup& group : groups) {
        std::vector<char*>& table = tables.emplace_back();
        for (const std::string& word : group.words) {
            table.push_back(const_cast<char*>(word.c_str()));
        }
        editor.RegistTab(group.title, static_cast<unsigned int>(table.size()), table.data(),
                         tables.size() == 1);
    }
    char* written = nullptr;
    std::size_t length = 0;
    std::FILE* const oldIn = std::exchange(stdin, fmemopen(keys.data(), keys.size(), "r"));
    std::FILE* const oldOut = std::exchange(stdout, open_memstream(&written, &length));
    while (const char* line = editor.Gets()) {
        std::fputs(HandedOut(line).c_str(), stdout);
    }
    std::fclose(std::exchange(stdin, oldIn));
    std::fclose(std::exchange(stdout, oldOut));
    std::string output(written, length);
    std::free(written);
    return output;
}

}  // namespace

// Parts: completion words (a row each, an empty row begins another group), keys.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto parts = SplitInput(data, size, 2);
    std::vector<WordGroup> groups(1);
    std::istringstream rows(parts[0].substr(0, parts[0].find('\0')));
    for (std::string row; std::getline(rows, row);) {
        if (row.empty()) {
            groups.push_back({"group", {}});
        } else {
            groups.back().words.push_back(row);
        }
    }
    Model model;
    for (std::size_t i = 0; i < parts[1].size() && !model.ended; ++i) {
        model.Take(parts[1][i], groups);
    }
    Require(model.output == RunEditor(parts[1], groups), "the editor does what the model does");
    return 0;
}
