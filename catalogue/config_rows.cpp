#include <cstdio>
#include <string_view>

#include "catalogue/ko_file_parse.h"
#include "catalogue/row_grammar.h"

namespace {

int Int(std::size_t size) {
    return static_cast<int>(size);
}

bool TitleFits(const std::string& row) {
    if (row.size() < kConfigTextSize) {
        return true;
    }
    std::printf("str size:%d too large, max len:%d\n", Int(row.size()), Int(kConfigTextSize));
    return false;
}

// `tooLong` takes the length of the raw key.
bool IsKeyRow(const char* keyWord, const char* tooLong, const std::string& row) {
    const std::size_t length = RawKeyLength(row);
    if (length == std::string::npos) {
        return false;
    }
    if (length >= kConfigTextSize) {
        std::printf(tooLong, Int(length));
        return false;
    }
    return KeyMatches(keyWord, std::string_view(row).substr(0, length));
}

// `tooLong` takes the length of the raw value and its "=".
bool ValueFits(const char* tooLong, const std::string& row) {
    const std::size_t length = RawValueLength(row);
    if (length < kConfigTextSize) {
        return true;
    }
    std::printf(tooLong, Int(length));
    return false;
}

std::string ReadText(const char* tooLong, const std::string& row) {
    return ValueFits(tooLong, row) ? std::string(RowValue(row)) : std::string();
}

}  // namespace

bool KoFileParse::IsBlockTitile(const std::string& row) {
    return TitleFits(row) && IsTitleRow(row);
}

bool KoFileParse::IsCommand(const std::string& row) {
    return IsKeyRow(kCommandKey, "IsCommand string str.size(): %d\n", row);
}

bool KoFileParse::IsInstruction(const std::string& row) {
    return IsKeyRow(kInstructionKey, "IsInstruction string str.size(): %d\n", row);
}

bool KoFileParse::IsDescription(const std::string& row) {
    return IsKeyRow(kDescriptionKey, "IsDescription string str.size(): %d\n", row);
}

bool KoFileParse::IsBelongMod(const std::string& row) {
    return IsKeyRow(kBelongModKey, "IsBelongMod string str.size(): %d]\n", row);
}

bool KoFileParse::IsPrintFmt(const std::string& row) {
    return IsKeyRow(kPrintFmtKey, "IsPrintFmt string str.size(): %d\n", row);
}

bool KoFileParse::IsPrintTags(const std::string& row) {
    return IsKeyRow(kPrintTagsKey, "IsPrintTags string str.size(): %d\n", row);
}

bool KoFileParse::IsParaFormat(const std::string& row) {
    return IsKeyRow(kParaFormatKey, "IsParaFormat string str.size(): %d\n", row);
}

std::string KoFileParse::GetBlockTitile(const std::string& row) {
    return TitleFits(row) ? std::string(TitleName(row)) : std::string();
}

std::string KoFileParse::GetCommand(const std::string& row) {
    return ReadText("GetCommand string size: %d\n", row);
}

std::string KoFileParse::GetDescription(const std::string& row) {
    return ReadText("GetDescription string size: %d\n", row);
}

std::string KoFileParse::GetBelongMod(const std::string& row) {
    return ReadText("GetBelongMod string size: %d\n", row);
}

std::string KoFileParse::GetPrintFmt(const std::string& row) {
    return ReadText("GetPrintFmt string size: %d\n", row);
}

std::string KoFileParse::GetParaFormat(const std::string& row) {
    return ReadText("GetParaFormat string size: %d\n", row);
}

std::int32_t KoFileParse::GetInstruction(const std::string& row) {
    if (!ValueFits("GetInstruction string size: %d\n", row)) {
        return 0;
    }
    const std::string value(RowValue(row));
    const HexNumber number = ParseHexNumber(value);
    if (number.usedLength == 0) {
        std::printf("strtol:%s is not figure\n", value.c_str());
    }
    return number.value;
}

Array<std::string> KoFileParse::GetPrintTags(const std::string& row) {
    Array<std::string> tags;
    if (!ValueFits("GetPrintTags string size: %d\n", row)) {
        return tags;
    }
    std::string_view rest = RowValue(row);
    for (;;) {
        const std::size_t comma = rest.find(',');
        tags.push_back(std::string(rest.substr(0, comma)));
        if (comma == std::string_view::npos) {
            return tags;
        }
        rest.remove_prefix(comma + 1);
    }
}
