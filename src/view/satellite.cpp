#include "view/satellite.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "numerics/angles.h"
#include "numerics/quaternion.h"

namespace orv {
namespace {

constexpr std::array<double, 4> kSignB = {1, -1, -1, 1};
constexpr std::array<double, 4> kSignC = {1, 1, -1, -1};

constexpr double kNoTurn = 1e-6;
constexpr double kLengthTolerance = 0.45;
constexpr double kLargestSize = 32000;  // of the scroll bar
constexpr double kSmallestShare = 0.05;
constexpr double kStandardSize = 65;

// Shares of SatSize.
constexpr double kBody = 0.1;
constexpr double kPanelPlace = 0.35;
constexpr double kFiringPlace = 0.13 * 2 * 1.2;
constexpr double kSilentPlace = 0.1313;

constexpr double kSunLineWidth = 7;

double Dot(const Vec3& a, const Vec3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The last entry that is not later than the time, from where the cursor stood.
int WalkTo(std::span<const float> times, int last, int cursor, double day) {
  if (last == kNoEntry) return 0;
  int at = std::clamp(cursor, 0, last);
  const auto time = [&](int entry) { return static_cast<double>(times[static_cast<std::size_t>(entry)]); };
  while (at > 0 && day < time(at)) --at;
  while (at < last && day >= time(at + 1)) ++at;
  return at;
}

// Lines and solids in the satellite's frame.
struct Drafting {
  GlApi& gl;
  SceneAxes& lines;
  const Options& options;
  double size;
  double pixelRatio;

  void Box(double larg, double haut, double epaisseur) const {
    monolythe(gl, larg * size, haut * size, epaisseur * size);
  }
  void BoxAt(double y, double z, double larg, double haut, double epaisseur) const {
    gl.PushMatrix();
    gl.Translate(0, y * size, z * size);
    Box(larg, haut, epaisseur);
    gl.PopMatrix();
  }
  void Line(double width, const Rgba& from, const Rgba& to, const Vec3& end) const {
    lines.AddAxisFromCenter(gl, options, width, from.red, from.green, from.blue, to.red, to.green, to.blue, end[0],
                            end[1], end[2], pixelRatio);
  }
};

void DrawBody(const Drafting& draft, bool axes) {
  draft.gl.Color({0, 1, 1, 0.8F});
  draft.Box(kBody, kBody, kBody);
  if (!axes) return;
  const double width = draft.options.ThicknessLineAxis;
  const Rgba red{1, 0, 0, 1};
  const Rgba green{0, 1, 0, 1};
  const Rgba blue{0, 0, 1, 1};
  draft.Line(width, red, red, {0.2 * draft.size, 0, 0});
  draft.Line(width, green, green, {0, 0.8 * draft.size, 0});
  draft.Line(width, blue, blue, {0, 0, 0.2 * draft.size});
}

void DrawThruster(const Drafting& draft, bool firing) {
  if (firing) {
    draft.BoxAt(0, -kFiringPlace, 0.02, 0.02, 0.2);
  } else {
    draft.BoxAt(0, -kSilentPlace, 0.02, 0.02, 0.015);
  }
}

void DrawPanel(const Drafting& draft, double place, double angleDeg, double axisY, bool line) {
  GlApi& gl = draft.gl;
  gl.PushMatrix();
  gl.Translate(0, place * draft.size, 0);
  if (angleDeg != 0) gl.Rotate(angleDeg, 0, axisY, 0);
  draft.Box(0.08, 0.2, 0.01);
  if (line) {
    draft.Line(draft.options.ThicknessLinePlot * 3, {0.5F, 0.5F, 0.5F, 1}, {1, 1, 0, 1}, {0, 0, -0.1 * draft.size});
  }
  gl.PopMatrix();
}

void SetMaterial(glxCtl& control) {
  SurfaceMaterial material;
  material.ambient = {0.9F, 0.9F, 0.9F, 1};
  material.diffuse = {1, 1, 0, 1};
  material.specular = {0.9F, 0.9F, 0.2F, 1};
  material.shininess = 120;
  control.Materials(0, material);
}

}  // namespace

void face(GlApi& gl, int DIReCT, double a, double b, double c) {
  const int side = std::abs(DIReCT);
  if (side < 1 || side > 3) return;
  const bool positive = DIReCT > 0;
  const std::array<double, 4>& signB = positive ? kSignB : kSignC;
  const std::array<double, 4>& signC = positive ? kSignC : kSignB;
  const auto first = static_cast<std::size_t>(side - 1);
  gl.Begin(GL_POLYGON);
  for (std::size_t corner = 0; corner < 4; ++corner) {
    Vec3 at{};
    at[first] = positive ? a : -a;
    at[(first + 1) % 3] = signB[corner] * b;
    at[(first + 2) % 3] = signC[corner] * c;
    glVertex3fColor(gl, at[0], at[1], at[2]);
  }
  gl.End();
}

void monolythe(GlApi& gl, double larg, double haut, double epaisseur) {
  for (const int sign : {-1, 1}) {
    face(gl, 1 * sign, larg, haut, epaisseur);
    face(gl, 2 * sign, haut, epaisseur, larg);
    face(gl, 3 * sign, epaisseur, larg, haut);
  }
}

void Cube(GlApi& gl, double size) {
  constexpr std::array<std::pair<int, GLuint>, 6> kSides = {{{1, 5}, {-1, 6}, {2, 3}, {-2, 4}, {3, 1}, {-3, 2}}};
  for (const auto& [side, name] : kSides) {
    gl.LoadName(name);
    face(gl, side, size, size, size);
  }
}

Attitude DefaultAttitude() {
  const double part = 1 / std::sqrt(3.0);
  return {90, {part, part, part}};
}

Attitude AttitudeOf(double w, double x, double y, double z) {
  if (!std::isfinite(w + x + y + z)) return DefaultAttitude();
  if (std::abs(std::abs(w) - 1) < kNoTurn) return {};
  const double angle = 2 * AcosPlain(w);
  double sine = std::sin(angle / 2);
  if (std::abs(sine) < kNoTurn) sine = 1;
  const Vec3 axis{x / sine, y / sine, z / sine};
  const double length = std::sqrt(Dot(axis, axis));
  if (std::abs(length - 1) > kLengthTolerance) return DefaultAttitude();
  return {RadToDeg(angle), {axis[0] / length, axis[1] / length, axis[2] / length}};
}

std::array<Vec3, 3> BodyAxes(const Attitude& attitude) {
  const double half = DegToRad(attitude.angleDeg) / 2;
  const double sine = std::sin(half);
  const Quaternion q(std::cos(half), attitude.axis[0] * sine, attitude.axis[1] * sine, attitude.axis[2] * sine);
  std::array<Vec3, 3> axes{};
  for (std::size_t k = 0; k < 3; ++k) {
    std::array<double, 3> unit{};
    unit[k] = 1;
    Vector3 turned;
    RotateByQuater(unit, q, turned);
    axes[k] = {turned(1), turned(2), turned(3)};
  }
  return axes;
}

double BestPanelAngle(const std::array<Vec3, 3>& axes, const Vec3& sun) {
  const double alongX = Dot(sun, axes[0]);
  const double alongZ = Dot(sun, axes[2]);
  const double inPlane = std::sqrt(alongX * alongX + alongZ * alongZ);
  if (!(inPlane > kNoTurn * std::sqrt(Dot(sun, sun)))) return 0;
  const double angle = RadToDeg(AcosPlain(alongZ / inPlane));
  return alongX < 0 ? -angle : angle;
}

double SatSize(const SatelliteSituation& situation) {
  const PointLists& lists = situation.lists;
  const double value = std::clamp(situation.options.SatelliteSize, 0.0, kLargestSize) + 1;
  if (situation.Forced() && (!situation.HasAttitude() || lists.FreeScale)) return situation.RRMAXAXES * 3 * value / 64;
  const double size = CentralRadiusKm(lists) * lists.FactorScale * 3 * value / kLargestSize * 8 / 4;
  return std::max(size, situation.RRMAXAXES * kSmallestShare * value / kStandardSize);
}

void Satellite::MoveCursors(const ClassGl& scene, const PointLists& lists, double day) {
  if (plot_ != scene.PlotNumber()) {
    plot_ = scene.PlotNumber();
    events_ = lists.EventCount == kNoEntry ? EventStates() : EventStates(lists);
    previousIndex_ = scene.CURRINDEXI() + 1;
  }
  if (scene.CURRINDEXI() < previousIndex_) traceCursor_ = panelCursor1_ = panelCursor2_ = 0;
  previousIndex_ = scene.CURRINDEXI();
  traceCursor_ = WalkTo(lists.TraceList.row(0), lists.PenUpMode == 0 ? lists.TraceCount : kNoEntry, traceCursor_, day);
  panelCursor1_ = WalkTo(lists.PanelAngleList1.row(0), lists.PanelCount1, panelCursor1_, day);
  panelCursor2_ = WalkTo(lists.PanelAngleList2.row(0), lists.PanelCount2, panelCursor2_, day);
}

Attitude Satellite::AttitudeNow(const SatelliteSituation& situation) const {
  if (!situation.HasAttitude()) return DefaultAttitude();
  const auto part = [&](int row) { return static_cast<double>(situation.lists.TraceList(row, traceCursor_)); };
  return AttitudeOf(part(1), part(2), part(3), part(4));
}

std::array<Satellite::PanelTurn, 2> Satellite::PanelTurns(const SatelliteSituation& situation, double day,
                                                          double best) const {
  const PointLists& lists = situation.lists;
  if (situation.options.PanelsTrackSun == 1) return {{{best, 1}, {best, 1}}};
  const bool past = situation.HasAttitude() && day > static_cast<double>(lists.TraceList(0, lists.TraceCount));
  if (lists.PanelCount1 == kNoEntry || past) return {};
  const PanelTurn first{lists.PanelAngleList1(1, panelCursor1_), 1};
  if (lists.PanelCount2 == kNoEntry) return {first, first};
  return {{first, {lists.PanelAngleList2(1, panelCursor2_), -1}}};
}

void Satellite::Draw(ClassGl& scene, SceneAxes& lines, const Vec3& sunKm) {
  const PointLists& lists = scene.Lists();
  const Options& options = scene.View().options;
  const SatelliteSituation situation{lists, options, scene.RRMAXAXES()};
  if (lists.FreeScale && !situation.Forced()) return;
  glxCtl& control = scene.Control();
  GlApi& gl = control.Gl();
  const ShownPoint shown = PointShown(scene, lists);
  const Drafting draft{gl, lines, options, SatSize(situation), control.DeviceRatio()};

  const double reach = SunLineLength(scene, lists) / kSunDistanceKm;
  draft.Line(kSunLineWidth, {1, 0, 1, 1}, {1, 1, 0, 1}, {sunKm[0] * reach, sunKm[1] * reach, sunKm[2] * reach});

  gl.ShadeModel(GL_SMOOTH);
  gl.Enable(GL_LIGHTING);
  gl.MakeQuadric();
  angle_.At(scene, lists, EarthAngle(shown.day), shown.day);
  SetMaterial(control);

  MoveCursors(scene, lists, shown.day);
  gl.Translate(shown.place[0], shown.place[1], shown.place[2]);
  const Attitude attitude = AttitudeNow(situation);
  const double best = BestPanelAngle(BodyAxes(attitude), sunKm);
  if (attitude.angleDeg != 0) gl.Rotate(attitude.angleDeg, attitude.axis[0], attitude.axis[1], attitude.axis[2]);
  gl.Disable(GL_LIGHTING);

  DrawBody(draft, scene.View().satelliteAxes);
  DrawThruster(draft, events_.At(shown.day) > EventStates::kInEvent);
  const auto turns = PanelTurns(situation, shown.day, best);
  const bool track = options.PanelsTrackSun == 1;
  DrawPanel(draft, kPanelPlace, turns[0].angleDeg, turns[0].y, track);
  draft.Box(0.01, 0.16, 0.01);
  DrawPanel(draft, -kPanelPlace, turns[1].angleDeg, turns[1].y, track);
}

}  // namespace orv
