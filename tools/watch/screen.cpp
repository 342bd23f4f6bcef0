#include "tools/watch/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "format/printable.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr std::size_t kLeastBars = 8;

// The rows as lines, without as many of the last columns as leave the bars too little room.
std::vector<std::string> FittingLines(Rows rows, std::size_t width) {
    std::vector<std::string> lines = TableLines(rows);
    for (std::size_t columns = rows[0].size() - 1;
         columns > 1 && Columns(lines[0]) + kLeastBars > width; --columns) {
        for (auto& row : rows) {
            row.resize(std::min(row.size(), columns));
        }
        lines = TableLines(rows);
    }
    return lines;
}

}  // namespace

void WatchScreen::Enter() const {
    std::fputs("\x1b[?1049h\x1b[?25l\x1b[?7l", stdout);
    Draw();
}

void WatchScreen::Leave() {
    std::fputs("\x1b[?7h\x1b[?25h\x1b[?1049l", stdout);
    std::fflush(stdout);
}

void WatchScreen::Add(const Sample& sample) {
    m_state = IsoTime(sample.time).substr(11, 12) + " ";
    ++m_count;
    if (sample.failure) {
        m_state += sample.failure->reason;
        ++m_failed;
        for (WatchedValue& value : m_values) {
            value.AddGap();
        }
        return;
    }
    m_values.resize(sample.reply.records.size() * m_names.size());
    auto value = m_values.begin();
    for (const ReplyRecord& record : sample.reply.records) {
        for (const ParcelField& field : record) {
            value++->Add(field.value, sample.time);
        }
    }
}

void WatchScreen::Draw() const {
    winsize size = {};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    const std::size_t width = size.ws_col != 0 ? size.ws_col : 80;
    const std::size_t height = size.ws_row != 0 ? size.ws_row : 24;
    std::vector<std::string> lines = Lines(width);
    if (lines.size() > height) {
        const std::size_t hidden = lines.size() - height + 1;
        lines.resize(height);
        lines.back() = std::to_string(hidden) + " more lines";
    }
    // Each line is cleared before it is written, and what is below from a line of its own: after a
    // full line the cursor is on its last character.
    std::string text = "\x1b[H";
    for (const std::string& line : lines) {
        text += (&line == &lines.front() ? "\x1b[K" : "\r\n\x1b[K") + CutToColumns(line, width);
    }
    std::fputs((text + (lines.size() < height ? "\r\n\x1b[J" : "")).c_str(), stdout);
    std::fflush(stdout);
}

std::vector<std::string> WatchScreen::Lines(std::size_t width) const {
    std::vector<std::string> lines = Heading(width);
    const std::vector<std::string> table = Table(width);
    lines.insert(lines.end(), table.begin(), table.end());
    return lines;
}

std::vector<std::string> WatchScreen::Heading(std::size_t width) const {
    std::vector<std::string> lines = {FormatText(
        "{} samples={} failed={}", {m_title, std::to_string(m_count), std::to_string(m_failed)})};
    std::string state = m_state;
    do {
        lines.push_back(CutToColumns(state, width));
        state.erase(0, lines.back().size());
    } while (!state.empty());
    return lines;
}

std::vector<std::string> WatchScreen::Table(std::size_t width) const {
    Rows rows = {{"value", "now", "least", "most", "mean"}};
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const std::string number = " #" + std::to_string(i / m_names.size() + 1);
        rows.push_back(m_values[i].Numbers());
        rows.back().insert(rows.back().begin(),
                           Printable(m_names[i % m_names.size()]) +
                               (m_values.size() > m_names.size() ? number : ""));
    }
    std::vector<std::string> lines = FittingLines(rows, width);
    const std::size_t bars = width - std::min(width, Columns(lines[0]));
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        lines[i + 1] += m_values[i].Graph(bars);
    }
    return lines;
}
