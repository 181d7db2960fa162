#pragma once

#include <memory>
#include <string>

#include "model/excel_link.h"
#include "model/worksheet.h"
#include "numerics/environment.h"
#include "window/excel_watch.h"

// The spreadsheet program that this system's builds attach to: Excel on Windows, LibreOffice Calc elsewhere.
namespace orv {

// Excel's window as the watch handles one that hangs unseen. The link outlives it.
class LinkedExcel : public ExcelApplication {
 public:
  explicit LinkedExcel(ExcelLink& link) : link_(link) {}
  bool Visible() override { return link_.Visible(); }
  void SetVisible(bool visible) override { link_.SetVisible(visible); }
  void Quit() override { link_.Quit(); }

 private:
  ExcelLink& link_;
};

struct RunningSpreadsheet {
  std::unique_ptr<Spreadsheet> sheet;       // nothing is attached to yet
  std::unique_ptr<ExcelApplication> excel;  // of Excel alone
};

// `door` is that of Calc, in the user's words; failure 5 when it is none. Excel needs no door.
RunningSpreadsheet OpenRunningSpreadsheet(const std::string& door, const Locale& locale);

// False when this program was built without a link: it then never finds a spreadsheet.
bool HasSpreadsheetLink();

// What to do when no spreadsheet can be reached.
std::string NoSpreadsheetText(const std::string& door);

}  // namespace orv
