#include "model/sheet_grid.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "numerics/failure.h"
#include "numerics/text.h"

namespace orv {
namespace {

const std::string kNothing;

constexpr int kCellsWalkedOver = 32;

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

void CheckInside(CellPosition cell) {
  if (!InsideSheet(cell)) Raise(FailureNumber::ApplicationDefined);
}

}  // namespace

void AppendAsOneLine(std::string& out, std::string_view value) {
  if (value.find_first_of("\t\r\n") == std::string_view::npos) {
    out.append(value);
    return;
  }
  for (std::size_t k = 0; k < value.size(); ++k) {
    if (value[k] == '\r' && k + 1 < value.size() && value[k + 1] == '\n') continue;
    out.push_back(value[k] == '\t' || value[k] == '\r' || value[k] == '\n' ? ' ' : value[k]);
  }
}

bool InsideSheet(CellPosition cell) {
  return cell.row >= 1 && cell.row <= kSheetRows && cell.column >= 1 && cell.column <= kSheetColumns;
}

std::string ColumnLetters(int column) {
  if (column < 1 || column > kSheetColumns) Raise(FailureNumber::ApplicationDefined);
  std::string letters;
  for (int rest = column; rest > 0; rest = (rest - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  }
  return letters;
}

std::optional<int> ColumnFromLetters(std::string_view letters) {
  if (letters.empty() || letters.size() > 3) return std::nullopt;
  int column = 0;
  for (const char c : letters) {
    if (!IsLetter(c)) return std::nullopt;
    column = column * 26 + ((c | 0x20) - 'a' + 1);
  }
  if (column > kSheetColumns) return std::nullopt;
  return column;
}

std::string CellName(CellPosition cell) {
  CheckInside(cell);
  return ColumnLetters(cell.column) + std::to_string(cell.row);
}

std::optional<CellPosition> ParseA1Cell(std::string_view text) {
  std::size_t k = text.starts_with('$') ? 1 : 0;
  const std::size_t letters = k;
  while (k < text.size() && IsLetter(text[k])) ++k;
  const std::optional<int> column = ColumnFromLetters(text.substr(letters, k - letters));
  if (!column) return std::nullopt;
  if (k < text.size() && text[k] == '$') ++k;
  if (k == text.size() || text.size() - k > 7) return std::nullopt;
  int row = 0;
  for (; k < text.size(); ++k) {
    if (!IsDigit(text[k])) return std::nullopt;
    row = row * 10 + (text[k] - '0');
  }
  const CellPosition cell{row, *column};
  return InsideSheet(cell) ? std::optional(cell) : std::nullopt;
}

CellRange ParseA1Range(std::string_view text) {
  const std::size_t colon = text.find(':');
  const auto one = ParseA1Cell(text.substr(0, colon));
  const auto other = colon == std::string_view::npos ? one : ParseA1Cell(text.substr(colon + 1));
  if (!one || !other) Raise(FailureNumber::ApplicationDefined);
  return {{std::min(one->row, other->row), std::min(one->column, other->column)},
          {std::max(one->row, other->row), std::max(one->column, other->column)}};
}

SheetGrid::Key SheetGrid::KeyOf(CellPosition cell) {
  return Key{cell.row - 1} * kSheetColumns + (cell.column - 1);
}

CellPosition SheetGrid::PositionOf(Key key) {
  return {static_cast<int>(key / kSheetColumns) + 1, static_cast<int>(key % kSheetColumns) + 1};
}

const SheetGrid::Cell* SheetGrid::Look(CellPosition cell) const {
  CheckInside(cell);
  const auto found = cells_.find(KeyOf(cell));
  return found == cells_.end() ? nullptr : &found->second;
}

void SheetGrid::Set(CellPosition cell, std::string value) {
  SetFormula(cell, {}, std::move(value));
}

void SheetGrid::SetFormula(CellPosition cell, std::string formula, std::string value) {
  CheckInside(cell);
  if (formula.empty() && value.empty()) {
    cells_.erase(KeyOf(cell));
    return;
  }
  // Files come in the order of the map: the hint makes such an insertion cheap.
  cells_.insert_or_assign(cells_.end(), KeyOf(cell), Cell{std::move(formula), std::move(value)});
}

const std::string& SheetGrid::Value(CellPosition cell) const {
  const Cell* found = Look(cell);
  return found == nullptr ? kNothing : found->value;
}

const std::string& SheetGrid::Formula(CellPosition cell) const {
  const Cell* found = Look(cell);
  if (found == nullptr) return kNothing;
  return found->formula.empty() ? found->value : found->formula;
}

int SheetGrid::LastRow() const {
  return cells_.empty() ? 0 : PositionOf(cells_.rbegin()->first).row;
}

int SheetGrid::LastColumn() const {
  int last = 0;
  for (const auto& [key, cell] : cells_) last = std::max(last, PositionOf(key).column);
  return last;
}

CellPosition SheetGrid::Find(std::string_view part, CellPosition active) const {
  CheckInside(active);
  const std::string wanted = LowerCase(part);
  const auto start = cells_.upper_bound(KeyOf(active));
  const auto holds = [&](const auto& entry) {
    const Cell& cell = entry.second;
    return Contains(LowerCase(cell.formula.empty() ? cell.value : cell.formula), wanted);
  };
  if (!wanted.empty()) {
    auto found = std::find_if(start, cells_.end(), holds);
    if (found != cells_.end()) return PositionOf(found->first);
    found = std::find_if(cells_.begin(), start, holds);
    if (found != start) return PositionOf(found->first);
  }
  Raise(FailureNumber::ObjectVariableNotSet);
}

std::string SheetGrid::RangeText(std::string_view a1Range) const {
  CellRange range = ParseA1Range(a1Range);
  const auto size = [&] {
    return std::int64_t{range.last.row - range.first.row + 1} * (range.last.column - range.first.column + 1);
  };
  if (size() > kLargestCopy) {
    range.last.row = std::max(range.first.row, std::min(range.last.row, LastRow()));
    range.last.column = std::max(range.first.column, std::min(range.last.column, LastColumn()));
    if (size() > kLargestCopy) Raise(FailureNumber::ApplicationDefined);
  }
  std::string text;
  auto next = cells_.lower_bound(KeyOf(range.first));
  for (int row = range.first.row; row <= range.last.row; ++row) {
    // Over a few cells beside the rectangle it is quicker to walk to the next row than to look for it.
    const Key rowStart = KeyOf({row, range.first.column});
    for (int steps = 0; next != cells_.end() && next->first < rowStart; ++steps) {
      next = steps < kCellsWalkedOver ? std::next(next) : cells_.lower_bound(rowStart);
    }
    for (int column = range.first.column; column <= range.last.column; ++column) {
      if (column > range.first.column) text.push_back('\t');
      if (next == cells_.end() || next->first != KeyOf({row, column})) continue;
      AppendAsOneLine(text, next->second.value);
      ++next;
    }
    text.append("\r\n");
  }
  return text;
}

}  // namespace orv
