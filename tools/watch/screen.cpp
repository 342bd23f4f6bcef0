#include "tools/watch/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "format/printable.h"
#include "tools/table.h"
#include "tools/text.h"

namespace {

constexpr std::size_t kKept = 500;  // samples, for bars

std::string Shown(const FieldValue& value) {
    const bool decimal =
        std::holds_alternative<float>(value) || std::holds_alternative<double>(value);
    return decimal ? std::to_string(FieldNumber(value)) : Printable(FieldText(value));
}

// From U+2581 to U+2588; halves, as the whole range may be too wide for a double.
std::string Bar(double number, double least, double most) {
    if (std::isnan(number)) {
        return " ";
    }
    const double share = least < most ? (number / 2 - least / 2) / (most / 2 - least / 2) : 0;
    return {'\xE2', '\x96', static_cast<char>(0x81 + static_cast<int>(share * 7.99))};
}

}  // namespace

void WatchedValue::Add(const FieldValue& value, Time time) {
    const std::string shown = Shown(value);
    m_changed = shown != m_now || m_last.empty() ? time : m_changed;
    m_now = shown;
    AddGap();
    const double number = FieldNumber(value);
    if (std::holds_alternative<android::String16>(value) || !std::isfinite(number)) {
        return;
    }
    m_last.back() = number;
    m_least = m_count == 0 || number < FieldNumber(m_least) ? value : m_least;
    m_most = m_count == 0 || number > FieldNumber(m_most) ? value : m_most;
    ++m_count;
    m_mean += number / m_count - m_mean / m_count;
}

void WatchedValue::AddGap() {
    m_last.erase(m_last.begin(), m_last.begin() + (m_last.size() < kKept ? 0 : 1));
    m_last.push_back(std::numeric_limits<double>::quiet_NaN());
}

std::vector<std::string> WatchedValue::Cells() const {
    if (m_count == 0) {
        return {""};
    }
    return {"", m_now, Shown(m_least), Shown(m_most), std::to_string(m_mean)};
}

std::string WatchedValue::Graph(std::size_t bars) const {
    if (m_count == 0) {
        return IsoTime(m_changed).substr(11, 8) + " " + m_now;
    }
    std::string graph;
    for (std::size_t i = m_last.size() - std::min(bars, m_last.size()); i < m_last.size(); ++i) {
        graph += Bar(m_last[i], FieldNumber(m_least), FieldNumber(m_most));
    }
    return graph;
}

void WatchScreen::Add(const Sample& sample) {
    m_state = IsoTime(sample.time).substr(11, 12) + " " + sample.outcome.reason;
    ++m_count;
    if (sample.outcome.status != kExitDone) {
        ++m_failed;
        for (WatchedValue& value : m_values) {
            value.AddGap();
        }
        return;
    }
    m_values.resize(sample.records.size() * m_names.size());
    auto value = m_values.begin();
    for (const ReplyRecord& record : sample.records) {
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
    // Cleared first, what is below from a row of its own: behind a full row the cursor stands on
    // its last character.
    std::string text = "\x1b[H";
    for (const std::string& line : lines) {
        text += (&line == &lines.front() ? "\x1b[K" : "\r\n\x1b[K") + CutToColumns(line, width);
    }
    std::fputs((text + (lines.size() < height ? "\r\n\x1b[J" : "")).c_str(), stdout);
    std::fflush(stdout);
}

std::vector<std::string> WatchScreen::Lines(std::size_t width) const {
    constexpr std::size_t kLeastBars = 8;
    std::vector<std::vector<std::string>> table = {{"value", "now", "least", "most", "mean"}};
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        table.push_back(m_values[i].Cells());
        table.back()[0] = Printable(m_names[i % m_names.size()]);
        if (m_values.size() > m_names.size()) {
            table.back()[0] += " #" + std::to_string(i / m_names.size() + 1);
        }
    }
    std::vector<std::string> lines = TableLines(table);
    for (std::size_t columns = 4; columns > 1 && Columns(lines[0]) + kLeastBars > width;
         --columns) {
        for (auto& row : table) {
            row.resize(std::min(row.size(), columns));
        }
        lines = TableLines(table);
    }
    const std::size_t bars = width - std::min(width, Columns(lines[0]));
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        lines[i + 1] += m_values[i].Graph(bars);
    }
    std::vector<std::string> above = {m_title + " samples=" + std::to_string(m_count) +
                                      " failed=" + std::to_string(m_failed)};
    std::string state = m_state;
    do {
        above.push_back(CutToColumns(state, width));
        state.erase(0, above.back().size());
    } while (!state.empty());
    lines.insert(lines.begin(), above.begin(), above.end());
    return lines;
}
