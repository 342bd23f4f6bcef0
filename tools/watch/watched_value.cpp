#include "tools/watch/watched_value.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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
std::string Bar(double number, double min, double max) {
    if (std::isnan(number)) {
        return " ";
    }
    const double share = min < max ? (number / 2 - min / 2) / (max / 2 - min / 2) : 0;
    return {'\xE2', '\x96', static_cast<char>(0x81 + static_cast<int>(share * 7.99))};
}

// Of two values of one type; exact for int64, which a double is not.
bool IsLess(const FieldValue& left, const FieldValue& right) {
    const auto* exact = std::get_if<std::int64_t>(&left);
    return exact != nullptr ? *exact < std::get<std::int64_t>(right)
                            : FieldNumber(left) < FieldNumber(right);
}

}  // namespace

void WatchedValue::Add(const FieldValue* value, Time time) {
    const bool isFirst = m_last.empty();
    AddGap();
    const auto now = value != nullptr ? std::optional(Shown(*value)) : std::nullopt;
    m_hasChanged = !isFirst && now != m_now;
    m_changeTime = isFirst || m_hasChanged ? time : m_changeTime;
    m_now = now;
    const double number = value != nullptr ? FieldNumber(*value) : NAN;
    if (!std::isfinite(number) || std::holds_alternative<android::String16>(*value)) {
        return;
    }
    m_last.back() = number;
    m_min = m_count == 0 || IsLess(*value, m_min) ? *value : m_min;
    m_max = m_count == 0 || IsLess(m_max, *value) ? *value : m_max;
    ++m_count;
    m_mean += number / m_count - m_mean / m_count;
}

void WatchedValue::AddGap() {
    m_hasChanged = false;
    if (m_last.size() == kKept) {
        m_last.pop_front();
    }
    m_last.push_back(NAN);
}

std::vector<std::string> WatchedValue::Numbers() const {
    if (m_count == 0) {
        return {};
    }
    return {m_now.value_or(""), Shown(m_min), Shown(m_max), std::to_string(m_mean)};
}

std::string WatchedValue::Graph(std::size_t bars) const {
    if (m_count == 0) {
        return IsoTime(m_changeTime).substr(11, 8) + " " + m_now.value_or("");
    }
    std::string graph;
    const auto shown = static_cast<std::ptrdiff_t>(std::min(bars, m_last.size()));
    for (auto number = std::prev(m_last.end(), shown); number != m_last.end(); ++number) {
        graph += Bar(*number, FieldNumber(m_min), FieldNumber(m_max));
    }
    return graph;
}
