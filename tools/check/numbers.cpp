#include <algorithm>
#include <cctype>
#include <unordered_map>

#include "platform/read_number.h"
#include "tools/check/check.h"
#include "tools/text.h"

namespace {

using Fate = KoFileParse::Fate;

constexpr char kRangeRemedy[] = "write 0x0 to 0x7fffffff and nothing else";
constexpr char kSharingRemedy[] = "give each a number of its own";

bool IsDigit(char byte) {
    return std::isdigit(static_cast<unsigned char>(byte)) != 0;
}

// A number of several digits that is another one where they count as decimal.
void CheckBase(std::size_t line, const std::string& value, const HexNumber& number,
               FindingList& findings) {
    std::int32_t decimal = 0;
    if (number.clamped || !std::all_of(value.begin(), value.end(), IsDigit) ||
        !ReadNumber(value, decimal) || decimal == number.value) {
        return;
    }
    findings.Warning(line,
                     "the instruction " + Quoted(value) + " is hexadecimal, so it is " +
                         std::to_string(number.value) + " in decimal",
                     "write " + Hex(number.value) + ", or " + Hex(decimal) + " for a decimal " +
                         std::to_string(decimal));
}

// Whether the block has an instruction of its own that is well written.
bool HasNumber(const CatalogueBlock& block) {
    if (!block.IsGiven(kInstructionKey)) {
        return false;
    }
    const std::string value = block.Find(kInstructionKey)->Value();
    const HexNumber number = ParseHexNumber(value);
    return number.usedLength != 0 && number.usedLength == value.size() && !number.clamped;
}

void CheckDigits(const CatalogueBlock& block, FindingList& findings) {
    if (!block.IsGiven(kInstructionKey)) {
        return;
    }
    const std::string value = block.Find(kInstructionKey)->Value();
    const std::size_t line = block.LineOf(kInstructionKey);
    const HexNumber number = ParseHexNumber(value);
    const std::string what = "the instruction " + Quoted(value);
    const std::string taken = ": " + Hex(number.value) + " is taken";
    if (number.usedLength == 0) {
        findings.Error(line, what + " is not hexadecimal" + taken, kRangeRemedy);
    } else if (number.usedLength != value.size()) {
        findings.Error(line, what + " has trailing characters" + taken, kRangeRemedy);
    }
    if (number.clamped) {
        findings.Error(line, what + " does not fit 32 bits" + taken, kRangeRemedy);
    }
    CheckBase(line, value, number, findings);
}

// Finds the blocks that came with the number of an earlier one.
template <typename Block>
class FirstUses {
public:
    // The first block of the block's number; null when that is the block itself, or there is none.
    const Block* Other(const Block& block) {
        if (block.stored.fate != Fate::kStored || !HasNumber(block)) {
            return nullptr;
        }
        const Block* first = m_first.emplace(block.record.m_instruct, &block).first->second;
        return first != &block ? first : nullptr;
    }

private:
    std::unordered_map<std::int32_t, const Block*> m_first;
};

std::string Difference(const ConfigKey& key, const std::string& here, const std::string& there) {
    return here == there ? ""
                         : ", with the " + std::string(key.word) + " " + Quoted(here) +
                               " here and " + Quoted(there) + " there";
}

// "the instruction 0x11 is that of ... at ... too".
template <typename Block>
std::string SharingText(const Block& block, const std::string& other, const Block& first,
                        const FindingList& findings) {
    return "the instruction " + Hex(block.record.m_instruct) + " is that of " + other + " at " +
           findings.Place(first.LineOf(kInstructionKey)) + " too";
}

}  // namespace

void CheckNumber(const ModuleBlock& block, FindingList& findings) {
    CheckDigits(block, findings);
    if (block.IsGiven(kInstructionKey) && block.record.m_instruct == -1) {
        findings.Error(
            block.LineOf(kInstructionKey),
            "the instruction " + Quoted(block.Find(kInstructionKey)->Value()) + " counts as none",
            kRangeRemedy);
    }
}

void CheckNumber(const CmdBlock& block, FindingList& findings) {
    CheckDigits(block, findings);
    if (block.Find(kInstructionKey) == nullptr && !block.IsLost(kInstructionKey)) {
        findings.Error(
            block.title.line,
            "the block " + Quoted(block.record.m_strName) + " has no \"instruction\": -1 is sent",
            "add the number that the service knows");
    }
}

void CheckNumbers(const CheckedCatalogue& checked, FindingList& moduleFindings,
                  FindingList& commandFindings) {
    FirstUses<ModuleBlock> modules;
    for (const ModuleBlock& block : checked.modules.blocks) {
        const ModuleBlock* first = block.record.m_instruct != -1 ? modules.Other(block) : nullptr;
        if (first != nullptr) {
            const std::string other = "the module " + Quoted(first->record.m_strName);
            moduleFindings.Warning(block.LineOf(kInstructionKey),
                                   SharingText(block, other, *first, moduleFindings) +
                                       ": each has the commands of both",
                                   kSharingRemedy);
        }
    }
    FirstUses<CmdBlock> commands;
    for (const CmdBlock& block : checked.commands.blocks) {
        const CmdBlock* first = commands.Other(block);
        if (first != nullptr) {
            const auto& here = block.record;
            const auto& there = first->record;
            commandFindings.Warning(
                block.LineOf(kInstructionKey),
                SharingText(block, Quoted(there.m_strCmd), *first, commandFindings) +
                    Difference(kParaFormatKey, here.m_strParaFmt, there.m_strParaFmt) +
                    Difference(kPrintFmtKey, here.m_strPrintFmt, there.m_strPrintFmt),
                kSharingRemedy);
        }
    }
}
