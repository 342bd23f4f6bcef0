#include "tools/table.h"

#include <algorithm>
#include <cstdio>

#include "tools/text.h"

std::vector<std::string> TableLines(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Columns(row[i]));
        }
    }
    std::vector<std::string> lines;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i] + std::string(widths[i] - Columns(row[i]) + 2, ' ');
        }
        lines.push_back(line);
    }
    return lines;
}

void PrintTable(const std::vector<std::vector<std::string>>& rows, const char* indent) {
    for (std::string& line : TableLines(rows)) {
        line.erase(line.find_last_not_of(' ') + 1);
        std::printf("%s%s\n", indent, line.c_str());
    }
}

std::string CsvRow(std::vector<std::string> cells, const std::vector<std::string>& further) {
    cells.insert(cells.end(), further.begin(), further.end());
    std::string row;
    for (std::string& cell : cells) {
        if (cell.find_first_of(",\"\r\n") != std::string::npos) {
            for (std::size_t i = 0; (i = cell.find('"', i)) != std::string::npos; i += 2) {
                cell.insert(i, 1, '"');
            }
            cell.insert(0, 1, '"').push_back('"');
        }
        row += (&cell == &cells.front() ? "" : ",") + cell;
    }
    return row;
}
