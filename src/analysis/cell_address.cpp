#include "analysis/cell_address.h"

#include <algorithm>

#include "analysis/result_labels.h"
#include "geometry/cell_walk.h"
#include "geometry/vector_display.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kDigits = 6;

// A label without the unit in its last parentheses.
std::string PlainLabel(const std::string& label) {
  const std::size_t unit = label.rfind('(');
  const bool atEnd = unit != std::string::npos && !Trim(label).empty() && Trim(label).back() == ')';
  return Trim(atEnd && unit > 0 ? std::string_view(label).substr(0, unit) : std::string_view(label));
}

std::string ValueText(const CellAddress& cell) {
  std::string text = Trim(SignificantText(cell.value, kDigits));
  if (!cell.unit.empty()) text += " " + cell.unit;
  return cell.mean ? text + " (mean of the turn)" : text;
}

std::string QuantityText(const CellAddress& cell) {
  return cell.label.empty() ? "Plot " + std::to_string(cell.quantity) : cell.label;
}

std::string IndexText(const CellAddress& cell) {
  return "i = " + std::to_string(cell.i) + ", j = " + std::to_string(cell.j);
}

}  // namespace

std::string CellAddress::StatusText() const {
  if (!Found()) return {};
  return "Primitive " + std::to_string(primitive) + (name.empty() ? "" : " " + name) + ", " + IndexText(*this) + ": " +
         QuantityText(*this) + " = " + ValueText(*this);
}

std::string CellAddress::TipText() const {
  if (!Found()) return {};
  return "Primitive " + std::to_string(primitive) + (name.empty() ? "" : " " + name) + "\nCell " + IndexText(*this) +
         "\n" + QuantityText(*this) + ": " + ValueText(*this);
}

CellAddress AddressOfEntry(const RunContext& run, int entry) {
  const PointLists& lists = run.lists;
  if (entry < 0 || entry > lists.NumberPoints || lists.PenUpMode != 1 || !(lists.IndexPlot > 0)) return {};
  if (lists.IndexPlot > run.cells.CellData.quantities()) return {};
  const CellWalk walk = WalkCells(run.cells, run.cells.numberPrimWithVolumic, kListEntries);
  const auto found = std::ranges::find_if(walk.stretches, [&](const CellStretch& stretch) {
    return entry >= stretch.first && entry - stretch.first < stretch.cells;
  });
  if (found == walk.stretches.end()) return {};
  CellAddress cell;
  cell.primitive = found->primitive;
  const auto p = static_cast<std::size_t>(cell.primitive);
  if (p < run.PrimitiveNames.size()) cell.name = run.PrimitiveNames[p];
  cell.i = 1 + (entry - found->first) / found->countJ;
  cell.j = 1 + (entry - found->first) % found->countJ;
  cell.quantity = static_cast<int>(ToIndex(lists.IndexPlot));
  const std::string label = LabelOf(run.ResultLabels, cell.quantity);
  cell.label = PlainLabel(label);
  cell.unit = UnitOfLabel(label);
  cell.value = run.cells.CellData(cell.primitive, cell.i, cell.j, cell.quantity);
  cell.mean = lists.rotation.hasValues && lists.rotation.AutoRotPrimitive == cell.primitive;
  return cell;
}

}  // namespace orv
