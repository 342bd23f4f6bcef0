#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/call/reply.h"
#include "tools/watch/watched_value.h"

// What one call of a watched command brought.
struct Sample {
    std::chrono::system_clock::time_point time;
    std::optional<Failure> failure;
    Reply reply;  // without records after a failure
};

// The terminal while a command is watched: one line for each value. Plain escape sequences:
//   ESC [ ? 1049 h, l   to the second screen, and back to what was on the first
//   ESC [ ? 25 l, h     hides the cursor, shows it
//   ESC [ ? 7 l, h      cuts a line with characters of two columns, wraps again
//   ESC [ H, K, J       to the upper left corner; clears the rest of the line, of the screen
//   ESC [ 1 m, m        bold, for what has changed in the last sample; plain again
// On a narrow terminal mean, max and min give way to the bars, title and failure wrap, and other
// lines are cut. The last line counts those that do not fit.
class WatchScreen {
public:
    // `names` are those of the values of a record.
    WatchScreen(std::string title, std::vector<std::string> names)
        : m_title(std::move(title)), m_names(std::move(names)) {}

    // To the second screen, where it draws, and back.
    void Enter() const;
    static void Leave();

    void Add(const Sample& sample);

    // Draws for the terminal's present size.
    void Draw() const;

    // Leaves, and prints the last picture with room for a prompt below.
    void End() const;

private:
    // The lines for the terminal's present size, but for some to spare.
    std::vector<std::string> Picture(unsigned int spareLines) const;
    std::vector<std::string> Heading(std::size_t width) const;
    std::vector<std::string> Table(std::size_t width) const;

    const std::string m_title;
    const std::vector<std::string> m_names;
    std::vector<WatchedValue> m_values;  // of the longest reply, record by record
    WatchedValue m_absent;               // what no reply has had so far
    std::string m_time;                  // of the last sample
    std::string m_failure;               // the last one
    bool m_hasFailed = false;            // in the last sample
    std::size_t m_count = 0;
    std::size_t m_failed = 0;
};
