#include "geometry/cell_walk.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orv {

CellWalk WalkCells(const Cells& cells, int primitives, int capacity) {
  const CellBlock& data = cells.CellData;
  CellWalk walk;
  walk.whole = primitives <= data.primitives();
  for (int k = 1; k <= std::min(primitives, data.primitives()); ++k) {
    const int wantedI = cells.CountI(k);
    const int wantedJ = cells.CountJ(k);
    CellStretch stretch{k, std::min(wantedI, data.cellsI()), std::min(wantedJ, data.cellsJ()), walk.cells, 0};
    const bool empty = wantedI == 0 || wantedJ == 0;
    if (!empty && (stretch.countI < wantedI || stretch.countJ < wantedJ)) walk.whole = false;
    const std::int64_t all = std::int64_t{stretch.countI} * stretch.countJ;
    stretch.cells = static_cast<int>(std::min<std::int64_t>(all, capacity - walk.cells));
    if (stretch.cells < all) walk.whole = false;
    walk.cells += stretch.cells;
    walk.stretches.push_back(stretch);
  }
  return walk;
}

double CellRadius(const Cells& cells, const Vector3& origin) {
  double largest = 0;
  for (const CellStretch& stretch :
       WalkCells(cells, cells.numberPrimWithVolumic, std::numeric_limits<int>::max()).stretches) {
    const auto plane = [&](int q) { return cells.CellData.plane(q, stretch.primitive).data(); };
    const double* const x = plane(1);
    const double* const y = plane(2);
    const double* const z = plane(3);
    const std::size_t rowLength = cells.CellData.rowLength();
    OnCells(stretch, [&](int i, int j, int) {
      const std::size_t cell = static_cast<std::size_t>(i) * rowLength + static_cast<std::size_t>(j);
      const double dx = x[cell] - origin(1);
      const double dy = y[cell] - origin(2);
      const double dz = z[cell] - origin(3);
      largest = std::max(largest, dx * dx + dy * dy + dz * dz);
    });
  }
  return std::sqrt(largest);
}

}  // namespace orv
