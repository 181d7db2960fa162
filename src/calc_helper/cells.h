#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "calc_helper/office.h"

namespace orv::calc_helper {

// Rows and columns here count from 0, as in the office.
struct Area {
  int row = 0;
  int column = 0;
  int rows = 0;
  int columns = 0;
};

// Appends the JSON of a text.
void AppendJson(std::string& json, const std::string& text);

// Appends the values of a rectangle as one JSON list, row by row: null for an empty cell, a number, or a text; logical
// values and errors are given as the texts that the program knows. It ends behind the row with which the list passes
// `bytes`; the number of rows given is the result. Cells beyond the edge of the sheet are empty.
int AppendValues(std::string& json, const Book& book, const Area& area, std::size_t bytes);

// Appends the JSON of what the cell holds: for a formula its text in the other spreadsheets' notation, otherwise the
// value as above. Whether it is a formula is the result.
bool AppendFormula(std::string& json, const Book& book, int row, int column);

// The cells, row by row, whose formula text holds a plain text, ignoring case; all filled cells for an empty one.
// At most `most` of them.
std::vector<std::pair<int, int>> Holding(const Book& book, const std::string& text, std::size_t most);

// The last row and the last column with a filled cell, -1 in an empty sheet.
std::pair<int, int> LastFilled(const Book& book);

}  // namespace orv::calc_helper
