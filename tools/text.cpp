#include "tools/text.h"

#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "format/printable.h"
#include "format/utf8.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kQuotedColumns = 60;

}  // namespace

std::size_t Columns(std::string_view text) {
    std::size_t columns = 0;
    for (; !text.empty(); TakeUtf8(text)) {
        ++columns;
    }
    return columns;
}

std::string CutToColumns(std::string_view text, std::size_t columns) {
    std::string cut;
    for (; columns > 0 && !text.empty(); --columns) {
        cut += TakeUtf8(text);
    }
    return cut;
}

std::string Quoted(std::string_view text) {
    return '"' + Printable(CutToColumns(text, kQuotedColumns)) +
           (Columns(text) > kQuotedColumns ? "...\"" : "\"");
}

std::string FormatText(std::string_view text, std::initializer_list<std::string> values) {
    std::string formatted;
    for (const std::string& value : values) {
        const std::size_t place = text.find("{}");
        formatted.append(text.substr(0, place)).append(value);
        text.remove_prefix(place + 2);
    }
    return formatted.append(text);
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
    char text[64];
    std::strftime(text, sizeof(text), "%FT%T%z", &local);
    char fraction[16];
    sprintf_s(fraction, sizeof(fraction), ".%03d", static_cast<int>(ms.count() % 1000));
    std::string iso = text;
    iso.insert(iso.size() - 2, ":");
    return iso.insert(iso.find_last_of("+-"), fraction);
}

bool OutputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

std::string OutputLine(const std::string& line) {
    return (OutputIsTerminal() ? Printable(line) : line) + "\n";
}

void PrintLine(const std::string& line) {
    std::fputs(OutputLine(line).c_str(), stdout);
}

void Complain(const std::string& message) {
    std::fprintf(stderr, "ko_cmd_tool: %s\n", Printable(message).c_str());
}

int Complain(const Failure& failure) {
    Complain(failure.reason);
    return failure.status;
}
