#pragma once

#include <string>
#include <string_view>
#include <vector>

// A completion group as a test writes it.
struct WordGroup {
    std::string title;
    std::vector<std::string> words;
};

// What a run of keys leads to: every line handed out ("TAB" included) and every byte written.
struct EditorRun {
    std::vector<std::string> lines;
    std::string output;

    bool operator==(const EditorRun& other) const {
        return lines == other.lines && output == other.output;
    }
};

// Runs the line editor over the keys, to their end.
EditorRun RunEditor(std::string keys, const std::vector<WordGroup>& groups);

// Works out the same from the rules, with plain strings and indexes.
EditorRun RunModel(std::string_view keys, const std::vector<WordGroup>& groups);
