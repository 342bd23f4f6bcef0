#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Rows of cells, in columns for people and as CSV for programs.

// Rows of equally many cells as lines of one length, with the cells in columns.
std::vector<std::string> TableLines(const std::vector<std::vector<std::string>>& rows);

// Prints such lines without the blanks at their ends, each behind `indent`.
void PrintTable(const std::vector<std::vector<std::string>>& rows, const char* indent);

// A row of CSV by RFC 4180, without a line end: the cells of both, in quotes where they need them.
std::string CsvRow(std::vector<std::string> cells, const std::vector<std::string>& further);
