#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "model/worksheet.h"

namespace orv {

inline constexpr int kSheetRows = 1048576;
inline constexpr int kSheetColumns = 16384;

struct CellRange {
  CellPosition first;
  CellPosition last;
  friend bool operator==(const CellRange&, const CellRange&) = default;
};

bool InsideSheet(CellPosition cell);

// "A", "Z", "AA" ... "XFD" for the columns 1 to 16384. Failure 1004 for any other number.
std::string ColumnLetters(int column);

// The column of one to three letters in any case; nothing for a text that is no column of a sheet.
std::optional<int> ColumnFromLetters(std::string_view letters);

// "B7". Failure 1004 for a position outside the sheet.
std::string CellName(CellPosition cell);

// One cell as "B7", "$B$7" or "b7"; nothing for a text that is no cell of a sheet.
std::optional<CellPosition> ParseA1Cell(std::string_view text);

// Two cells joined by ":", or one cell, as a range with its first corner at the top left. Failure 1004 for a text that
// is no range of a sheet.
CellRange ParseA1Range(std::string_view text);

// Appends the value of a cell as it stands in a rectangle's text: every tab and line break (CR LF is one) as a blank.
void AppendAsOneLine(std::string& out, std::string_view value);

// The filled cells of one sheet. Every operation raises failure 1004 for a position outside the sheet.
class SheetGrid {
 public:
  // A constant, and a formula ("=A1+1") with its result. A cell whose texts are both empty is empty.
  void Set(CellPosition cell, std::string value);
  void SetFormula(CellPosition cell, std::string formula, std::string value);

  // Empty for an empty cell. The formula text of a constant is the constant.
  const std::string& Value(CellPosition cell) const;
  const std::string& Formula(CellPosition cell) const;

  std::size_t CellCount() const { return cells_.size(); }
  // The last row and the last column that hold a filled cell, 0 in an empty sheet.
  int LastRow() const;
  int LastColumn() const;

  // The first cell whose formula text holds the part, ignoring case, row by row from the cell behind `active`, round
  // the end of the sheet, with `active` itself last. Failure 91 when there is none; an empty part is in no cell.
  CellPosition Find(std::string_view part, CellPosition active) const;

  // The values of a rectangle in A1 notation: cells separated by a tab, every row ended by CR LF, a tab or line break
  // inside a cell given as a blank. A rectangle of more than kLargestCopy cells is cut to the part in use, as for whole
  // columns. Failure 1004 for a text that is no range, and when the part in use is too large as well.
  std::string RangeText(std::string_view a1Range) const;

  static constexpr std::int64_t kLargestCopy = std::int64_t{1} << 25;

 private:
  struct Cell {
    std::string formula;  // empty for a constant
    std::string value;
  };
  // Keys rise row by row, so that the map's order is the order of a search.
  using Key = std::int64_t;
  static Key KeyOf(CellPosition cell);
  static CellPosition PositionOf(Key key);
  const Cell* Look(CellPosition cell) const;

  std::map<Key, Cell> cells_;
};

}  // namespace orv
