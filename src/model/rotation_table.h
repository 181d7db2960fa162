#pragma once

#include "model/cell_text.h"
#include "model/primitive_spec.h"
#include "numerics/array.h"

namespace orv {

// Reads the angles and weights of the automatic rotation from the first cell of the model, columns firstColumn .. 11,
// that holds "Rot% "; without one a uniform table of 36 steps is made and its text put into the row of the rotating
// primitive. Table: row -1 .. 360, column 1 .. 2; (-1, 1) shift in degrees, (-1, 2) number of rows, (0, 2) sum of the
// weights, (k, 1) angle, (k, 2) weight. firstColumn returns the column that holds the text.
void ReadRotPercentTable(TextTable& ModelCells, int NumberOfPrimitives, int RotatingPrimitive, int& firstColumn,
                         Array<double, 2>& RotPercentTable, CellText& reader);

}  // namespace orv
