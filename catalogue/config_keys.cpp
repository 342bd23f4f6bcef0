#include "catalogue/config_keys.h"

namespace {

bool ValueFits(const ConfigKey& key, const RowParts& row, std::FILE* messages) {
    if (!row.ValueFits()) {
        PrintLength(messages, key.valueTooLong, row.valueLength);
    }
    return row.ValueFits();
}

template <typename Value>
Value ValueOf(const ConfigKey& key, const std::string& row) {
    Value value = {};
    ReadValue(key, CutRow(row), stdout, value);
    return value;
}

}  // namespace

void PrintLength(std::FILE* messages, const char* message, std::size_t length) {
    if (messages != nullptr) {
        std::fprintf(messages, message, static_cast<int>(length));
    }
}

std::string ReadTitle(const std::string& row, std::FILE* messages) {
    if (row.size() < kConfigTextSize) {
        return std::string(TitleName(row));
    }
    PrintLength(messages, kTitleTooLong, row.size());
    return {};
}

void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages, std::string& field) {
    field = ValueFits(key, row, messages) ? row.value : std::string_view();
}

void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages,
               std::int32_t& field) {
    field = 0;
    if (!ValueFits(key, row, messages)) {
        return;
    }
    const std::string value(row.value);
    const HexNumber number = ParseHexNumber(value);
    if (number.usedLength == 0 && messages != nullptr) {
        std::fprintf(messages, "strtol:%s is not figure\n", value.c_str());
    }
    field = number.value;
}

void ReadValue(const ConfigKey& key, const RowParts& row, std::FILE* messages,
               Array<std::string>& field) {
    field.m_list.clear();
    if (!ValueFits(key, row, messages)) {
        return;
    }
    std::string_view rest = row.value;
    for (;;) {
        const std::size_t comma = rest.find(',');
        field.m_list.emplace_back(rest.substr(0, comma));
        if (comma == std::string_view::npos) {
            return;
        }
        rest.remove_prefix(comma + 1);
    }
}

bool KoFileParse::IsBlockTitile(const std::string& row) {
    return IsTitleRow(row, stdout);
}

bool KoFileParse::IsCommand(const std::string& row) {
    return IsKeyRow(kCommandKey, CutRow(row), stdout);
}

bool KoFileParse::IsInstruction(const std::string& row) {
    return IsKeyRow(kInstructionKey, CutRow(row), stdout);
}

bool KoFileParse::IsDescription(const std::string& row) {
    return IsKeyRow(kDescriptionKey, CutRow(row), stdout);
}

bool KoFileParse::IsBelongMod(const std::string& row) {
    return IsKeyRow(kBelongModKey, CutRow(row), stdout);
}

bool KoFileParse::IsPrintFmt(const std::string& row) {
    return IsKeyRow(kPrintFmtKey, CutRow(row), stdout);
}

bool KoFileParse::IsPrintTags(const std::string& row) {
    return IsKeyRow(kPrintTagsKey, CutRow(row), stdout);
}

bool KoFileParse::IsParaFormat(const std::string& row) {
    return IsKeyRow(kParaFormatKey, CutRow(row), stdout);
}

std::string KoFileParse::GetBlockTitile(const std::string& row) {
    return ReadTitle(row, stdout);
}

std::string KoFileParse::GetCommand(const std::string& row) {
    return ValueOf<std::string>(kCommandKey, row);
}

std::string KoFileParse::GetDescription(const std::string& row) {
    return ValueOf<std::string>(kDescriptionKey, row);
}

std::string KoFileParse::GetBelongMod(const std::string& row) {
    return ValueOf<std::string>(kBelongModKey, row);
}

std::string KoFileParse::GetPrintFmt(const std::string& row) {
    return ValueOf<std::string>(kPrintFmtKey, row);
}

std::string KoFileParse::GetParaFormat(const std::string& row) {
    return ValueOf<std::string>(kParaFormatKey, row);
}

std::int32_t KoFileParse::GetInstruction(const std::string& row) {
    return ValueOf<std::int32_t>(kInstructionKey, row);
}

Array<std::string> KoFileParse::GetPrintTags(const std::string& row) {
    return ValueOf<Array<std::string>>(kPrintTagsKey, row);
}
