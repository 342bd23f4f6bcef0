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
//   ESC [ ? 1049 h, l   to the second screen, and back to what stood on the first
//   ESC [ ? 25 l, h     hides the cursor, shows it
//   ESC [ ? 7 l, h      cuts a line with characters of two columns, wraps again
//   ESC [ H, K, J       to the upper left corner; clears the rest of the line, of the screen
// On a narrow terminal mean, most and least give way to the bars, a failed call's reason wraps, and
// other lines are cut. The last line counts those that do not fit.
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

    // All lines, made for a width but perhaps wider.
    std::vector<std::string> Lines(std::size_t width) const;

private:
    std::vector<std::string> Heading(std::size_t width) const;
    std::vector<std::string> Table(std::size_t width) const;

    const std::string m_title;
    const std::vector<std::string> m_names;
    std::vector<WatchedValue> m_values;  // of the last reply, record by record
    std::string m_state;
    std::size_t m_count = 0;
    std::size_t m_failed = 0;
};
