#pragma once

#include "geometry/cell_data.h"
#include "plume/thruster_data.h"

namespace orv {

struct OneCell {
  int CellPrimitive = 0;
  int CellI = 0;
  int CellJ = 0;
};

struct AnglesInput {
  int NumberOfPrimitives = 0;
  int numberPrimWithVolumic = 0;
  int ThrusterPrimitive = 0;
  int OnePrimitive = 0;           // 0: all
  double PlotOptionC = 0;         // strictly between 0 and 37: incidence counted from the other side
  const OneCell* cell = nullptr;  // only this cell, without its corners
};

// Distance (m), incidence, indicatrix, declination, azimuth (deg) and solid angle (sr) of every cell as seen from the
// thruster: quantities 8 to 12, 35 and 60. The indicatrix and azimuth of the four corners go to slots 13 to 20 of
// CellCorners, those of the outline to the same slots of BorderCorners. The thruster's own primitive is skipped.
// A cell at the source point has no solid angle: failure 11, told by the common block.
void aSpaceApplicationAnglesThrusters(Cells& cells, const ThrusterFrame& frame, const AnglesInput& input,
                                      ErrorPrompt& prompt);

}  // namespace orv
