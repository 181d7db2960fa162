#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "model/cell_text.h"
#include "numerics/array.h"

// Whole x-y curves typed into one cell: "0 1.2|10 1.1|45 0.3".
namespace orv {

// Rows from 1; column 1 = x, column 2 = y. Row 0 is unused and 0.
class XYTable {
 public:
  void Add(double x, double y) { rows_.push_back({x, y}); }
  void Clear() { rows_.resize(1); }
  int count() const { return static_cast<int>(rows_.size()) - 1; }
  double x(int row) const { return rows_[static_cast<std::size_t>(row)].x; }
  double y(int row) const { return rows_[static_cast<std::size_t>(row)].y; }
  void set(int row, double x, double y) { rows_[static_cast<std::size_t>(row)] = {x, y}; }

 private:
  struct Row {
    double x = 0;
    double y = 0;
  };
  std::vector<Row> rows_{Row{}};
};

// Reads the pairs of a cell and stores x, y, x, y ... in the slots behind `start`; `end` is the last slot used, also
// when the reading fails, and `count` the number of pairs. The store raises failure 9 when it has no such slot, which
// ends the reading.
void ReadTableFromTableXYInCell(const std::string& cell, int start, const std::function<void(int, double)>& store,
                                int& end, int& count, CellText& reader);

inline constexpr int kWorkValues = 720;

// The same into a table of rows; at most 360 pairs, or `count` values on entry when that is larger (failure 9 beyond).
void ReadTable(const std::string& cell, XYTable& table, int& count, CellText& reader);

// Keeps the last five tables parsed, so that a curve that is asked for cell by cell is parsed once.
class TableCache {
 public:
  // The table of a cell's text; valid until the next call.
  const XYTable& Get(const std::string& cell, CellText& reader);

 private:
  struct Slot {
    std::string text;
    bool used = false;
    XYTable table;
  };
  std::array<Slot, 5> slots_;
  std::size_t victim_ = 0;
};

// y at x: linear between the two nearest rows, flat beyond both ends, the mean where two rows share one x. The rows
// need not be sorted. An x of exactly 0 counts as no row: a table that starts at 0 gives its second y in its first
// interval.
double Interpolate(const XYTable& table, double x, ErrorPrompt& prompt);

// Index of a material in names[1 ..], case folded, first match; -1 with a message and the abort question when missing.
int FindMaterial(const std::vector<std::string>& MaterialNames, const std::string& name, ErrorPrompt& prompt);

}  // namespace orv
