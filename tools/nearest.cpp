#include "tools/nearest.h"

#include <algorithm>
#include <cctype>

#include "tools/text.h"

namespace {

constexpr std::size_t kMostEdits = 2;
constexpr std::size_t kLeastBeginning = 3;  // bytes
constexpr std::size_t kMostText = 64;       // bytes; longer ones are no typing mistake

bool SameLetter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

// Whether so many letters put in, left out or changed make one text of the other.
bool IsWithin(std::size_t edits, std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty() && SameLetter(a.front(), b.front())) {
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    if (a.empty() || b.empty()) {
        return a.size() + b.size() <= edits;
    }
    return edits > 0 &&
           (IsWithin(edits - 1, a.substr(1), b.substr(1)) || IsWithin(edits - 1, a.substr(1), b) ||
            IsWithin(edits - 1, a, b.substr(1)));
}

bool Begins(std::string_view text, std::string_view word) {
    return text.size() >= kLeastBeginning && IsWithin(0, text, word.substr(0, text.size()));
}

}  // namespace

std::string Nearest(std::string_view text, const std::vector<std::string>& words) {
    if (text.size() > kMostText) {
        return "";
    }
    const auto first = [&](const auto& fits) {
        const auto found = std::find_if(words.begin(), words.end(), fits);
        return found != words.end() ? *found : std::string();
    };
    for (std::size_t edits = 0; edits <= kMostEdits && edits < text.size(); ++edits) {
        std::string near =
            first([&](std::string_view word) { return IsWithin(edits, text, word); });
        if (!near.empty()) {
            return near;
        }
    }
    return first([&](std::string_view word) { return Begins(text, word); });
}

std::string DidYouMean(const std::string& word, const std::string& otherwise) {
    return word.empty() ? otherwise : "did you mean " + Quoted(word) + "?";
}

std::string WithNearest(const std::string& message, std::string_view text,
                        const std::vector<std::string>& words) {
    const std::string hint = DidYouMean(Nearest(text, words), "");
    return message + (hint.empty() ? "" : "; ") + hint;
}
