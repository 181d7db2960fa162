#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "model/file_workbook.h"
#include "model/sheet_grid.h"

// What holds for the contents of any workbook that was read.
namespace orv::testing {

// Small ones: the bounds of the program would let a short file fill a million cells, run after run.
inline constexpr WorkbookLimits kFuzzLimits = {20'000, std::size_t{4} << 20U, 64};

inline void CheckText(const std::string& text, const char* what) {
  RequireText(text, what);
  Require(text.find('\0') == std::string::npos, "a cell holds no NUL", what);
  Require(text.size() <= kMaxCellCharacters || CharacterCount(text) <= kMaxCellCharacters, "a cell's text is bounded");
}

// The rectangle in use, as far as it is small, by cells and as one text.
inline void CheckCells(const SheetGrid& grid) {
  const CellPosition last{std::min(grid.LastRow(), 100), std::min(grid.LastColumn(), 40)};
  if (last.row == 0) return;
  for (int row = 1; row <= last.row; ++row) {
    for (int column = 1; column <= last.column; ++column) {
      CheckText(grid.Value({row, column}), "value");
      CheckText(grid.Formula({row, column}), "formula");
    }
  }
  const std::string text = grid.RangeText("A1:" + CellName(last));
  const auto count = [&](char c) { return std::count(text.begin(), text.end(), c); };
  Require(count('\n') == last.row && count('\r') == last.row, "a range has its rows");
  Require(count('\t') == static_cast<std::ptrdiff_t>(last.row) * (last.column - 1), "a range has its columns");
}

inline void CheckContents(const WorkbookContents& contents, const WorkbookLimits& limits) {
  Require(!contents.sheets.empty() && contents.sheets.size() <= limits.sheets, "a workbook has sheets");
  Require(contents.activeSheet < contents.sheets.size(), "the active sheet exists");
  std::size_t cells = 0;
  for (const std::string& warning : contents.warnings) RequireText(warning, "a warning is a text");
  for (const WorkbookSheet& sheet : contents.sheets) {
    RequireText(sheet.name, "the name of a sheet is a text");
    Require(InsideSheet(sheet.activeCell), "the active cell is inside of the sheet");
    Require(sheet.grid.LastRow() >= 0 && sheet.grid.LastRow() <= kSheetRows, "rows are inside of the sheet");
    Require(sheet.grid.LastColumn() >= 0 && sheet.grid.LastColumn() <= kSheetColumns, "columns are inside");
    Require(sheet.warnings.size() <= 2 * kMaxWarningsOfAKind + 2, "warnings are few");
    for (const std::string& warning : sheet.warnings) RequireText(warning, "a warning is a text");
    cells += sheet.grid.CellCount();
    CheckCells(sheet.grid);
  }
  Require(cells <= limits.filledCells, "the count of cells is bounded");
}

// Reads a workbook; false when it is refused. Anything thrown but a WorkbookError ends the process.
inline bool ReadAndCheck(const std::string& bytes, const Locale& locale) {
  try {
    CheckContents(ReadWorkbook(bytes, "m", locale, kFuzzLimits), kFuzzLimits);
    return true;
  } catch (const WorkbookError& error) {
    RequireText(error.what(), "a complaint is a text");
    Require(std::string_view(error.what()).starts_with("'m' "), "a complaint names the file");
    return false;
  }
}

}  // namespace orv::testing
