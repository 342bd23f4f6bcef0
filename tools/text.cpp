#include "tools/text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "format/printable.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kQuotedSize = 60;

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t Columns(const std::string& text) {
    return text.size() -
           static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

}  // namespace

std::string Quoted(std::string_view text) {
    if (text.size() <= kQuotedSize) {
        return '"' + Printable(text) + '"';
    }
    std::size_t cut = kQuotedSize;
    while (cut > 0 && IsContinuation(text[cut])) {
        --cut;
    }
    return '"' + Printable(text.substr(0, cut)) + "...\"";
}

std::string Joined(const std::vector<std::string>& texts, const char* separator) {
    std::string joined;
    for (const std::string& text : texts) {
        joined += (&text == &texts.front() ? "" : separator) + text;
    }
    return joined;
}

std::string Hex(std::int32_t value) {
    char text[16];
    sprintf_s(text, sizeof(text), "0x%x", static_cast<std::uint32_t>(value));
    return text;
}

std::string HexBytes(const std::uint8_t* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char byte[8];
        sprintf_s(byte, sizeof(byte), i == 0 ? "%02x" : " %02x",
                  static_cast<unsigned int>(bytes[i]));
        text += byte;
    }
    return text;
}

void PrintTable(const std::vector<std::vector<std::string>>& rows, const char* indent) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Columns(row[i]));
        }
    }
    for (const auto& row : rows) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i] + std::string(widths[i] - Columns(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::printf("%s\n", line.c_str());
    }
}

bool OutputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

void PrintLine(const std::string& line) {
    std::printf("%s\n", (OutputIsTerminal() ? Printable(line) : line).c_str());
}

void Complain(const std::string& message) {
    std::fprintf(stderr, "ko_cmd_tool: %s\n", message.c_str());
}
