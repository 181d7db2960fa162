#pragma once

#include <string>
#include <vector>

#include "model/comm_excel.h"
#include "model/database.h"
#include "numerics/text.h"

namespace orv::testing {

inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back().push_back(c);
    }
  }
  return parts;
}

// A database block: one text a row, its cells separated by tabs.
inline Database DatabaseOf(const std::vector<std::string>& rows) {
  Database database;
  database.NumberOfDatabaseRows = static_cast<int>(rows.size());
  database.DatabaseCells.Size({Bounds{0, database.NumberOfDatabaseRows}, Bounds{0, kDatabaseColumns}});
  database.DatabaseLines = {""};
  for (int row = 1; row <= database.NumberOfDatabaseRows; ++row) {
    const std::string& line = rows[static_cast<std::size_t>(row - 1)];
    database.DatabaseLines.push_back(line);
    int column = 0;
    for (const std::string& cell : Split(line, '\t')) {
      if (++column <= kDatabaseColumns) database.DatabaseCells(row, column) = Trim(cell);
    }
  }
  return database;
}

// Row of the first line that begins with the text; 0 when there is none.
inline int RowOf(const Database& database, const std::string& start) {
  for (int row = 1; row <= database.NumberOfDatabaseRows; ++row) {
    if (StartsWith(database.DatabaseLines[static_cast<std::size_t>(row)], start)) return row;
  }
  return 0;
}

}  // namespace orv::testing
