#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "catalogue/ko_file_parse.h"
#include "catalogue/row_grammar.h"

// The key words of both files: how they are written, what is printed about them, and where their
// values go. `messages` is where a function prints; null for nowhere. Main thread only.

// The message for a title over the limit; takes its length.
inline constexpr char kTitleTooLong[] = "str size:%d too large, max len:256\n";
static_assert(kConfigTextSize == 256, "named in the message");

// A key word, with the messages for a key and for a value over the limit. The first takes the
// length of the raw key, the second that of the raw value and its "=".
struct ConfigKey {
    std::string_view word;
    const char* keyTooLong;
    const char* valueTooLong;
};

inline constexpr ConfigKey kCommandKey = {"command", "IsCommand string str.size(): %d\n",
                                          "GetCommand string size: %d\n"};
inline constexpr ConfigKey kInstructionKey = {
    "instruction", "IsInstruction string str.size(): %d\n", "GetInstruction string size: %d\n"};
inline constexpr ConfigKey kDescriptionKey = {
    "description", "IsDescription string str.size(): %d\n", "GetDescription string size: %d\n"};
inline constexpr ConfigKey kBelongModKey = {"belong module", "IsBelongMod string str.size(): %d]\n",
                                            "GetBelongMod string size: %d\n"};
inline constexpr ConfigKey kParaFormatKey = {"para format", "IsParaFormat string str.size(): %d\n",
                                             "GetParaFormat string size: %d\n"};
inline constexpr ConfigKey kPrintFmtKey = {"print format", "IsPrintFmt string str.size(): %d\n",
                                           "GetPrintFmt string size: %d\n"};
inline constexpr ConfigKey kPrintTagsKey = {"print tags", "IsPrintTags string str.size(): %d\n",
                                            "GetPrintTags string size: %d\n"};

// A key word of a file and the field of the record that its value goes to.
template <typename Record>
struct KeyField {
    ConfigKey key;
    std::variant<std::string Record::*, std::int32_t Record::*, Array<std::string> Record::*> field;
};

// The key words of each file in the order in which they are tried; a shortened key goes to the
// first that it begins.
inline constexpr KeyField<KoFileParse::KoModuleInfo> kModuleKeys[] = {
    {kCommandKey, &KoFileParse::KoModuleInfo::m_strCmd},
    {kInstructionKey, &KoFileParse::KoModuleInfo::m_instruct},
    {kDescriptionKey, &KoFileParse::KoModuleInfo::m_strDescrip},
};
inline constexpr KeyField<KoFileParse::KoCmdInfo> kCmdKeys[] = {
    {kCommandKey, &KoFileParse::KoCmdInfo::m_strCmd},
    {kBelongModKey, &KoFileParse::KoCmdInfo::m_strBelongMod},
    {kInstructionKey, &KoFileParse::KoCmdInfo::m_instruct},
    {kParaFormatKey, &KoFileParse::KoCmdInfo::m_strParaFmt},
    {kPrintFmtKey, &KoFileParse::KoCmdInfo::m_strPrintFmt},
    {kPrintTagsKey, &KoFileParse::KoCmdInfo::m_printTags},
    {kDescriptionKey, &KoFileParse::KoCmdInfo::m_strDescrip},
};

// The key words of a record's file.
template <typename Record>
constexpr const auto& KeysOf() {
    if constexpr (std::is_same_v<Record, KoFileParse::KoModuleInfo>) {
        return kModuleKeys;
    } else {
        return kCmdKeys;
    }
}

// Prints one of the messages about a text over its limit.
void PrintLength(std::FILE* messages, const char* message, std::size_t length);

// True when the row is a title; prints a line for a row over the limit. `rest` is as for CutRow.
inline bool IsTitleRow(const std::string& row, std::FILE* messages,
                       const KoFile::RowRest& rest = {}) {
    if (row.size() < kConfigTextSize) {
        return IsInBrackets(row);
    }
    PrintLength(messages, kTitleTooLong, row.size() + rest.size);
    return false;
}

// The name of the block that a title row opens; empty, after a line, for a row over the limit.
std::string ReadTitle(const std::string& row, std::FILE* messages);

// True when the row is a row of that key; prints a line for a key over the limit.
inline bool IsKeyRow(const ConfigKey& key, const RowParts& row, std::FILE* messages) {
    if (!row.HasKey()) {
        return false;
    }
    if (!row.KeyFits()) {
        PrintLength(messages, key.keyTooLong, row.keyLength);
        return false;
    }
    return KeyMatches(key.word, row);
}

// Each sets the field to the value of a row of that key. A value over the limit prints a line and
// counts as empty, as 0 for a number and as no tag at all for a list.
void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages, std::string& field);
void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages, std::int32_t& field);
void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages,
               Array<std::string>& field);
