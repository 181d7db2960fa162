#pragma once

#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"
#include "view/point_lists.h"

namespace orv {

struct VectorDisplayInput {
  double column = 0;  // quantity shown, 0 for the density
  int NumberOfPrimitives = 0;
  int firstExcluded = 0;  // a stretch of cells out of the scale, drawn at full value
  int excludedCount = 0;
  double LogScale = 0;   // 1: logarithm with a margin below for zero or negative values, 2: without
  double runNumber = 0;  // of the title
  std::string prefix;    // of the label in the title
};

// Turns a quantity into the colour values of the cells, row 0 of PointList: the entries 0 to NumberPoints, which the
// caller has set, on a scale from 0 to 1; a quantity that is the same everywhere keeps its value. Frames of the turn
// (PointLists::rotation, values as they are in the stores) widen the scale and take the same course; the extremes of a
// frame start from 1000 and 0, but those of a logarithmic one from its first value, since a logarithm of 0 is the
// value 1. Fills the legend and adds quantity and scale to the title. A value beyond single precision reads 0 and is
// told as failure 6, a quantity that does not exist as failure 9, once each, by the block of this routine.
void a_SpaceVECTOROpenGL(const VectorDisplayInput& input, const Cells& cells,
                         const std::vector<std::string>& ResultLabels, std::string& title, PointLists& lists,
                         ErrorPrompt& prompt);

// What stands in the last parentheses of a label; empty without any, and for "-", which means a plain number.
std::string UnitOfLabel(const std::string& label);

}  // namespace orv
