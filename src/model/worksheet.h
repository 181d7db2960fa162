#pragma once

#include <string>

namespace orv {

// Row and column of a cell, both counted from 1 as the spreadsheet does.
struct CellPosition {
  int row = 1;
  int column = 1;
  friend bool operator==(const CellPosition&, const CellPosition&) = default;
};

// What is in front in a spreadsheet program, as the watch looks at it.
struct SheetSnapshot {
  std::string applicationName;  // empty where the store is no program
  std::string workbookName;
  int windowCount = 0;
  std::string windowCaption;  // of the first window
  std::string sheetName;
  CellPosition activeCell;
  std::string formula;  // of the active cell
  friend bool operator==(const SheetSnapshot&, const SheetSnapshot&) = default;
};

// What the system needs of a spreadsheet: one active workbook with one active sheet and one active cell. Behind it
// stand a workbook file, a sheet in memory, or a running spreadsheet program.
//
// Texts are UTF-8. Numbers are given as text with up to 15 significant digits whatever the cell's format, with the
// decimal separator of the locale that the store was opened with; dates as their day number; logical values as TRUE
// and FALSE; errors as the spreadsheet writes them (#DIV/0!).
//
// Any operation may raise a RuntimeFailure: 91 when there is no workbook, 50290 when the program is busy, 1004 for a
// position outside the sheet.
class Spreadsheet {
 public:
  virtual ~Spreadsheet() = default;

  // Attaches to the spreadsheet. Failure 429 when there is none; nothing is ever started.
  virtual void Attach() = 0;
  // Lets go of it; the next Attach begins anew.
  virtual void Release() = 0;

  // The folder of the workbook, without a trailing separator; empty for one that was never saved.
  virtual std::string WorkbookPath() = 0;
  virtual int WindowCount() = 0;
  // Caption of the window, numbered from 1; for a workbook file its file name.
  virtual std::string WindowCaption(int window) = 0;
  virtual std::string SheetName() = 0;

  virtual CellPosition ActiveCell() = 0;
  virtual void Activate(CellPosition cell) = 0;

  // The text that the cell holds as the user typed it: a formula with its "=" in A1 notation, otherwise the constant.
  virtual std::string Formula(CellPosition cell) = 0;
  // The value: for a formula its result.
  virtual std::string Value(CellPosition cell) = 0;

  // Searches the formula texts of the whole sheet for a part, ignoring case, row by row from the cell behind the active
  // one, round the end of the sheet, the active cell last; activates the cell found. Failure 91 when there is none.
  virtual void Find(const std::string& part) = 0;

  // The values of the rectangle in A1 notation ("B2:D7"): cells separated by a tab, every row ended by CR LF. A tab or
  // line break inside a cell becomes a blank. Failure 1004 for a text that is no range.
  virtual std::string RangeText(const std::string& a1Range) = 0;

  // Whether the spreadsheet prints decimals with a comma. A running program finds out with a formula in the scratch
  // cell and the one below it, both restored; a store without formulas answers from its locale.
  virtual bool PrintsDecimalComma(CellPosition scratch) = 0;

  // Lets a running program work; called around large transfers.
  virtual void LetEventsThrough() {}

  // Attaches when needed and looks at what is in front now; a running program answers it at once, or fails with 50290.
  virtual SheetSnapshot Snapshot() {
    Attach();
    SheetSnapshot snapshot;
    snapshot.windowCount = WindowCount();
    snapshot.workbookName = WindowCaption(snapshot.windowCount);
    snapshot.windowCaption = WindowCaption(1);
    snapshot.sheetName = SheetName();
    snapshot.activeCell = ActiveCell();
    snapshot.formula = Formula(snapshot.activeCell);
    return snapshot;
  }
};

}  // namespace orv
