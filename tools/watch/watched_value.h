#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "format/parcel_fields.h"

// One value of a watched command over many samples. A float that is infinite or NaN is shown, and
// counts for nothing else.
class WatchedValue {
public:
    using Time = std::chrono::system_clock::time_point;

    // Null if the sample's reply lacks it.
    void Add(const FieldValue* value, Time time);

    // For a sample that has failed.
    void AddGap();

    // Whether the last sample differs from the one before; not for the first.
    bool HasChanged() const { return m_hasChanged; }

    // For a number: now, min, max and mean, as the console prints them.
    std::vector<std::string> Numbers() const;

    // For a number the last samples as up to so many bars between min and max; for a text when it
    // last changed, and the text, printable.
    std::string Graph(std::size_t bars) const;

private:
    std::optional<std::string> m_now;  // nullopt while replies lack it
    bool m_hasChanged = false;
    Time m_changeTime;
    FieldValue m_min;
    FieldValue m_max;
    double m_mean = 0;
    double m_count = 0;         // of the numbers in the mean
    std::deque<double> m_last;  // NaN for a gap
};
