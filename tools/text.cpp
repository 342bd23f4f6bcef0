#include "tools/text.h"

#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "format/printable.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kQuotedSize = 60;

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
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

std::string IsoTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    std::tm local = {};
    localtime_r(&seconds, &local);
    char date[64];
    char zone[16];
    std::strftime(date, sizeof(date), "%FT%T", &local);
    std::strftime(zone, sizeof(zone), "%z", &local);
    char text[128];
    sprintf_s(text, sizeof(text), "%s.%03d%.3s:%s", date, static_cast<int>(ms.count() % 1000), zone,
              zone + 3);
    return text;
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
