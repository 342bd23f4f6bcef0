#include "tools/watch/watched_value.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "format/printable.h"
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
    if (m_last.size() == kKept) {
        m_last.pop_front();
    }
    m_last.push_back(std::numeric_limits<double>::quiet_NaN());
}

std::vector<std::string> WatchedValue::Numbers() const {
    if (m_count == 0) {
        return {};
    }
    return {m_now, Shown(m_least), Shown(m_most), std::to_string(m_mean)};
}

std::string WatchedValue::Graph(std::size_t bars) const {
    if (m_count == 0) {
        return IsoTime(m_changed).substr(11, 8) + " " + m_now;
    }
    std::string graph;
    const auto shown = static_cast<std::ptrdiff_t>(std::min(bars, m_last.size()));
    for (auto number = std::prev(m_last.end(), shown); number != m_last.end(); ++number) {
        graph += Bar(*number, FieldNumber(m_least), FieldNumber(m_most));
    }
    return graph;
}
