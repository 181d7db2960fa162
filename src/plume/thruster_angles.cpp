#include "plume/thruster_angles.h"

#include <cmath>
#include <vector>

#include "geometry/quantities.h"
#include "numerics/angles.h"
#include "numerics/progress_pace.h"

namespace orv {
namespace {

// Angle between two unit vectors in degrees.
double DegreesBetween(double cosine) {
  return AcosPlain(cosine) / kDegree;
}

class AnglesOfCells {
 public:
  AnglesOfCells(Cells& cells, const ThrusterFrame& frame, const AnglesInput& input, ErrorPrompt& prompt)
      : cells_(cells),
        frame_(frame),
        input_(input),
        prompt_(prompt),
        block_(prompt, {"Error fautea_SpaceApplicationAnglesThrusters ", "Error aSpaceApplicationAnglesThrusters"}) {}

  // Calls told(share) before each row of cells.
  template <class Told>
  void OfPrimitive(int k, Told&& told) {
    if (k == input_.ThrusterPrimitive) return;
    const int n = cells_.CountI(k);
    const int m = cells_.CountJ(k);
    for (int i = 1; i <= n; ++i) {
      told(static_cast<double>(i - 1) / n);
      for (int j = 1; j <= m; ++j) {
        OfCell(k, i, j);
        for (int corner = 1; corner <= 4; ++corner) OfCorner(k, i, j, corner);
      }
    }
  }

  void OfCell(int k, int i, int j) {
    block_([&] { ReadCell(k, i, j); });
    double r = 0;
    double rReverse = 0;
    vUnit(toCell_, unitToCell_, r);
    vUnit(toThruster_, unitToThruster_, rReverse);
    block_([&] { Quantity(k, i, j, 8) = r; });
    block_([&] { Quantity(k, i, j, 60) = DegreesBetween(vDot(unitToCell_, normal_)); });
    const bool otherSide = input_.PlotOptionC > 0 && input_.PlotOptionC < 37;
    const double incidence = DegreesBetween(vDot(otherSide ? unitToCell_ : unitToThruster_, normal_));
    block_([&] { Quantity(k, i, j, 9) = incidence; });
    const double side = incidence > 90 ? 180 - incidence : incidence;
    block_([&] { Quantity(k, i, j, 35) = Divide(area_ * std::cos(side * kDegree), r * r); });
    const double cosine = vDot(unitToCell_, frame_.axiT);
    block_([&] { Quantity(k, i, j, 10) = Acos(cosine, prompt_) / kDegree; });
    block_([&] { Quantity(k, i, j, 11) = DegreesBetween(cosine); });
    block_([&] { Quantity(k, i, j, 12) = AzimuthOf(unitToCell_); });
  }

  // The outline's corners are taken from the four extreme cells of each strip.
  void GatherOutline(int k) {
    const int n = cells_.CountI(k);
    const int m = cells_.CountJ(k);
    int strips = 0;
    block_([&] { strips = static_cast<int>(ToIndex(cells_.BorderCorners(k, 0, 0))); });
    for (int s = 1; s <= strips; ++s) {
      const int first = strips == 1 ? n : s;
      for (int slot = 13; slot <= 17; slot += 4) {
        block_([&] { cells_.BorderCorners(k, s, slot) = cells_.CellCorners(k, first, 1, slot); });
        block_([&] { cells_.BorderCorners(k, s, slot + 1) = cells_.CellCorners(k, s, 1, slot + 1); });
        block_([&] { cells_.BorderCorners(k, s, slot + 2) = cells_.CellCorners(k, s, m, slot + 2); });
        block_([&] { cells_.BorderCorners(k, s, slot + 3) = cells_.CellCorners(k, first, m, slot + 3); });
      }
    }
  }

 private:
  double& Quantity(int k, int i, int j, int q) { return cells_.CellData(k, i, j, q); }

  void ReadCell(int k, int i, int j) {
    const auto& data = cells_.CellData;
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      const double centre = data(k, i, j, axis);
      toCell_(axis) = centre - frame_.ThrusterPosition(axis);
      toThruster_(axis) = frame_.ThrusterPosition(axis) - centre;
      normal_(axis) = data(k, i, j, axis + 4);
    }
    area_ = data(k, i, j, 4);
  }

  double AzimuthOf(const Vector3& direction) const {
    const double x = vDot(frame_.AxAzimuth, direction);
    const double y = vDot(frame_.axDeclin, direction);
    double azimuth = static_cast<double>(Atan2Single(x, y)) / kDegree;
    if (azimuth > 360) azimuth -= 360;
    if (azimuth < 0) azimuth += 360;
    return azimuth;
  }

  void OfCorner(int k, int i, int j, int corner) {
    auto& corners = cells_.CellCorners;
    Vector3 toCorner;
    block_([&] {
      for (int axis = 1; axis <= 3; ++axis) {
        const double coordinate = corners(k, i, j, (corner - 1) * 3 + axis);
        toCorner(static_cast<std::size_t>(axis)) = coordinate - frame_.ThrusterPosition(static_cast<std::size_t>(axis));
      }
    });
    double distance = 0;
    vUnit(toCorner, unitToCorner_, distance);
    block_([&] { corners(k, i, j, 12 + corner) = DegreesBetween(vDot(frame_.axiT, unitToCorner_)); });
    block_([&] { corners(k, i, j, 16 + corner) = AzimuthOf(unitToCorner_); });
  }

  Cells& cells_;
  const ThrusterFrame& frame_;
  const AnglesInput& input_;
  ErrorPrompt& prompt_;
  FailureBlock block_;
  // A zero vector leaves its unit vector as the cell before left it.
  Vector3 toCell_, toThruster_, normal_, unitToCell_, unitToThruster_, unitToCorner_;
  double area_ = 0;
};

}  // namespace

void aSpaceApplicationAnglesThrusters(Cells& cells, const ThrusterFrame& frame, const AnglesInput& input,
                                      ErrorPrompt& prompt) {
  AnglesOfCells angles(cells, frame, input, prompt);
  if (input.cell != nullptr) {
    angles.OfCell(input.cell->CellPrimitive, input.cell->CellI, input.cell->CellJ);
    return;
  }
  const int first = input.OnePrimitive != 0 ? input.OnePrimitive : 1;
  const int last = input.OnePrimitive != 0 ? input.OnePrimitive : input.numberPrimWithVolumic;
  ProgressPace progress(prompt.dialogs());
  for (int k = first; k <= last; ++k) {
    angles.OfPrimitive(k, [&](double share) {
      // A step of a turn tells of its turn.
      if (input.OnePrimitive == 0) progress("angles", (k - first + share) / (last - first + 1));
    });
  }
  for (int k = 1; k <= input.NumberOfPrimitives; ++k) angles.GatherOutline(k);
}

}  // namespace orv
