#pragma once

#include <cstddef>

#include "geometry/cell_data.h"

namespace orv {

// Last row i of a primitive of NI rows on which the effects work. The last rows of a screened cylinder are its screens,
// which stand for no real surface.
int LastRowOfEffects(double typeCode, int NI);

// Whether the effects know a primitive of this type.
bool HasEffects(double typeCode);

// Whether column j of NJ lies on the second face of a two-sided sheet. The first face has the columns up to the half.
bool OnSecondFace(double typeCode, int j, int NJ);

// The cells (1 .. countI, 1 .. countJ) of a primitive as far as they lie inside the arrays, and their place in a plane
// of CellData.
struct EffectRange {
  int countI = 0;
  int countJ = 0;
  std::size_t rowLength = 0;
  std::size_t at(int i, int j) const { return static_cast<std::size_t>(i) * rowLength + static_cast<std::size_t>(j); }
};
EffectRange RangeOf(const Cells& cells, int primitive);

// Sets a quantity of all cells of a primitive to 0. Memory that no one wrote stays unused.
void ClearQuantity(Cells& cells, int primitive, int quantity);

}  // namespace orv
