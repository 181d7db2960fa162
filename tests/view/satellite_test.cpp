#include "view/satellite.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/recorded_scene.h"
#include "view/scene_bodies.h"

namespace orv {
namespace {

using testing::RecordedScene;

void ExpectVec(const Vec3& actual, const Vec3& expected, double tolerance = 1e-6) {
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(actual[k], expected[k], tolerance) << "axis " << k;
}

Vec3 Outward(const DrawnPrimitive& polygon) {
  const auto at = [&](std::size_t k) { return polygon.vertices[k].position; };
  const Vec3 a{at(1).x - at(0).x, at(1).y - at(0).y, at(1).z - at(0).z};
  const Vec3 b{at(2).x - at(1).x, at(2).y - at(1).y, at(2).z - at(1).z};
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

TEST(SatelliteSolids, AFaceLooksOutwards) {
  for (const int direction : {-3, -2, -1, 1, 2, 3}) {
    SCOPED_TRACE(direction);
    RecordingGl gl;
    face(gl, direction, 2, 3, 5);
    ASSERT_EQ(gl.Primitives().size(), 1U);
    const DrawnPrimitive& drawn = gl.Primitives()[0];
    EXPECT_EQ(drawn.primitive, static_cast<GLenum>(GL_POLYGON));
    ASSERT_EQ(drawn.vertices.size(), 4U);
    const auto along = static_cast<std::size_t>(std::abs(direction) - 1);
    Vec3 normal{};
    normal[along] = direction > 0 ? 4.0 * 3 * 5 : -4.0 * 3 * 5;
    ExpectVec(Outward(drawn), normal);
    for (const DrawnVertex& vertex : drawn.vertices) {
      const Vec3 at{vertex.position.x, vertex.position.y, vertex.position.z};
      EXPECT_EQ(at[along], direction > 0 ? 2 : -2);
      EXPECT_EQ(std::abs(at[(along + 1) % 3]), 3);
      EXPECT_EQ(std::abs(at[(along + 2) % 3]), 5);
      EXPECT_EQ(vertex.colour, (Rgba{at[0] > 0 ? 1.0F : 0, at[1] > 0 ? 1.0F : 0, at[2] > 0 ? 1.0F : 0, 1}));
    }
  }
  RecordingGl gl;
  face(gl, 0, 1, 1, 1);
  face(gl, 4, 1, 1, 1);
  EXPECT_TRUE(gl.Calls().empty());
}

TEST(SatelliteSolids, ABoxHasItsThreeHalfWidths) {
  RecordingGl gl;
  monolythe(gl, 1, 2, 3);
  ASSERT_EQ(gl.Primitives().size(), 6U);
  for (const DrawnPrimitive& side : gl.Primitives()) {
    const Vec3 normal = Outward(side);
    const auto& at = side.vertices[0].position;
    EXPECT_GT(normal[0] * at.x + normal[1] * at.y + normal[2] * at.z, 0);
    for (const DrawnVertex& vertex : side.vertices) {
      EXPECT_EQ(std::abs(vertex.position.x), 1);
      EXPECT_EQ(std::abs(vertex.position.y), 2);
      EXPECT_EQ(std::abs(vertex.position.z), 3);
    }
  }
}

TEST(SatelliteSolids, ACubeNamesItsSides) {
  RecordingGl gl;
  Cube(gl, 4);
  ASSERT_EQ(gl.Primitives().size(), 6U);
  const Vec3 expected[] = {{}, {0, 0, 1}, {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}};
  std::set<GLuint> names;
  for (const DrawnPrimitive& side : gl.Primitives()) {
    names.insert(side.state.name);
    ASSERT_LE(side.state.name, 6U);
    const Vec3 normal = Outward(side);
    ExpectVec({normal[0] / 64, normal[1] / 64, normal[2] / 64}, expected[side.state.name]);
  }
  EXPECT_EQ(names, (std::set<GLuint>{1, 2, 3, 4, 5, 6}));
}

TEST(SatelliteAttitude, OfQuaternions) {
  const double h = std::sqrt(0.5);
  const Attitude quarter = AttitudeOf(h, 0, 0, h);
  EXPECT_NEAR(quarter.angleDeg, 90, 1e-9);
  ExpectVec(quarter.axis, {0, 0, 1});
  const Attitude half = AttitudeOf(0, 1, 0, 0);  // a scalar of 0 alone is a half turn
  EXPECT_NEAR(half.angleDeg, 180, 1e-9);
  ExpectVec(half.axis, {1, 0, 0});
  EXPECT_EQ(AttitudeOf(1, 0, 0, 0).angleDeg, 0);
  EXPECT_EQ(AttitudeOf(-1, 0, 0, 0).angleDeg, 0);
  EXPECT_EQ(AttitudeOf(1 - 5e-7, 0, 1e-3, 0).angleDeg, 0);
  // A little short of unit length: its axis is taken.
  const Attitude shorter = AttitudeOf(h, 0, 0.6 * h, 0);
  EXPECT_NEAR(shorter.angleDeg, 90, 1e-9);
  ExpectVec(shorter.axis, {0, 1, 0});
}

TEST(SatelliteAttitude, DefaultForWhatIsNoQuaternion) {
  const double rows[][4] = {{0, 0, 0, 0},   {std::sqrt(0.5), 0, 0, 0.5 * std::sqrt(0.5)},
                            {0, 1.5, 0, 0}, {0.5, 0, 0, 0},
                            {3, 0, 0, 0},   {std::nan(""), 0, 0, 1}};
  const double part = 1 / std::sqrt(3.0);
  for (const auto& q : rows) {
    SCOPED_TRACE(std::to_string(q[0]) + " " + std::to_string(q[1]) + " " + std::to_string(q[2]) + " " +
                 std::to_string(q[3]));
    const Attitude attitude = AttitudeOf(q[0], q[1], q[2], q[3]);
    EXPECT_EQ(attitude.angleDeg, 90);
    ExpectVec(attitude.axis, {part, part, part});
  }
}

TEST(SatelliteAttitude, AxesOfTheBody) {
  const auto axes = BodyAxes(AttitudeOf(std::sqrt(0.5), 0, 0, std::sqrt(0.5)));
  ExpectVec(axes[0], {0, 1, 0});
  ExpectVec(axes[1], {-1, 0, 0});
  ExpectVec(axes[2], {0, 0, 1});
}

// Turned by the angle about Y, the Z axis points to the Sun as far as it can.
TEST(SatelliteAttitude, BestPanelAngle) {
  const std::array<Vec3, 3> plain = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  EXPECT_NEAR(BestPanelAngle(plain, {0, 0, 5}), 0, 1e-9);
  EXPECT_NEAR(BestPanelAngle(plain, {5, 0, 0}), 90, 1e-9);
  EXPECT_NEAR(BestPanelAngle(plain, {-5, 0, 0}), -90, 1e-9);
  EXPECT_NEAR(BestPanelAngle(plain, {1, 7, 1}), 45, 1e-9);
  EXPECT_NEAR(BestPanelAngle(plain, {0, 0, -2}), 180, 1e-9);
  EXPECT_EQ(BestPanelAngle(plain, {0, 3, 0}), 0);
  const auto axes = BodyAxes(AttitudeOf(0.6, 0.48, 0.64, 0));
  const Vec3 sun{0.3, -0.8, 0.5};
  const double angle = BestPanelAngle(axes, sun) * std::numbers::pi / 180;
  Vec3 normal{};
  for (std::size_t k = 0; k < 3; ++k) normal[k] = std::sin(angle) * axes[0][k] + std::cos(angle) * axes[2][k];
  double best = -2;
  double reached = 0;
  for (std::size_t k = 0; k < 3; ++k) reached += normal[k] * sun[k];
  for (int degree = 0; degree < 360; ++degree) {
    const double a = degree * std::numbers::pi / 180;
    double facing = 0;
    for (std::size_t k = 0; k < 3; ++k) facing += (std::sin(a) * axes[0][k] + std::cos(a) * axes[2][k]) * sun[k];
    best = std::max(best, facing);
  }
  EXPECT_GE(reached, best);
}

TEST(SatelliteSize, OfTheCentralBodyTheSceneAndTheScroll) {
  PointLists lists;
  Options options;
  lists.FreeScale = false;
  lists.EarthOn = true;
  lists.FactorScale = 1;
  lists.TraceCount = 3;
  const auto size = [&](double value, double radius) {
    options.SatelliteSize = value;
    return SatSize({lists, options, radius});
  };
  EXPECT_NEAR(size(64, 10), 6378.0 * 3 * 65 / 32000 * 2, 1e-9);
  EXPECT_NEAR(size(0, 10), 6378.0 * 3 / 32000 * 2, 1e-9);
  lists.MoonView = true;
  EXPECT_NEAR(size(64, 10), 1738.0 * 3 * 65 / 32000 * 2, 1e-9);
  lists.FactorScale = 1e-6;  // a satellite too small to be seen
  EXPECT_NEAR(size(64, 10), 0.5, 1e-12);
  EXPECT_NEAR(size(129, 10), 1, 1e-12);
  options.SatelliteShown = 1;
  EXPECT_NEAR(size(64, 10), 0.5, 1e-12);
  lists.TraceCount = kNoEntry;
  EXPECT_NEAR(size(64, 10), 10.0 * 3 * 65 / 64, 1e-12);
  EXPECT_NEAR(size(-5, 10), 10.0 * 3 / 64, 1e-12);
}

// A circle of two days in the plane of the equator.
struct OrbitScene : RecordedScene {
  OrbitScene() : RecordedScene({}, nullptr), bodies(prompt, ORV_SOURCE_DIR "/textures") {
    scene = std::make_unique<ClassGl>(control, lists, view, prompt, clock, std::function<bool(PointLists&)>(), &bodies);
    for (int i = 0; i <= kLast; ++i) {
      const double turn = 2 * std::numbers::pi * i / kLast;
      AddPoint(kReferenceDay + 0.25 * i, 20 * std::cos(turn), 20 * std::sin(turn), 0);
    }
    lists.EarthOn = lists.TimePlot = true;
    lists.FactorScale = 0.001;
    lists.FindPlotValues();
    view.redrawFraction = 0.5;
  }
  // With a second paint, which is the first of the camera that a plot begins with.
  void Start() {
    RecordedScene::Start();
    Paint();
  }
  void AddAttitude(double day, double w, double x, double y, double z) {
    const int i = ++lists.TraceCount;
    const double numbers[] = {day, w, x, y, z};
    for (int row = 0; row < 5; ++row) lists.TraceList(row, i) = static_cast<float>(numbers[row]);
  }
  void AddPanel(ListTable& table, int& last, double day, double angle) {
    ++last;
    table(0, last) = static_cast<float>(day);
    table(1, last) = static_cast<float>(angle);
  }
  void Attitudes() {
    AddAttitude(kReferenceDay, 0, 1, 0, 0);
    AddAttitude(kReferenceDay + 1, 0, 0, 1, 0);
    AddAttitude(kReferenceDay + 2, 0, 0, 0, 1);
  }
  void MoveTo(int index) {
    int previous = 0;
    scene->ChangeCURRINDEXI(index, previous);
    Paint();
  }
  // The boxes of the last paint, six sides each: centre and z axis as the eye sees them.
  struct Box {
    Vec3 centre, halfWidth, turnedZ;
  };
  std::vector<Box> Boxes() {
    const auto polygons = control.Recording().PrimitivesOf(GL_POLYGON);
    EXPECT_EQ(polygons.size() % 6, 0U);
    std::vector<Box> boxes;
    for (std::size_t first = 0; first + 5 < polygons.size(); first += 6) {
      const auto& corner = polygons[first].vertices[0].position;
      const Matrix4& m = polygons[first].state.modelview;
      boxes.push_back(
          {{m[12], m[13], m[14]}, {std::abs(corner.x), std::abs(corner.y), std::abs(corner.z)}, {m[8], m[9], m[10]}});
    }
    return boxes;
  }
  // A vector of the scene as the eye sees it.
  Vec3 ToEye(const Vec3& v) {
    const auto eye = Transform(control.ModelviewMatrix(), {v[0], v[1], v[2], 0});
    return {eye[0], eye[1], eye[2]};
  }
  Vec3 ToEyePoint(const Vec3& v) {
    const auto eye = Transform(control.ModelviewMatrix(), {v[0], v[1], v[2], 1});
    return {eye[0], eye[1], eye[2]};
  }
  static constexpr int kLast = 8;
  OrbitBodies bodies;
};

constexpr double kS = 0.5;  // SatSize of these scenes: the floor, the circle being wide

TEST(SatelliteDrawing, StandsAtItsPointWithItsAttitude) {
  OrbitScene s;
  s.lists.FactorScale = 1e-6;
  s.Attitudes();
  s.Start();
  EXPECT_EQ(s.scene->CURRINDEXI(), 4);
  EXPECT_EQ(s.bodies.SatelliteDrawn().TraceCursor(), 1);
  const auto boxes = s.Boxes();
  ASSERT_EQ(boxes.size(), 5U);  // body, thruster, panel, strut, panel
  const Vec3 place{-10, 0, 0};
  // Half a turn about y: x and z point backwards.
  ExpectVec(boxes[0].centre, s.ToEyePoint(place), 1e-4);
  ExpectVec(boxes[0].halfWidth, {0.1 * kS, 0.1 * kS, 0.1 * kS});
  ExpectVec(boxes[0].turnedZ, s.ToEye({0, 0, -1}), 1e-5);
  ExpectVec(boxes[1].centre, s.ToEyePoint({-10, 0, 0.1313 * kS}), 1e-4);  // behind is +z now
  ExpectVec(boxes[1].halfWidth, {0.02 * kS, 0.02 * kS, 0.015 * kS});
  ExpectVec(boxes[2].centre, s.ToEyePoint({-10, 0.35 * kS, 0}), 1e-4);
  ExpectVec(boxes[2].halfWidth, {0.08 * kS, 0.2 * kS, 0.01 * kS});
  ExpectVec(boxes[3].centre, s.ToEyePoint(place), 1e-4);
  ExpectVec(boxes[3].halfWidth, {0.01 * kS, 0.16 * kS, 0.01 * kS});
  ExpectVec(boxes[4].centre, s.ToEyePoint({-10, -0.35 * kS, 0}), 1e-4);
  for (const DrawnPrimitive& side : s.control.Recording().PrimitivesOf(GL_POLYGON)) {
    EXPECT_FALSE(side.state.On(GL_LIGHTING));
    EXPECT_EQ(side.state.shadeModel, static_cast<GLenum>(GL_SMOOTH));
  }
}

TEST(SatelliteDrawing, CursorsFollowTheTimeBothWays) {
  OrbitScene s;
  s.Attitudes();
  for (int i = 0; i < 3; ++i) {
    s.AddPanel(s.lists.PanelAngleList1, s.lists.PanelCount1, kReferenceDay + 0.8 * i, 10.0 * i);
    s.AddPanel(s.lists.PanelAngleList2, s.lists.PanelCount2, kReferenceDay + 0.4 * i, 10.0 * i);
  }
  s.Start();
  const auto expect = [&](int trace, int panel1, int panel2) {
    EXPECT_EQ(s.bodies.SatelliteDrawn().TraceCursor(), trace) << s.scene->CURRINDEXI();
    EXPECT_EQ(s.bodies.SatelliteDrawn().PanelCursor1(), panel1) << s.scene->CURRINDEXI();
    EXPECT_EQ(s.bodies.SatelliteDrawn().PanelCursor2(), panel2) << s.scene->CURRINDEXI();
  };
  expect(1, 1, 2);
  s.MoveTo(8);
  expect(2, 2, 2);
  s.MoveTo(3);
  expect(0, 0, 1);
  s.MoveTo(0);
  expect(0, 0, 0);
  s.MoveTo(7);
  expect(1, 2, 2);
}

TEST(SatelliteDrawing, AnEmptyAttitudeTableHasADefault) {
  OrbitScene s;
  s.Start();
  EXPECT_TRUE(s.Boxes().empty());  // nothing asks for a satellite
  s.view.options.SatelliteShown = 1;
  s.Paint();
  const auto boxes = s.Boxes();
  ASSERT_EQ(boxes.size(), 5U);
  // 90 degrees about (1, 1, 1): z goes to (1 + sqrt 3, 1 - sqrt 3, 1) / 3.
  const double r = std::sqrt(3.0);
  ExpectVec(boxes[0].turnedZ, s.ToEye({(1 + r) / 3, (1 - r) / 3, 1.0 / 3}), 1e-5);
  EXPECT_NEAR(boxes[0].halfWidth[0], 0.1 * 10 * 3 * 65 / 64, 1e-5);
}

TEST(SatelliteDrawing, ThrusterFiresInAnEvent) {
  OrbitScene s;
  s.lists.FactorScale = 1e-6;
  s.Attitudes();
  s.AddEvent(kReferenceDay, 0);
  s.AddEvent(kReferenceDay + 0.9, 1);
  s.AddEvent(kReferenceDay + 1.4, 0);
  s.Start();
  auto boxes = s.Boxes();
  ASSERT_EQ(boxes.size(), 5U);
  ExpectVec(boxes[1].centre, s.ToEyePoint({-10, 0, 0.312 * kS}), 1e-4);
  ExpectVec(boxes[1].halfWidth, {0.02 * kS, 0.02 * kS, 0.2 * kS});
  s.MoveTo(7);
  boxes = s.Boxes();
  ExpectVec(boxes[1].halfWidth, {0.02 * kS, 0.02 * kS, 0.015 * kS});
}

TEST(SatelliteDrawing, PanelsTurnByTheirAngles) {
  OrbitScene s;
  s.lists.FactorScale = 1e-6;
  s.AddAttitude(kReferenceDay, 1, 0, 0, 0);
  s.AddAttitude(kReferenceDay + 1.5, 1, 0, 0, 0);
  s.AddPanel(s.lists.PanelAngleList1, s.lists.PanelCount1, kReferenceDay, 30);
  s.Start();
  const auto normal = [](double degrees) {
    const double a = degrees * std::numbers::pi / 180;
    return Vec3{std::sin(a), 0, std::cos(a)};
  };
  auto boxes = s.Boxes();
  ASSERT_EQ(boxes.size(), 5U);
  ExpectVec(boxes[2].turnedZ, s.ToEye(normal(30)), 1e-5);
  ExpectVec(boxes[3].turnedZ, s.ToEye({0, 0, 1}), 1e-5);
  ExpectVec(boxes[4].turnedZ, s.ToEye(normal(30)), 1e-5);
  // A list of its own turns the second panel the other way.
  s.AddPanel(s.lists.PanelAngleList2, s.lists.PanelCount2, kReferenceDay, 50);
  s.Paint();
  boxes = s.Boxes();
  ExpectVec(boxes[2].turnedZ, s.ToEye(normal(30)), 1e-5);
  ExpectVec(boxes[4].turnedZ, s.ToEye(normal(-50)), 1e-5);
  // Behind the attitude they stand as built.
  s.MoveTo(8);
  boxes = s.Boxes();
  ExpectVec(boxes[2].turnedZ, s.ToEye({0, 0, 1}), 1e-5);
  ExpectVec(boxes[4].turnedZ, s.ToEye({0, 0, 1}), 1e-5);
  // To the Sun, which stands near +x on these days.
  s.view.options.PanelsTrackSun = 1;
  s.MoveTo(4);
  boxes = s.Boxes();
  EXPECT_GT(boxes[2].turnedZ[0] * s.ToEye({1, 0, 0})[0] + boxes[2].turnedZ[1] * s.ToEye({1, 0, 0})[1] +
                boxes[2].turnedZ[2] * s.ToEye({1, 0, 0})[2],
            0.99);
  ExpectVec(boxes[2].turnedZ, boxes[4].turnedZ, 1e-9);
}

std::vector<DrawnPrimitive> Strips(OrbitScene& s) {
  return s.control.Recording().PrimitivesOf(GL_LINE_STRIP);
}
// Line strips of two points whose first and last colours are these.
std::vector<DrawnPrimitive> LinesOf(OrbitScene& s, const Rgba& from, const Rgba& to) {
  std::vector<DrawnPrimitive> found;
  for (const DrawnPrimitive& strip : Strips(s)) {
    if (strip.vertices.size() == 2 && strip.vertices[0].colour == from && strip.vertices[1].colour == to) {
      found.push_back(strip);
    }
  }
  return found;
}

TEST(SatelliteDrawing, LineToTheSun) {
  OrbitScene s;
  s.Attitudes();
  s.Start();
  const auto lines = LinesOf(s, {1, 0, 1, 1}, {1, 1, 0, 0.6F});
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].state.lineWidth, 7);
  EXPECT_EQ(lines[0].vertices[0].position, (Vertex{0, 0, 0}));
  const Vertex end = lines[0].vertices[1].position;
  // On 22 March 2003 the Sun stands just behind the equinox, at 0.996 of its mean distance.
  const double reach = 1.25 * 6378 * s.lists.FactorScale;
  const double length = std::hypot(end.x, end.y, end.z);
  EXPECT_NEAR(length / reach, 0.996, 0.002);
  EXPECT_NEAR(end.x / length, 1, 0.001);
  EXPECT_GT(end.y, 0);
  EXPECT_GT(end.z, 0);
}

TEST(SatelliteDrawing, AxesOfTheSatellite) {
  OrbitScene s;
  s.lists.FactorScale = 1e-6;
  s.Attitudes();
  s.view.options.ThicknessLineAxis = 2;
  s.Start();
  EXPECT_TRUE(LinesOf(s, {1, 0, 0, 1}, {1, 0, 0, 0.6F}).empty());
  s.view.satelliteAxes = true;
  s.Paint();
  const struct {
    Rgba colour;
    Vertex end;
  } rows[] = {{{1, 0, 0, 1}, {0.2F * 0.5F, 0, 0}}, {{0, 1, 0, 1}, {0, 0.8F * 0.5F, 0}}, {{0, 0, 1, 1}, {0, 0, 0.1F}}};
  for (const auto& row : rows) {
    const auto lines = LinesOf(s, row.colour, {row.colour.red, row.colour.green, row.colour.blue, 0.6F});
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].state.lineWidth, 2);
    const Vertex& end = lines[0].vertices[1].position;
    EXPECT_NEAR(end.x, row.end.x, 1e-6);
    EXPECT_NEAR(end.y, row.end.y, 1e-6);
    EXPECT_NEAR(end.z, row.end.z, 1e-6);
  }
}

