#include <unordered_map>

#include "platform/read_number.h"
#include "tools/check/check.h"
#include "tools/text.h"

namespace {

using ModuleInfo = KoFileParse::KoModuleInfo;
using CmdInfo = KoFileParse::KoCmdInfo;

constexpr char kNumberRemedy[] = "write 0x0 to 0x7fffffff and nothing else";

// A number of several digits that is another one where they count as decimal.
void CheckBase(std::size_t line, const std::string& value, const HexNumber& number,
               FindingList& findings) {
    std::int32_t decimal = 0;
    if (number.clamped || value.find_first_not_of("0123456789") != std::string::npos ||
        !ReadNumber(value, decimal) || decimal == number.value) {
        return;
    }
    findings.Warning(line, "the instruction {} is hexadecimal: {} in decimal",
                     {Quoted(value), std::to_string(number.value)},
                     FormatText("write {}, or {} for decimal {}",
                                {Hex(number.value), Hex(decimal), std::to_string(decimal)}));
}

// Whether the block has an instruction of its own that is well written.
bool HasNumber(const CatalogueBlock& block) {
    const KeyRow* row = block.Find(kInstructionKey);
    const std::string value = row != nullptr ? row->Value() : "";
    const HexNumber number = ParseHexNumber(value);
    return !value.empty() && number.usedLength == value.size() && !number.clamped;
}

void CheckDigits(const CatalogueBlock& block, FindingList& findings) {
    if (!block.IsGiven(kInstructionKey)) {
        return;
    }
    const std::string value = block.Find(kInstructionKey)->Value();
    const std::size_t line = block.LineOf(kInstructionKey);
    const HexNumber number = ParseHexNumber(value);
    const auto report = [&](const char* what) {
        findings.Error(line, "the instruction {} {}: it is read as {}",
                       {Quoted(value), what, Hex(number.value)}, kNumberRemedy);
    };
    if (number.usedLength == 0) {
        report("is not hexadecimal");
    } else if (number.usedLength != value.size()) {
        report("has trailing characters");
    }
    if (number.clamped) {
        report("does not fit 32 bits");
    }
    CheckBase(line, value, number, findings);
}

std::string Difference(const ConfigKey& key, const std::string& here, const std::string& there) {
    return here == there ? ""
                         : FormatText(", with the {} {} here and {} there",
                                      {std::string(key.word), Quoted(here), Quoted(there)});
}

// What differs between two kinds of records that have the same number: how a finding names the
// record, and what the sharing means.
std::string NameOf(const ModuleInfo& module) {
    return "the module " + Quoted(module.m_strName);
}
std::string NameOf(const CmdInfo& cmd) {
    return Quoted(cmd.m_strCmd);
}

std::string Effect(const ModuleInfo& /*here*/, const ModuleInfo& /*there*/) {
    return ": each module has the commands of both";
}
std::string Effect(const CmdInfo& here, const CmdInfo& there) {
    return Difference(kParaFormatKey, here.m_strParaFmt, there.m_strParaFmt) +
           Difference(kPrintFmtKey, here.m_strPrintFmt, there.m_strPrintFmt);
}

template <typename Block>
void CheckShared(CheckedFile<Block>& file) {
    std::unordered_map<std::int32_t, const Block*> firsts;  // by their numbers
    for (const Block& block : file.blocks) {
        if (block.stored.fate != KoFileParse::Fate::kStored || !HasNumber(block) ||
            block.record.m_instruct == -1) {
            continue;
        }
        const Block& first = *firsts.emplace(block.record.m_instruct, &block).first->second;
        if (&first != &block) {
            file.findings.Warning(block.LineOf(kInstructionKey),
                                  "the instruction {} is also that of {} at {}{}",
                                  {Hex(block.record.m_instruct), NameOf(first.record),
                                   file.findings.Place(first.LineOf(kInstructionKey)),
                                   Effect(block.record, first.record)},
                                  "give each its own number");
        }
    }
}

}  // namespace

void CheckNumber(const ModuleBlock& block, FindingList& findings) {
    CheckDigits(block, findings);
    if (block.IsGiven(kInstructionKey) && block.record.m_instruct == -1) {
        findings.Error(block.LineOf(kInstructionKey), "the instruction {} counts as none",
                       {Quoted(block.Find(kInstructionKey)->Value())}, kNumberRemedy);
    }
}

void CheckNumber(const CmdBlock& block, FindingList& findings) {
    CheckDigits(block, findings);
    if (block.Find(kInstructionKey) == nullptr && !block.IsLost(kInstructionKey)) {
        findings.Error(block.title.line, "the block {} has no \"instruction\": -1 is sent",
                       {Quoted(block.record.m_strName)}, "add the number that the service knows");
    }
}

void CheckNumbers(CheckedCatalogue& checked) {
    CheckShared(checked.modules);
    CheckShared(checked.commands);
}
