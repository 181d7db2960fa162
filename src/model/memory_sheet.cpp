#include "model/memory_sheet.h"

#include <algorithm>
#include <utility>

#include "numerics/failure.h"

namespace orv {

void MemorySheet::UseSheet(const std::string& name) {
  const auto found = std::find_if(sheets_.begin(), sheets_.end(), [&](const Sheet& s) { return s.name == name; });
  active_ = static_cast<std::size_t>(found - sheets_.begin());
  if (found == sheets_.end()) sheets_.push_back({name, {}, {}});
}

void MemorySheet::SetFormula(CellPosition cell, std::string formula, std::string result) {
  Grid().SetFormula(cell, std::move(formula), std::move(result));
}

void MemorySheet::SetText(CellPosition corner, std::string_view rows) {
  for (int row = corner.row; !rows.empty(); ++row) {
    const std::size_t end = std::min(rows.find('\n'), rows.size());
    std::string_view line = rows.substr(0, end);
    rows.remove_prefix(std::min(end + 1, rows.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    for (int column = corner.column; !line.empty(); ++column) {
      const std::size_t tab = std::min(line.find('\t'), line.size());
      Set({row, column}, std::string(line.substr(0, tab)));
      line.remove_prefix(std::min(tab + 1, line.size()));
    }
  }
}

MemorySheet::Sheet& MemorySheet::Operate() {
  if (!attached_ || windowCaptions.empty()) Raise(FailureNumber::ObjectVariableNotSet);
  if (busyOperations > 0) {
    --busyOperations;
    Raise(FailureNumber::SpreadsheetBusy);
  }
  return sheets_[active_];
}

void MemorySheet::Attach() {
  ++attachCount;
  if (!applicationRunning) Raise(FailureNumber::CannotCreateObject);
  attached_ = true;
}

void MemorySheet::Release() {
  ++releaseCount;
  attached_ = false;
}

std::string MemorySheet::WorkbookPath() {
  Operate();
  return path;
}

int MemorySheet::WindowCount() {
  Operate();
  return static_cast<int>(windowCaptions.size());
}

std::string MemorySheet::WindowCaption(int window) {
  Operate();
  if (window < 1 || window > static_cast<int>(windowCaptions.size())) Raise(FailureNumber::SubscriptOutOfRange);
  return windowCaptions[static_cast<std::size_t>(window - 1)];
}

std::string MemorySheet::SheetName() {
  return Operate().name;
}

CellPosition MemorySheet::ActiveCell() {
  return Operate().activeCell;
}

void MemorySheet::Activate(CellPosition cell) {
  Sheet& sheet = Operate();
  if (!InsideSheet(cell)) Raise(FailureNumber::ApplicationDefined);
  sheet.activeCell = cell;
}

std::string MemorySheet::Formula(CellPosition cell) {
  return Operate().grid.Formula(cell);
}

std::string MemorySheet::Value(CellPosition cell) {
  return Operate().grid.Value(cell);
}

void MemorySheet::Find(const std::string& part) {
  Sheet& sheet = Operate();
  sheet.activeCell = sheet.grid.Find(part, sheet.activeCell);
}

std::string MemorySheet::RangeText(const std::string& a1Range) {
  copies.push_back(a1Range);
  std::string text = Operate().grid.RangeText(a1Range);
  if (emptyCopies == 0) return text;
  --emptyCopies;
  return {};
}

bool MemorySheet::PrintsDecimalComma(CellPosition) {
  Operate();
  return locale_.decimalSeparator == ",";
}

}  // namespace orv
