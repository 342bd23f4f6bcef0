#pragma once

#include <string>
#include <string_view>
#include <vector>

using Words = std::vector<std::string>;

// "\r", "\t", "\b" and "\x1b" are those bytes, a backslash at the end of a row takes the line end
// away; "{a*300}" is 300 times "a", also over several rows, and each "(n)" in it is its number.
std::string Expand(std::string_view text);

// The text with each `from` made `to`.
std::string Replace(std::string text, std::string_view from, std::string_view to);

// The words between the blanks of a text, each with the marks of Expand.
Words SplitWords(const std::string& text);

// The text's pieces between the separators.
Words Split(const std::string& text, std::string_view separator);

// Holds each row of what was printed to the expected one, in which "..." is any text.
void ExpectRows(const std::string& expected, const std::string& printed, const std::string& what);

// A catalogue file, and the rows that the check is to print about it, for ExpectRows. A case writes
// it with the marks of Expand and two of its own:
//   [x]+ KEY = VALUE | -KEY  a block without fault called x, but for these rows: each takes the
//                            place of the row of its key, or comes last; -KEY leaves one out
//   ROW #! error: TEXT       the check names the row with this text; in a row of its own it tells
//                            of the row before it, and behind a block of its last changed row
struct CatalogueText {
    std::string rows;
    std::string findings;
};
CatalogueText ReadCatalogue(const std::string& file, const std::string& body);
