#pragma once

#include <array>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"
#include "view/point_lists.h"

namespace orv {

struct CellBordersInput {
  int NumberOfPrimitives = 0;
  int RotatingPrimitive = 0;            // 0 for none
  std::array<double, 4> originShift{};  // element 0 = 1: elements 1 to 3 (metres) are taken off every point
};

// Entries of TraceList that belong to one primitive.
struct OutlineStretch {
  int first = 0;
  int entries = 0;
};

struct CellBordersOutput {
  OutlineStretch rotating;                 // of the rotating primitive, to be redrawn alone
  std::vector<OutlineStretch> primitives;  // index = primitive, element 0 unused
};

// Puts the closed outline of every cell behind what TraceList holds: five points with pen flag 0 and one break, from
// the corners of the cell, wound so that the normal of its family points to the viewer of the front face. Sets
// TraceCount and OutlineCount. Cells beyond the last whole outline of the table are left out, which is told once as
// failure 9 by the block of this routine; a coordinate beyond single precision reads 0 and is told as failure 6.
CellBordersOutput a_SpaceApplicationCellsBordersQater(const Cells& cells, const CellBordersInput& input,
                                                      PointLists& lists, ErrorPrompt& prompt);

}  // namespace orv
