#pragma once

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "tools/failure.h"

// The code points of a text in UTF-8: the columns that it takes, where none is wide.
std::size_t Columns(std::string_view text);

// The first so many code points.
std::string CutToColumns(std::string_view text, std::size_t columns);

// The text of one row, printable, in double quotes and cut after 60 code points.
std::string Quoted(std::string_view text);

// The text with each "{}" replaced by the next value; there is one for each.
std::string FormatText(std::string_view text, std::initializer_list<std::string> values);

// The texts with the separator between them.
std::string Joined(const std::vector<std::string>& texts, const char* separator);

// "0x101", of the 32 bits.
std::string Hex(std::int32_t value);

// "01 ff", in lower case.
std::string HexBytes(const std::uint8_t* bytes, std::size_t size);

// "2026-03-01T09:30:00.250+01:00", by the process's time zone.
std::string IsoTime(std::chrono::system_clock::time_point time);

// Whether standard output is a terminal, which control characters in a text could steer.
bool OutputIsTerminal();

// The line with its end, as standard output takes it: to a terminal printable.
std::string OutputLine(const std::string& line);

// Prints one line to standard output as OutputLine has it.
void PrintLine(const std::string& line);

// Prints one message line to standard error, printable.
void Complain(const std::string& message);

// Prints the failure's reason so. Returns the exit status.
int Complain(const Failure& failure);
