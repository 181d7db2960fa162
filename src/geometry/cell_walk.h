#pragma once

#include <cfloat>
#include <cmath>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/vectors.h"

// The cells of a model as lists hold them: primitive by primitive, i outer, j inner.
namespace orv {

// The cells of one primitive in such a list.
struct CellStretch {
  int primitive = 0;
  int countI = 0;  // cells of the primitive as far as the arrays hold them
  int countJ = 0;
  int first = 0;  // place of the cell (1, 1) in the list
  int cells = 0;  // cells that the list holds, the last ones may be missing
};

struct CellWalk {
  std::vector<CellStretch> stretches;  // of the primitives 1, 2, ...
  int cells = 0;
  bool whole = true;  // false: the arrays or the list have no room for some cells
};

// The places of the cells of primitives 1 to `primitives` in a list with room for `capacity` cells.
CellWalk WalkCells(const Cells& cells, int primitives, int capacity);

// Runs op(i, j, n) on every cell of a stretch, n its place in the list.
template <class Op>
void OnCells(const CellStretch& stretch, Op op) {
  int n = stretch.first;
  const int end = stretch.first + stretch.cells;
  for (int i = 1; i <= stretch.countI && n < end; ++i) {
    for (int j = 1; j <= stretch.countJ && n < end; ++j) op(i, j, n++);
  }
}

// Whether single precision holds the value; what it does not hold stands as 0 in the lists.
inline bool FitsSingle(double value) {
  return std::abs(value) <= static_cast<double>(FLT_MAX);
}
inline float SingleOrZero(double value) {
  return FitsSingle(value) ? static_cast<float>(value) : 0.0F;
}

// Largest distance of a cell centre from a point (metres), 0 without cells.
double CellRadius(const Cells& cells, const Vector3& origin);

}  // namespace orv
