#include "window/running_spreadsheet.h"

#ifdef _WIN32
#include "model/windows_automation.h"
#else
#include "model/calc_link.h"
#endif

namespace orv {

#ifdef _WIN32

RunningSpreadsheet OpenRunningSpreadsheet(const std::string&, const Locale& locale) {
  auto link = std::make_unique<ExcelLink>(locale, RunningApplication);
  auto excel = std::make_unique<LinkedExcel>(*link);
  return {std::move(link), std::move(excel)};
}

bool HasSpreadsheetLink() {
  return true;
}

std::string NoSpreadsheetText(const std::string&) {
  return "There is no running Excel. Open your workbook in Excel first";
}

#else

RunningSpreadsheet OpenRunningSpreadsheet(const std::string& door, const Locale& locale) {
  CalcLinkSettings settings;
  settings.helper = FindCalcHelper();
  settings.door = CalcDoorOf(door);
  settings.decimalSeparator = locale.decimalSeparator;  // numbers read as from a file, however Calc prints them
  return {std::make_unique<CalcLink>(std::move(settings)), nullptr};
}

bool HasSpreadsheetLink() {
  return !FindCalcHelper().empty();
}

std::string NoSpreadsheetText(const std::string& door) {
  return "There is no running Calc that can be reached. Open its door by the command\n  " +
         CalcDoorCommand(CalcDoorOf(door));
}

#endif

}  // namespace orv
