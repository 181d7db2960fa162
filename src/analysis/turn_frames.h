#pragma once

#include "analysis/run_context.h"
#include "geometry/cell_borders.h"
#include "geometry/cell_walk.h"
#include "view/point_lists.h"

namespace orv {

// Fills PointLists::rotation from what the last full run stored of the turn of its rotating primitive: places of the
// cells at each step, the motions that lead there, and, when the plot has them, the values of the rotating primitive
// as they stand in the stores. Frame 0 is what the lists show: places from PointList, values from CellData. Cells
// beyond the limits of the stores move with the others and keep their mean value. Without stored places nothing is
// present. Of a heat flux turn only the rotating primitive itself is stored.
void FillTurnFrames(const RunContext& run, const CellWalk& walk, const Vector3& ViewOffset, PointLists& lists);

// Where the outlines of the turning primitives stand.
void SetTurnOutlines(const CellWalk& walk, const CellBordersOutput& borders, AutoRotation& rotation);

}  // namespace orv