TEST(SatelliteDrawing, TrackingPanelsCarryALine) {
  OrbitScene s;
  s.lists.FactorScale = 1e-6;
  s.Attitudes();
  s.Start();
  const Rgba grey{0.5F, 0.5F, 0.5F, 1};
  EXPECT_TRUE(LinesOf(s, grey, {1, 1, 0, 0.6F}).empty());
  s.view.options.PanelsTrackSun = 1;
  s.view.options.ThicknessLinePlot = 1.5;
  s.Paint();
  const auto lines = LinesOf(s, grey, {1, 1, 0, 0.6F});
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].state.lineWidth, 4.5F);
  EXPECT_NEAR(lines[0].vertices[1].position.z, -0.1 * kS, 1e-6);
}

TEST(SatelliteDrawing, NotWithAFreeScaleUnlessForced) {
  OrbitScene s;
  s.lists.FactorScale = 1;
  s.lists.EarthOn = false;
  s.Attitudes();
  s.Start();
  EXPECT_TRUE(s.Boxes().empty());
  s.view.options.SatelliteShown = 1;
  s.Paint();
  ASSERT_EQ(s.Boxes().size(), 5U);
  EXPECT_NEAR(s.Boxes()[0].halfWidth[0], 0.1 * 3 * 65 / 64 * static_cast<double>(s.scene->RRMAXAXES()), 1e-4);
}

TEST(SatelliteDrawing, MaterialOfTheBody) {
  OrbitScene s;
  s.Attitudes();
  s.Start();
  const SurfaceMaterial& material = s.control.MaterialIn(0);
  EXPECT_EQ(material.ambient, (std::array<float, 4>{0.9F, 0.9F, 0.9F, 1}));
  EXPECT_EQ(material.diffuse, (std::array<float, 4>{1, 1, 0, 1}));
  EXPECT_EQ(material.specular, (std::array<float, 4>{0.9F, 0.9F, 0.2F, 1}));
  EXPECT_EQ(material.shininess, 120);
}

}  // namespace
}  // namespace orv
