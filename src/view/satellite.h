#pragma once

#include <array>

#include "view/axes.h"
#include "view/event_colouring.h"
#include "view/planets.h"

namespace orv {

// Solids of the schematic satellite; each vertex has the colour of its octant.
//
// A box about the origin with the half widths `larg` along x, `haut` along y and `epaisseur` along z.
void monolythe(GlApi& gl, double larg, double haut, double epaisseur);
// Its side across the axis Abs(DIReCT), positive or negative by the sign, outwards: a the half width along that axis,
// b and c along the two that follow it.
void face(GlApi& gl, int DIReCT, double a, double b, double c);
// A cube about the origin whose sides carry names for the selection: 5 and 6 for +x and -x, 3 and 4 for y, 1 and 2 for
// z. Half width `size`.
void Cube(GlApi& gl, double size);

// A turn of the satellite: degrees about an axis of unit length.
struct Attitude {
  double angleDeg = 0;
  Vec3 axis{0, 0, 1};
};
// The turn of a quaternion, scalar first. A scalar within 1e-6 of 1 or -1 is no turn; a quaternion whose length is off
// by more than about 0.45 gives the attitude of a satellite that has none: 90 degrees about (1, 1, 1).
Attitude AttitudeOf(double w, double x, double y, double z);
Attitude DefaultAttitude();
// The satellite's X, Y and Z axes in the scene.
std::array<Vec3, 3> BodyAxes(const Attitude& attitude);
// Degrees about the Y axis from the Z axis to the Sun as seen in the plane of X and Z; 0 for a Sun along Y.
double BestPanelAngle(const std::array<Vec3, 3>& axes, const Vec3& sun);

// What the satellite is drawn from.
struct SatelliteSituation {
  const PointLists& lists;
  const Options& options;
  double RRMAXAXES = 0;

  bool Forced() const { return options.SatelliteShown == 1; }
  bool HasAttitude() const { return lists.TraceCount != kNoEntry && lists.PenUpMode == 0; }
};
// Its length in scene units, of which all its parts are shares: by the central body's radius but never below a share
// of the scene; of a satellite without attitude or orbit that is shown all the same, by the scene.
double SatSize(const SatelliteSituation& situation);

// The satellite at the last point drawn, with its attitude, thruster and panels at the time of that point.
class Satellite {
 public:
  // `sunKm` is the place of the Sun. Nothing in a plot without a scale of its own, unless the option shows it.
  void Draw(ClassGl& scene, SceneAxes& lines, const Vec3& sunKm);
  bool Step() { return angle_.Step(); }

  // Turn of the body about its axis, degrees.
  double BodyAngle() const { return angle_.Degrees(); }
  int TraceCursor() const { return traceCursor_; }
  int PanelCursor1() const { return panelCursor1_; }
  int PanelCursor2() const { return panelCursor2_; }

 private:
  // A turn about y.
  struct PanelTurn {
    double angleDeg = 0;
    double y = 1;
  };
  void MoveCursors(const ClassGl& scene, const PointLists& lists, double day);
  Attitude AttitudeNow(const SatelliteSituation& situation) const;
  std::array<PanelTurn, 2> PanelTurns(const SatelliteSituation& situation, double day, double best) const;

  TurningAngle angle_{5};
  EventStates events_;
  long plot_ = -1;  // number of the plot that the cursors and events belong to
  int previousIndex_ = 0;
  int traceCursor_ = 0;
  int panelCursor1_ = 0;
  int panelCursor2_ = 0;
};

}  // namespace orv
