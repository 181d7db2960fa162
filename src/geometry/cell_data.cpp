#include "geometry/cell_data.h"

#include <limits>
#include <new>

namespace orv {

void CellBlock::Size(int primitives, int cellsI, int cellsJ, int quantities) {
  double total = static_cast<double>(Count(primitives)) * static_cast<double>(Count(cellsI)) *
                 static_cast<double>(Count(cellsJ)) * static_cast<double>(Count(quantities));
  if (total > static_cast<double>(std::numeric_limits<std::ptrdiff_t>::max()) / 16) throw std::bad_alloc();
  block_ = ZeroPages();
  primitives_ = primitives;
  cellsI_ = cellsI;
  cellsJ_ = cellsJ;
  quantities_ = quantities;
  block_ = ZeroPages(static_cast<std::size_t>(total));
}

}  // namespace orv
