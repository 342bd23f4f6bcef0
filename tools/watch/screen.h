#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "tools/call/reply.h"

using Time = std::chrono::system_clock::time_point;

// One value of a watched command over many samples. A float that is infinite or no number is shown,
// and counts for nothing else.
class WatchedValue {
public:
    void Add(const FieldValue& value, Time time);

    // For a sample that has failed.
    void AddGap();

    // An empty cell, then now, least, most and mean as the console prints numbers; these not of a
    // text.
    std::vector<std::string> Cells() const;

    // The last samples as bars between least and most, so many at the most; of a text when it last
    // changed, and the text, printable.
    std::string Graph(std::size_t bars) const;

private:
    std::string m_now;
    Time m_changed;
    FieldValue m_least;
    FieldValue m_most;
    double m_mean = 0;
    double m_count = 0;          // of the numbers that the mean is of
    std::vector<double> m_last;  // not a number for a gap
};

// What one call of a watched command brought.
struct Sample {
    Time time;
    Outcome outcome;
    std::vector<ReplyRecord> records;  // none when it failed
};

// The terminal while a command is watched: one line for each value. Plain escape sequences:
//   ESC [ ? 1049 h, l   to the second screen, and back to what stood on the first
//   ESC [ ? 25 l, h     hides the cursor, shows it
//   ESC [ ? 7 l, h      cuts a line with characters of two columns, wraps again
//   ESC [ H, K, J       to the upper left corner; clears the rest of the line, of the screen
// On a narrow terminal mean, most and least give way to the bars, why a call has failed takes more
// lines, and others are cut. Those beyond its height are counted in the last one.
class WatchScreen {
public:
    static constexpr char kEnter[] = "\x1b[?1049h\x1b[?25l\x1b[?7l";
    static constexpr char kLeave[] = "\x1b[?7h\x1b[?25h\x1b[?1049l";

    // `names` are those of the values of a record.
    WatchScreen(std::string title, std::vector<std::string> names)
        : m_title(std::move(title)), m_names(std::move(names)) {}

    void Add(const Sample& sample);

    // Draws for the terminal's size of the moment.
    void Draw() const;

    // All lines, made for a width but perhaps wider.
    std::vector<std::string> Lines(std::size_t width) const;

private:
    const std::string m_title;
    const std::vector<std::string> m_names;
    std::vector<WatchedValue> m_values;  // of the last reply, record by record
    std::string m_state;
    std::size_t m_count = 0;
    std::size_t m_failed = 0;
};
