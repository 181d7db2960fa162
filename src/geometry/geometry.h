#pragma once

#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/local_table.h"
#include "model/cell_text.h"
#include "model/primitive_spec.h"

namespace orv {

// What geometry keeps from one call to the next.
struct GeometryState {
  std::vector<int> AutoRotatedList{0};  // element 0 is the count; then the primitives with automatic rotation
  AutomaticRotation rotation;           // RotatingPrimitive 0 asks for a full build
  int VolumicSlices = 1;                // shells of the last cylinder built
  double LargestCentreShift = 0;        // of the last primitive: provisional centre to mean of corners, summed (m)
  LocalTable LocalCellTable{7};         // columns 1 to 3 centre, 5 to 7 normal, before placement
  LocalTable Rect2SidesLocalTable{2};   // X and Y of the cells of two-sided plates

  int RotatedCount() const;
  bool Rotates(int primitive) const;
  void AddRotated(int primitive);
};

struct GeometryInput {
  const TextTable& ModelCells;
  int NumberOfPrimitives = 0;
  double PlotOptionC = 0;
};

// Turns every primitive of the model into cells (CellData quantities 1 to 8, 29, 30 and the header (k, 0, 0, ..)),
// their corners (CellCorners) and strips (BorderCorners), and places them; metres, and degrees in the header. The
// caller has sized the arrays. A full build when no primitive rotates on entry; otherwise only the primitives of
// AutoRotatedList are built again, turned to RotationAngle. Messages and run-time failures go through the reader's
// prompt; nothing is raised but ProgramEnd on an abort answer.
void a_SpaceApplicationGeometry(const GeometryInput& input, std::vector<std::string>& PrimitiveNames, Cells& cells,
                                GeometryState& state, CellText& reader);

}  // namespace orv
