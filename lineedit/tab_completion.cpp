#include <cstdio>
#include <cstring>
#include <utility>

#include "lineedit/ko_stream.h"

namespace {

constexpr unsigned int kWordsPerRow = 10;
constexpr char kHeaderRule[] = "==================================";

std::string GroupHeader(const std::string& title) {
    return "\n" + (kHeaderRule + title) + kHeaderRule + "\n";
}

// A line with a NUL byte, which ends the comparison early, matches nothing.
bool BeginsWith(const char* word, const std::string& line) {
    return std::strncmp(line.c_str(), word, line.size()) == 0 &&
           strnlen(word, line.size()) == line.size();
}

// `column` counts from 1.
std::string WordPiece(const char* word, unsigned int column) {
    std::string piece = column == 1 ? "" : "\t";
    piece += word;
    if (column == kWordsPerRow) {
        piece += '\n';
    }
    return piece;
}

}  // namespace

int KoStream::RegistTab(std::string name, unsigned int count, char** list, KO_BOOL bClear) {
    if (bClear != 0) {
        m_vecModInfo.clear();
    }
    m_vecModInfo.push_back({std::move(name), count, list});
    return 0;
}

// Appends, for each group with a word that begins with the pending line, a header and those words.
void KoStream::ParseModeInfo(std::list<std::string>& out) {
    for (const ModInfo& group : m_vecModInfo) {
        unsigned int column = 0;
        bool headed = false;
        for (unsigned int i = 0; i < group.u32Count; ++i) {
            const char* word = group.ppList[i];
            if (!BeginsWith(word, m_strInbuffer)) {
                continue;
            }
            if (!headed) {
                out.push_back(GroupHeader(group.strName));
                headed = true;
            }
            ++column;
            out.push_back(WordPiece(word, column));
            column %= kWordsPerRow;
        }
    }
}

int KoStream::OnTab() {
    std::list<std::string> listing;
    ParseModeInfo(listing);
    if (listing.empty()) {
        return -1;
    }
    if (listing.size() == 2) {
        const std::string& word = listing.back();
        std::printf("%s", word.c_str() + m_strInbuffer.size());
        std::fflush(stdout);
        m_strInbuffer = word;
        return -1;
    }
    for (const std::string& piece : listing) {
        std::fputs(piece.c_str(), stdout);
        std::fflush(stdout);
    }
    if (std::putchar('\n') == EOF) {
        return -1;
    }
    std::fflush(stdout);
    return 0;
}
