#include "printer/printer.h"

#include <algorithm>
#include <cstdio>

#include "format/format_letters.h"
#include "platform/ko_log.h"
#include "platform/ko_securec.h"

namespace {

constexpr char kSeparator[] = "===========================";
constexpr std::size_t kTextSize = 256;  // bytes of a rendered number, terminator included

// The line numbers of a failed rendering are part of the log's contract, wherever its code is.
constexpr unsigned int kInt32LogLine = 35;
constexpr unsigned int kInt64LogLine = 44;
constexpr unsigned int kFloatLogLine = 59;
constexpr unsigned int kDoubleLogLine = 68;

void LogFailedPrint(const char* function, unsigned int line, int ret) {
    KoLog::PrintLog(ATV_LOG_PRIO_ERROR, kLogTag, function, line, "sprintf_s failed, ret = %d", ret);
}

void LogFailedBoundedPrint(const char* function, unsigned int line, int ret) {
    KoLog::PrintLog(ATV_LOG_PRIO_ERROR, kLogTag, function, line, "snprintf_s failed, ret = %d",
                    ret);
}

void AppendValue(std::string& line, const std::string& tag, const char* text) {
    line.append(tag).append(":").append(text).append("\t");
}

}  // namespace

Printer::Printer(const android::Parcel& reply) : m_parcel(reply) {}

int Printer::Fmt(const char* format, const Array<std::string>& tags) {
    if (format == nullptr || tags.size() == 0 || *format == '\0') {
        return -1;
    }
    const std::string letters = format;
    bool cut = false;
    bool moved = true;
    while (moved && m_parcel.dataAvail() != 0) {
        const std::size_t before = m_parcel.dataAvail();
        const bool shown = cut;  // what is left belongs to the record before, which ended in it
        std::string line;
        if (!FmtRecord(letters, tags, line, cut)) {
            return -1;
        }
        // A pass that moved nothing is the last: a further one would find the same. Letters that
        // read nothing leave the line empty.
        moved = m_parcel.dataAvail() != before;
        if (moved || (!shown && !line.empty())) {
            m_lines.push_back(line);
        }
    }
    m_lines.m_list.emplace_front(kSeparator);
    m_lines.m_list.emplace_back(kSeparator);
    return 0;
}

bool Printer::FmtRecord(const std::string& format, const Array<std::string>& tags,
                        std::string& line, bool& cut) {
    const unsigned int used = std::min(static_cast<unsigned int>(format.size()), tags.size());
    cut = false;
    for (unsigned int i = 0; i < used; ++i) {
        const std::size_t before = m_parcel.dataAvail();
        switch (format[i]) {
            case 'd':
            case 'D':
                ParseIntegerfmt(format[i] == 'D', i, tags, line);
                break;
            case 'f':
            case 'F':
                ParseDecimalfmt(format[i] == 'F', i, tags, line);
                break;
            case 's':
            case 'S':
                ParseStringfmt(format[i] == 'S', i, tags, line);
                break;
            default:
                std::puts("invalid fmt info!");
                return false;
        }
        cut = cut || (!IsWithoutValue(format[i]) && m_parcel.dataAvail() == before);
    }
    return true;
}

void Printer::ParseIntegerfmt(KO_BOOL wide, const unsigned int& index,
                              const Array<std::string>& tags, std::string& line) {
    char text[kTextSize] = {};
    int written = 0;
    if (wide != 0) {
        written =
            sprintf_s(text, sizeof(text), "%lld", static_cast<long long>(m_parcel.readInt64()));
    } else {
        written = sprintf_s(text, sizeof(text), "%d", m_parcel.readInt32());
    }
    if (written == -1) {
        LogFailedPrint("ParseIntegerfmt", wide != 0 ? kInt64LogLine : kInt32LogLine, written);
        return;
    }
    AppendValue(line, tags[index], text);
}

void Printer::ParseDecimalfmt(KO_BOOL wide, const unsigned int& index,
                              const Array<std::string>& tags, std::string& line) {
    char text[kTextSize] = {};
    if (wide != 0) {
        const int written =
            snprintf_s(text, sizeof(text), sizeof(text) - 1, "%16.6lf", m_parcel.readDouble());
        if (written == -1) {
            LogFailedBoundedPrint("ParseDecimalfmt", kDoubleLogLine, written);
            return;
        }
    } else {
        const int written =
            sprintf_s(text, sizeof(text), "%f", static_cast<double>(m_parcel.readFloat()));
        if (written == -1) {
            LogFailedPrint("ParseDecimalfmt", kFloatLogLine, written);
            return;
        }
    }
    AppendValue(line, tags[index], text);
}

// A string ends at a zero unit, so that one inside a value cannot swallow the values after it.
void Printer::ParseStringfmt(KO_BOOL wide, const unsigned int& index,
                             const Array<std::string>& tags, std::string& line) {
    if (wide != 0) {
        std::puts(kNoWideString);
        return;
    }
    const android::String8 text(m_parcel.readString16());
    AppendValue(line, tags[index], text.string());
}

int Printer::Flush() {
    while (!m_lines.m_list.empty()) {
        std::puts(m_lines.m_list.front().c_str());
        m_lines.m_list.pop_front();
    }
    return 0;
}
