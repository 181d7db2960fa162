#pragma once

#include "geometry/geometry_call.h"

// Cylinders around Z with flat screens beside them: the first columns are round, the last ones flat plates parallel to
// the axis. Each routine builds primitive call.k; `code` is the type code of header column 10. Column 1 of the header
// counts all columns in the end.
namespace orv {

// One cylinder and two screens in one plane ("CYLSHAPE", "CYLSCREEN", with "B" wide and level with the axis).
void BuildScreenPair(GeometryCall& call, double code);

// Six cylinders in a row and two screens ("CYLSHAPEX6", "CYLSCREENX6", with "B" at places of the specification).
void BuildSixCylinders(GeometryCall& call, double code);

// One cylinder and four plates ("CYLSHAPE4", "CYLSCREEN4", with "4B" set further off).
void BuildFourPlates(GeometryCall& call, double code);

// One cylinder and the eight plates of the builder table ("CYLSHAPE44", "CYLSCREEN44").
void BuildBuilderTable(GeometryCall& call, double code);

}  // namespace orv
