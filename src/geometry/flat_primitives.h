#pragma once

#include "geometry/geometry_call.h"

// Plates. Each routine builds primitive call.k at the origin: header, cells, corners and strips; `code` is the type
// code of header column 10.
namespace orv {

// Plate centred on the origin; i runs from high X to low X, the normal is +Z.
void BuildRect(GeometryCall& call, double code);

// Plate between given limits of X and Y.
void BuildRectFree(GeometryCall& call, double code);

// Plate given by four corners in space: the corner nearest to a right angle and its two sides make a rectangle, whose
// normal follows the order of the corners.
void BuildRectOriented(GeometryCall& call, double code);

// Plate with cells that grow in geometric progression towards its middle, as one face or as two faces a gap apart.
// The type code depends on the gap: 16 none, 15 below 0, 15.5 above.
void BuildRect2Sides(GeometryCall& call, double code);

}  // namespace orv
