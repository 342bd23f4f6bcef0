#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <vector>

#include "format/parcel_fields.h"

// One value of a watched command over many samples. A float that is infinite or NaN is shown, and
// counts for nothing else.
class WatchedValue {
public:
    using Time = std::chrono::system_clock::time_point;

    void Add(const FieldValue& value, Time time);

    // For a sample that has failed.
    void AddGap();

    // For a number: now, least, most and mean, as the console prints them.
    std::vector<std::string> Numbers() const;

    // For a number the last samples as up to so many bars between least and most; for a text when
    // it last changed, and the text, printable.
    std::string Graph(std::size_t bars) const;

private:
    std::string m_now;
    Time m_changed;
    FieldValue m_least;
    FieldValue m_most;
    double m_mean = 0;
    double m_count = 0;         // of the numbers in the mean
    std::deque<double> m_last;  // NaN for a gap
};
