#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The text of one row, printable, in double quotes and cut after 60 bytes.
std::string Quoted(std::string_view text);

// The texts with the separator between them.
std::string Joined(const std::vector<std::string>& texts, const char* separator);

// "0x101", of the 32 bits.
std::string Hex(std::int32_t value);

// "01 ff", in lower case.
std::string HexBytes(const std::uint8_t* bytes, std::size_t size);

// "2026-03-01T09:30:00.250+01:00", by the process's time zone.
std::string IsoTime(std::chrono::system_clock::time_point time);

// The code points of a text in UTF-8: the columns that it takes, where none is wide.
std::size_t Columns(const std::string& text);

// The first so many code points.
std::string CutToColumns(const std::string& text, std::size_t columns);

// Rows of equally many cells as lines of one length, with the cells in columns.
std::vector<std::string> TableLines(const std::vector<std::vector<std::string>>& rows);

// Prints such lines without the blanks at their ends, each behind `indent`.
void PrintTable(const std::vector<std::vector<std::string>>& rows, const char* indent);

// A row of CSV by RFC 4180, without a line end: the cells of both, in quotes where they need them.
std::string CsvRow(std::vector<std::string> cells, const std::vector<std::string>& further);

// Whether standard output is a terminal, which control characters in a text could steer.
bool OutputIsTerminal();

// Prints one line to standard output; to a terminal printable.
void PrintLine(const std::string& line);

// Prints one message line to standard error.
void Complain(const std::string& message);
