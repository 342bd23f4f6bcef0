#include "tools/text.h"

#include <algorithm>
#include <optional>

#include "format/printable.h"
#include "format/utf8.h"
#include "tools/check/check.h"

namespace {

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return byte >= ' ' && byte <= '~'; });
}

// The first control character. Not a carriage return, which CheckBytes reports.
std::optional<unsigned char> FindControl(std::string_view text) {
    while (!text.empty()) {
        const std::string_view character = TakeUtf8(text);
        if (IsControl(character) && character != "\r") {
            return static_cast<unsigned char>(character.back());
        }
    }
    return std::nullopt;
}

}  // namespace

void CheckBytes(const FileRow& row, FindingList& findings) {
    if (IsPlain(row.text)) {
        return;
    }
    // At these two the console, or whoever reads the file, sees the end of a row that goes on.
    if (row.text.find('\0') != std::string::npos) {
        findings.Error(row.line, Quoted(row.text) + " is cut at its NUL byte",
                       "save the file as plain text");
    }
    if (TrimConfigText(row.text).find('\r') != std::string::npos) {
        findings.Error(
            row.line, Quoted(row.text) + " holds a carriage return, which is no line end by itself",
            "save the file with LF line ends");
    }
    if (ValidUtf8(row.text) != row.text) {
        findings.Warning(row.line, Quoted(row.text) + " is no UTF-8", "save the file as UTF-8");
    }
}

void CheckShown(std::size_t line, const std::string& what, const std::string& text,
                FindingList& findings) {
    const auto control = IsPlain(text) ? std::nullopt : FindControl(text);
    if (control) {
        findings.Warning(line,
                         "the " + what + " " + Quoted(text) + " holds the control byte " +
                             Hex(*control) + ", which a terminal obeys",
                         "remove it");
    }
}
