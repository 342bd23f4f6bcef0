#include "tests/support/editor_model.h"

#include <cstdio>
#include <cstdlib>

#include "lineedit/ko_stream.h"

namespace {

constexpr std::size_t kMostHistory = 10000;
constexpr std::size_t kMostLine = 1023;

class Model {
public:
    explicit Model(const std::vector<WordGroup>& groups) : m_groups(groups) {}

    EditorRun Run(std::string_view keys) {
        for (std::size_t i = 0; i < keys.size() && !m_ended; ++i) {
            Take(keys[i]);
        }
        return m_run;
    }

private:
    void Take(char key) {
        if (key == '\b') {
            Erase();
        } else if (key == '\t') {
            Complete();
        } else if (key == '\n') {
            Accept();
        } else if (key == 'A' && m_cursor > 0) {
            Recall(--m_cursor);
        } else if (key == 'B' && m_cursor < m_history.size()) {
            Recall(++m_cursor);
        } else if (std::string_view("\x1b[ABCD").find(key) == std::string_view::npos) {
            m_run.output += key;
            m_line += key;
        }
    }

    void Erase() {
        if (!m_line.empty()) {
            m_line.pop_back();
            m_run.output += "\b \b";
        }
    }

    void Recall(std::size_t entry) {
        if (entry < m_history.size()) {
            while (!m_line.empty()) {
                Erase();
            }
            m_line = m_history[entry];
            m_run.output += m_line.c_str();
        }
    }

    void Accept() {
        if (m_history.size() == kMostHistory) {
            m_history.erase(m_history.begin());
        }
        if (!m_line.empty()) {
            m_history.push_back(m_line);
        }
        m_run.output += "\n\r";
        if (m_line.size() > kMostLine) {
            m_run.output += "Error:m_strInbuffer too large\n";
            m_ended = true;
            return;
        }
        m_run.lines.emplace_back(m_line.c_str());
        m_line.clear();
        m_cursor = m_history.size();
    }

    void Complete() {
        const std::string rule(34, '=');
        std::string listing;
        std::string only;
        std::size_t matches = 0;
        for (const WordGroup& group : m_groups) {
            std::size_t inGroup = 0;
            for (const std::string& word : group.words) {
                if (word.compare(0, m_line.size(), m_line) != 0) {
                    continue;
                }
                if (inGroup == 0) {
                    listing += "\n" + rule + group.title + rule + "\n";
                }
                listing += inGroup % 10 == 0 ? word : "\t" + word;
                listing += inGroup % 10 == 9 ? "\n" : "";
                ++inGroup;
                ++matches;
                only = word;
            }
        }
        if (matches == 1) {
            m_run.output += only.substr(m_line.size());
            m_line = only;
        } else if (matches > 1) {
            m_run.output += listing + "\n" + m_line.c_str();
            m_run.lines.emplace_back("TAB");
        }
    }

    const std::vector<WordGroup>& m_groups;
    std::vector<std::string> m_history;
    std::size_t m_cursor = 0;
    std::string m_line;
    bool m_ended = false;
    EditorRun m_run;
};

}  // namespace

EditorRun RunModel(std::string_view keys, const std::vector<WordGroup>& groups) {
    return Model(groups).Run(keys);
}

EditorRun RunEditor(std::string_view keys, const std::vector<WordGroup>& groups) {
    EditorRun run;
    std::string input(keys);
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
    if (input.empty()) {
        return run;  // fmemopen takes no empty buffer
    }
    std::FILE* const oldIn = stdin;
    std::FILE* const oldOut = stdout;
    char* written = nullptr;
    std::size_t length = 0;
    stdin = fmemopen(input.data(), input.size(), "r");
    stdout = open_memstream(&written, &length);
    while (const char* line = editor.Gets()) {
        run.lines.emplace_back(line);
    }
    std::fclose(stdin);
    std::fclose(stdout);
    stdin = oldIn;
    stdout = oldOut;
    run.output.assign(written, length);
    std::free(written);
    return run;
}
