#pragma once

#include <string>
#include <vector>

#include "catalogue/ko_file_parse.h"
#include "format/format_letters.h"

// The types of a format's values, letter by letter; "unknown" for a character that is none.
inline std::vector<std::string> TypeNames(const std::string& format) {
    std::vector<std::string> names;
    for (const char letter : format) {
        const FormatLetter* row = FindFormatLetter(letter);
        names.emplace_back(row != nullptr ? row->typeName : "unknown");
    }
    return names;
}

// The labels of the print format's values, letter by letter; empty for a letter without one.
inline std::vector<std::string> Labels(const KoFileParse::KoCmdInfo& cmd) {
    std::vector<std::string> labels(cmd.m_printTags.begin(), cmd.m_printTags.end());
    labels.resize(cmd.m_strPrintFmt.size());
    return labels;
}
