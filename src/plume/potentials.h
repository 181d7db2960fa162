#pragma once

#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "model/cell_text.h"
#include "model/primitive_spec.h"

namespace orv {

// Reads the potentials of the primitives from the columns firstColumn .. 11 of their rows into quantity 63 (volts) and
// marks a primitive that has them in CellData(p, 0, 0, 63). The forms:
//   Vtable x-y table        one pair "i volts" a cell, j outside, i inside, both rising ("V" for short)
//   VtableSym ...           both falling
//   VtableSymMajor ...      j rising, i falling
//   PotentialFuntion V1 V2 lawI nI lawJ nJ     V1 + f(i) f(j) (V2 - V1), laws COS, SIN, SlopeDownUp
// The cell leaves the row: its last filled cell takes the place. Its text is returned by primitive, from 1.
std::vector<std::string> PotentialTable(TextTable& ModelCells, int NumberOfPrimitives, int firstColumn, Cells& cells,
                                        CellText& reader);

}  // namespace orv
