#include "tools/watch/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "format/printable.h"
#include "tools/output.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr std::size_t kMinBars = 8;

// The rows as lines, without as many of the last columns as leave the bars too little room.
std::vector<std::string> FittingLines(Rows rows, std::size_t width) {
    std::vector<std::string> lines = TableLines(rows);
    for (std::size_t columns = rows[0].size() - 1;
         columns > 1 && Columns(lines[0]) + kMinBars > width; --columns) {
        for (auto& row : rows) {
            row.resize(std::min(row.size(), columns));
        }
        lines = TableLines(rows);
    }
    return lines;
}

// The text in lines, which end at blanks where they can.
std::vector<std::string> Wrapped(std::string text, std::size_t width) {
    std::vector<std::string> lines;
    while (Columns(text) > width) {
        const std::size_t full = CutToColumns(text, width).size();
        const std::size_t end = std::min(text.rfind(' ', full), full);
        lines.push_back(text.substr(0, end));
        text.erase(0, text[end] == ' ' ? end + 1 : end);
    }
    lines.push_back(text);
    return lines;
}

// Bold if it is new.
std::string Styled(const std::string& text, bool isNew) {
    return isNew ? "\x1b[1m" + text + "\x1b[m" : text;
}

}  // namespace

void WatchScreen::Enter() const {
    WriteOutput("\x1b[?1049h\x1b[?25l\x1b[?7l");
    Draw();
}

void WatchScreen::Leave() {
    WriteOutput("\x1b[?7h\x1b[?25h\x1b[?1049l");
}

void WatchScreen::Add(const Sample& sample) {
    m_time = IsoTime(sample.time).substr(11, 12);
    ++m_count;
    m_hasFailed = sample.failure.has_value();
    if (m_hasFailed) {
        ++m_failed;
        m_failure = "last failure " + m_time + ": " + sample.failure->reason;
    }
    const std::vector<ReplyRecord>& records = sample.reply.records;
    m_values.resize(std::max(m_values.size(), records.size() * m_names.size()), m_absent);
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const std::size_t number = i / m_names.size();
        if (m_hasFailed) {
            m_values[i].AddGap();
        } else if (number < records.size()) {
            m_values[i].Add(&records[number][i % m_names.size()].value, sample.time);
        } else {
            m_values[i].Add(nullptr, sample.time);
        }
    }
    m_absent.AddGap();
}

void WatchScreen::Draw() const {
    // Each line is cleared before it is written, as after a full one the cursor is on its last
    // character; the last line with all below.
    std::vector<std::string> lines = Picture(0);
    lines.back().insert(0, "\x1b[J");
    WriteOutput("\x1b[H\x1b[K" + Joined(lines, "\r\n\x1b[K"));
}

void WatchScreen::End() const {
    Leave();
    WriteOutput("\x1b[?7l" + Joined(Picture(1), "\n") + "\x1b[?7h\n");
}

std::vector<std::string> WatchScreen::Picture(unsigned int spareLines) const {
    winsize size = {};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    const std::size_t width = size.ws_col != 0 ? size.ws_col : 80;
    const std::size_t height = size.ws_row > spareLines ? size.ws_row - spareLines : 24;
    std::vector<std::string> lines = Heading(width);
    const std::vector<std::string> table = Table(width);
    lines.insert(lines.end(), table.begin(), table.end());
    if (lines.size() > height) {
        const std::size_t hidden = lines.size() - height + 1;
        lines.resize(height);
        lines.back() = CutToColumns(std::to_string(hidden) + " more lines", width);
    }
    return lines;
}

std::vector<std::string> WatchScreen::Heading(std::size_t width) const {
    const std::string title = FormatText(
        "{} samples={} failed={}", {m_title, std::to_string(m_count), std::to_string(m_failed)});
    std::vector<std::string> lines = Wrapped(title, width);
    lines.push_back(CutToColumns(m_time, width));
    if (m_failed != 0) {
        for (const std::string& text : Wrapped(m_failure, width)) {
            lines.push_back(Styled(text, m_hasFailed));
        }
    }
    return lines;
}

std::vector<std::string> WatchScreen::Table(std::size_t width) const {
    Rows rows = {{"value", "now", "min", "max", "mean"}};
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const std::string number = " #" + std::to_string(i / m_names.size() + 1);
        rows.push_back(m_values[i].Numbers());
        rows.back().insert(rows.back().begin(),
                           Printable(m_names[i % m_names.size()]) +
                               (m_values.size() > m_names.size() ? number : ""));
    }
    std::vector<std::string> lines = FittingLines(rows, width);
    const std::size_t bars = width - std::min(width, Columns(lines[0]));
    lines[0] = CutToColumns(lines[0], width);
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const std::string text = lines[i + 1] + m_values[i].Graph(bars);
        lines[i + 1] = Styled(CutToColumns(text, width), m_values[i].HasChanged());
    }
    return lines;
}
