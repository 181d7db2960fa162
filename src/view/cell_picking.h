#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "view/class_gl.h"

namespace orv {

// The name under the pointer, from the records of an OpenGL selection: the count of records, then for each the count
// of its names, its nearest and its farthest depth, and the names. The record of the smallest depth with a name other
// than -1 counts, of its names the innermost; 0 without any. Records beyond the end are left out.
int NameOfNearestHit(std::span<const std::uint32_t> items);

// What the user sees at a place of the view.
struct PickedCell {
  int entry = 0;    // of PointList
  float value = 0;  // row 0, as it is drawn
  Vec3 position{};  // where the line of sight meets the cell, scene units
};

// The cell that is shown at a place of the view (device pixels from the left and the top): the nearest on the line of
// sight. Only what is drawn now counts: with sides, the outlines between TraceMin and TraceMax whose front shows; with
// dots, those between CURRINDEXMINI and CURRINDEXI, the closest within 4 logical pixels. Nothing for plots that have
// no cells.
//
// The line of sight is cut with the triangles of the outlines themselves. A selection by OpenGL would need a name for
// each cell, so a list of its own beside the compiled one, and goes through software with one draw call a cell; this
// takes some milliseconds for 150,000 cells and needs no context.
std::optional<PickedCell> PickCell(ClassGl& scene, double x, double y);

}  // namespace orv
