#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "geometry/cell_writer.h"
#include "geometry/geometry.h"
#include "numerics/failure.h"

namespace orv {

// The variables of one call. They live across its primitives: when the statement that sets one fails, the value of an
// earlier primitive stands.
struct GeometryVariables {
  double n = 0, m = 0;                   // cells along i and j, as read
  double Lx = 0, Ly = 0;                 // sides of a plate
  double dx = 0, dy = 0;                 // its steps
  double sumI = 0, sumJ = 0;             // sums of the weights of growing cells
  double w0 = 0, h0 = 0, w = 0, h = 0;   // their first and present width and height
  double f = 0, g = 0;                   // place along the sides of an oriented plate
  double da = 0, dz = 0;                 // azimuth step (rad), height of a row
  double slope = 0;                      // of a cone
  double semiEquator = 0, semiPole = 0;  // axes of an ellipsoid
  double cosine = 0;                     // rounding check
  ColumnMatrix columns{{Bounds{1, 3}, Bounds{1, 12}}};
};

// What the routines of one call of a_SpaceApplicationGeometry share.
class GeometryCall {
 public:
  GeometryCall(const GeometryInput& callInput, std::vector<std::string>& primitiveNames, Cells& callCells,
               GeometryState& callState, CellText& textReader)
      : input(callInput),
        names(primitiveNames),
        cells(callCells),
        state(callState),
        reader(textReader),
        prompt(textReader.prompt()),
        block(textReader.prompt(), FailureLabels::Of("a_SpaceApplicationGeometry")) {}

  const GeometryInput input;
  std::vector<std::string>& names;
  Cells& cells;
  GeometryState& state;
  CellText& reader;
  ErrorPrompt& prompt;
  FailureBlock block;

  GeometryVariables v;
  int roundingCounter = 0;  // warnings about skew normals in this call
  int k = 0;                // the primitive, row of the model table
  std::string specification;
  PrimitiveSpec spec;
  int shells = 1;  // primitives that k stands for

  // Sets column `column` of a primitive's header row.
  void SetHeader(int primitive, int column, double value) {
    block([&] { cells.CellData(primitive, 0, 0, column) = value; });
  }
  // Cells that the header row counts.
  CellGrid Grid(int primitive) const { return {primitive, cells.CountI(primitive), cells.CountJ(primitive)}; }

  // Shows the specification, " PB at:" and the text.
  void Tell(std::string_view text, const std::string& title = "") {
    prompt.dialogs().Tell(specification + " PB at:" + std::string(text), title, Icon::Warning);
  }
};

// Takes primitive k from the model table: its specification text, the cut specification and the cell counts. A line
// that cannot be cut leaves those of the primitive before.
void ReadPrimitive(GeometryCall& call, int k);

// Stores the number of strips of a primitive and takes the strips from the corners of its cells: column s from (s, 1)
// to (s, m), or the whole surface when there is one strip. n and m may be broken numbers.
void SetStrips(GeometryCall& call, int primitive, double strips, double n, double m);

}  // namespace orv
