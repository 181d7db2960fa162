#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/sheet_grid.h"
#include "model/worksheet.h"
#include "numerics/environment.h"

namespace orv {

// A workbook in memory, built cell by cell, which can also be told to fail as a running spreadsheet does. It begins
// with one empty sheet "Sheet1" and the active cell A1. Operations before Attach raise failure 91.
class MemorySheet : public Spreadsheet {
 public:
  explicit MemorySheet(Locale locale = {}) : locale_(std::move(locale)) {}

  // Makes a further sheet the active one, or goes back to one that exists.
  void UseSheet(const std::string& name);
  void RenameSheet(const std::string& name) { sheets_[active_].name = name; }

  // Fills cells of the active sheet. Failure 1004 outside the sheet.
  void Set(CellPosition cell, std::string value) { Grid().Set(cell, std::move(value)); }
  void SetFormula(CellPosition cell, std::string formula, std::string result);
  // Rows ended by LF or CR LF, cells separated by tabs, from `corner` to the right and down; an empty field leaves its
  // cell empty.
  void SetText(CellPosition corner, std::string_view rows);

  const SheetGrid& grid() const { return sheets_[active_].grid; }

  // How it is to behave.
  bool applicationRunning = true;  // otherwise Attach raises failure 429
  int busyOperations = 0;          // so many further operations raise failure 50290
  int emptyCopies = 0;             // so many further RangeText give an empty text, as a clipboard in use does
  std::string path = "/models";    // empty for a workbook never saved
  std::vector<std::string> windowCaptions = {"Model.xlsx"};  // empty: no workbook is open, failure 91

  // What was done with it.
  int attachCount = 0;
  int releaseCount = 0;
  int eventBreaks = 0;
  std::vector<std::string> copies;  // the ranges asked for, in order

  void Attach() override;
  void Release() override;
  std::string WorkbookPath() override;
  int WindowCount() override;
  std::string WindowCaption(int window) override;
  std::string SheetName() override;
  CellPosition ActiveCell() override;
  void Activate(CellPosition cell) override;
  std::string Formula(CellPosition cell) override;
  std::string Value(CellPosition cell) override;
  void Find(const std::string& part) override;
  std::string RangeText(const std::string& a1Range) override;
  bool PrintsDecimalComma(CellPosition scratch) override;
  void LetEventsThrough() override { ++eventBreaks; }

 private:
  struct Sheet {
    std::string name;
    SheetGrid grid;
    CellPosition activeCell;
  };
  SheetGrid& Grid() { return sheets_[active_].grid; }
  // The active sheet for one operation, which may fail for the reasons above.
  Sheet& Operate();

  Locale locale_;
  std::vector<Sheet> sheets_ = {{"Sheet1", {}, {}}};
  std::size_t active_ = 0;
  bool attached_ = false;
};

}  // namespace orv
