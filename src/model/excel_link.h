#pragma once

#include <string>
#include <utility>

#include "model/automation.h"
#include "model/worksheet.h"
#include "numerics/environment.h"

namespace orv {

// A running Excel as a spreadsheet: its active workbook, sheet and cell at the moment of each operation. It is attached
// to, never started. Operations before Attach raise failure 91. Numbers carry the decimal separator that Excel prints;
// the locale's only when Excel does not tell it. To be used on one thread.
class ExcelLink : public Spreadsheet {
 public:
  ExcelLink(Locale locale, AutomationSource source) : locale_(std::move(locale)), source_(std::move(source)) {}

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
  // Writes to the scratch cell and the one below it and puts both back, the workbook's mark of being saved with them.
  // Where the sheet cannot be written to, Excel's own setting answers.
  bool PrintsDecimalComma(CellPosition scratch) override;
  SheetSnapshot Snapshot() override;

  // For a user whose Excel hangs unseen in the memory.
  bool Visible();
  void SetVisible(bool visible);
  // Ends Excel, which may ask its user to save first, and lets go of it.
  void Quit();

 private:
  AutomationObject& Application();
  AutomationReference Workbook();
  AutomationReference Sheet();
  AutomationReference Window(int window);
  AutomationReference Cell(CellPosition cell);
  // The rectangle without what lies behind the last row and column in use.
  void CutToUsedPart(CellPosition first, CellPosition& last);

  Locale locale_;
  AutomationSource source_;
  AutomationReference application_;
  std::string decimalSeparator_ = ".";
};

}  // namespace orv
