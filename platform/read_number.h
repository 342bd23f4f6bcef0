#pragma once

#include <charconv>
#include <chrono>
#include <string_view>
#include <system_error>

// Each reads a decimal number that is the whole text; false when it is not, or does not fit.

template <typename Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

inline bool ReadMilliseconds(std::string_view text, std::chrono::milliseconds& duration) {
    unsigned int number = 0;
    const bool read = ReadNumber(text, number);
    duration = std::chrono::milliseconds(number);
    return read;
}
