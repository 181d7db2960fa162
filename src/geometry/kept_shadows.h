#pragma once

#include <vector>

#include "geometry/cell_data.h"

namespace orv {

// The shadow flags (quantity 20) and distances behind them (18) of a run, for a later one with the same primitives that
// takes them over instead of tracing rays. The arrays of a run are cleared when the next one sizes them.
class KeptShadows {
 public:
  explicit KeptShadows(const Cells& cells);

  // Whether every primitive has as many cells as then.
  bool Fits(const Cells& cells) const;
  // Writes them back. Failure 9 where they do not fit.
  void PutBack(Cells& cells) const;

 private:
  struct Primitive {
    int countI = 0;
    int countJ = 0;
    std::vector<double> values;  // two for each cell, j fastest
  };
  std::vector<Primitive> primitives_;
};

}  // namespace orv
