#include "plume/prepared_curve.h"

#include <algorithm>

#include "numerics/failure.h"

namespace orv {

PreparedCurve::PreparedCurve(const XYTable& table) : table_(table) {
  for (int row = 1; row <= table.count(); ++row) {
    if (!(table.x(row) >= 0)) {
      rows_.clear();
      return;
    }
    if (table.x(row) > 0) rows_.push_back({table.x(row), table.y(row)});
  }
  // Of rows with one x the first stays.
  std::stable_sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.x < b.x; });
  rows_.erase(std::unique(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.x == b.x; }),
              rows_.end());
}

double PreparedCurve::At(double x, ErrorPrompt& prompt) const {
  if (rows_.empty() || !(x > 0)) return Interpolate(table_, x, prompt);
  const auto hi = std::lower_bound(rows_.begin(), rows_.end(), x, [](const Row& row, double v) { return row.x < v; });
  if (hi == rows_.end()) return rows_.back().y;
  if (hi->x == x) return (hi->y + hi->y) / 2;
  if (hi == rows_.begin()) return hi->y;
  const auto lo = hi - 1;
  return lo->y + Divide((hi->y - lo->y) * (x - lo->x), hi->x - lo->x);
}

}  // namespace orv
