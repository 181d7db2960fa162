#pragma once

#include <string>

#include "geometry/geometry_call.h"

namespace orv {

// Adds (dx, dy, dz) metres to the centres and corner elements of all cells that the header of a primitive counts.
void TranslatePrimitive(GeometryCall& call, int primitive, double dx, double dy, double dz);

// Turns the centres, corners and normals around a main axis of the model ("X", "Y" or "Z"), right-handed, by an angle
// in degrees.
void RotatePrimitive(GeometryCall& call, int primitive, char axis, double angle);

// Executes the placement commands of a tail, one after the other, on a primitive: T x y z, R axis angle, and A, which
// enters call.k in the list of automatic rotation. A wrong letter is told and skipped; a wrong axis is told and Y
// taken. The tail is empty afterwards.
void WalkTail(GeometryCall& call, int primitive, std::string& tail);

}  // namespace orv
