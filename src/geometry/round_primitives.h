#pragma once

#include <cmath>
#include <vector>

#include "geometry/geometry_call.h"
#include "numerics/angles.h"

// Surfaces of revolution around Z: direction i is the azimuth from +X towards +Y, direction j runs along the axis. Each
// routine builds primitive call.k at the origin: header, cells, corners and strips (one a column); `code` is the type
// code of header column 10.
namespace orv {

// Cone with its apex, or its smaller radius, at Z = 0 ("CON", "CON2"), or a very flat one ("DISC").
void BuildCone(GeometryCall& call, double code);

// Ellipsoid with its lowest point at Z = 0, cut at a height ("SPH", "ELLI", "PAR"). The normal points to the axis.
void BuildEllipsoid(GeometryCall& call, double code);

// The thruster: a small grid of points whose cell (1, 1) is the origin of the plume, with the axis +Z. The corner
// elements 1 to 6 hold the centre and the normal; there is no type code.
void BuildThruster(GeometryCall& call, double code);

// Cylinder around Z, with an elliptic form, or with shells one inside the other, each a primitive of its own
// ("CYL", "CYLELLIPSE"). The normal points away from the axis.
void BuildCylinder(GeometryCall& call, double code);

// Cosine and sine at the middle and at both edges of a column of cells, of azimuth step da (rad).
struct ColumnAngles {
  double cosMid, sinMid, cosFirst, sinFirst, cosLast, sinLast;
  ColumnAngles(double da, double column)
      : cosMid(std::cos(da / 2 + (column - 1) * da)),
        sinMid(std::sin(da / 2 + (column - 1) * da)),
        cosFirst(std::cos((column - 1) * da)),
        sinFirst(std::sin((column - 1) * da)),
        cosLast(std::cos(column * da)),
        sinLast(std::sin(column * da)) {}
};

// A column of cells of a cylinder: radius along X, ratio of the Y radius to it, X of the axis.
struct CylinderColumn {
  ColumnAngles angles;
  double radius;
  double ratio;
  double axisX;
};

// Fills centre, area, normal and corners of the cell of a cylinder at height z.
void SetCylinderCell(GeometryCall& call, const CylinderColumn& column, double z, CellShape& cell);

// The header of a cylinder but for its cell counts: radius of the shell and width w that it stands for.
void SetCylinderHeader(GeometryCall& call, int primitive, double radius, double w, double code);

// The option of the plot that keeps the cells of a cylinder on the circle instead of its chords.
inline bool CellsOnCircle(const GeometryCall& call) {
  return call.input.PlotOptionC == 15;
}

}  // namespace orv
