#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The grammar of one row of a catalogue file. Nothing here prints: KoFileParse words the console's
// messages, other readers of the same files their own.

// Titles and keys must be shorter than this, in bytes; a value with its "=" too.
constexpr std::size_t kConfigTextSize = 256;

// The key words of both files.
constexpr char kCommandKey[] = "command";
constexpr char kBelongModKey[] = "belong module";
constexpr char kInstructionKey[] = "instruction";
constexpr char kParaFormatKey[] = "para format";
constexpr char kPrintFmtKey[] = "print format";
constexpr char kPrintTagsKey[] = "print tags";
constexpr char kDescriptionKey[] = "description";

// The key words of each file in the order in which they are tried; a shortened key goes to the
// first that it begins.
constexpr std::string_view kModuleKeyOrder[] = {kCommandKey, kInstructionKey, kDescriptionKey};
constexpr std::string_view kCmdKeyOrder[] = {
    kCommandKey,  kBelongModKey, kInstructionKey, kParaFormatKey,
    kPrintFmtKey, kPrintTagsKey, kDescriptionKey,
};

// Removes blanks, tabs, line feeds, vertical tabs, form feeds and carriage returns from both ends.
std::string_view TrimConfigText(std::string_view text);

// True when the row is short enough for a title and, trimmed, begins with "[" and ends with "]".
bool IsTitleRow(std::string_view row);

// The block's name: what stands between the brackets of a row that IsTitleRow accepted.
std::string_view TitleName(std::string_view row);

// Length of the raw key, the text before the first "="; npos when the row has none.
std::size_t RawKeyLength(std::string_view row);

// True when the raw key, which is within its limit, counts as the key word. A key that is a leading
// part of the key word and has no white space around it counts too.
bool KeyMatches(std::string_view keyWord, std::string_view rawKey);

// Length of the raw value and its "=", in bytes. The row must contain "=".
std::size_t RawValueLength(std::string_view row);

// The trimmed value, up to a NUL byte if there is one; empty when RawValueLength is too large.
std::string_view RowValue(std::string_view row);

// A hexadecimal number with optional sign and "0x", clamped to 32 bits.
struct HexNumber {
    std::int32_t value;      // 0 when there is no digit
    std::size_t usedLength;  // characters converted; 0 when there is no digit
    bool clamped;
};
HexNumber ParseHexNumber(const std::string& text);
