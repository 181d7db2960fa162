// Says what the link sees of the Excel that runs on this machine: a check by hand, since no test can start one.
// excel_probe [RANGE] exits with 0, or with 1 and the failure.
#include <functional>
#include <iostream>
#include <string>

#include "model/excel_link.h"
#include "model/sheet_grid.h"
#include "model/windows_automation.h"
#include "numerics/environment.h"
#include "numerics/failure.h"

namespace {

void Probe(orv::ExcelLink& excel, const std::string& range) {
  excel.Attach();
  std::cout << "folder  " << excel.WorkbookPath() << '\n';
  const int windows = excel.WindowCount();
  for (int k = 1; k <= windows; ++k) std::cout << "window  " << excel.WindowCaption(k) << '\n';
  std::cout << "sheet   " << excel.SheetName() << '\n';
  const orv::CellPosition cell = excel.ActiveCell();
  std::cout << "cell    " << orv::CellName(cell) << "  " << excel.Formula(cell) << "  " << excel.Value(cell) << '\n';
  std::cout << "visible " << excel.Visible() << '\n';
  std::cout << excel.RangeText(range);
}

}  // namespace

int main(int count, char** words) {
  orv::ExcelLink excel(orv::UserLocale(), orv::RunningApplication);
  try {
    Probe(excel, count > 1 ? words[1] : "A1:C3");
    return 0;
  } catch (const orv::RuntimeFailure& failure) {
    std::cerr << "failure " << static_cast<int>(failure.number()) << ": " << failure.description() << '\n';
    return 1;
  }
}
