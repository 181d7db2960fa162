#pragma once

#include <vector>

#include "model/cell_table.h"

namespace orv {

// A curve that is asked for cell by cell: its rows are put in order once, and every value is the one that Interpolate
// gives, to the last bit.
class PreparedCurve {
 public:
  PreparedCurve() = default;
  explicit PreparedCurve(const XYTable& table);

  // y at x; an empty curve is told as Interpolate tells it.
  double At(double x, ErrorPrompt& prompt) const;
  int count() const { return table_.count(); }

 private:
  struct Row {
    double x;
    double y;
  };
  XYTable table_;
  std::vector<Row> rows_;  // rising and distinct, without those at 0; empty when the order of the rows matters
};

}  // namespace orv
