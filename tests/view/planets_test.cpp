#include "view/planets.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "support/recorded_scene.h"
#include "view/scene_bodies.h"

namespace orv {
namespace {

using testing::RecordedScene;

constexpr double kRadian = 180 / std::numbers::pi;

TEST(BodyAngles, AreReduced) {
  EXPECT_EQ(ReducedAngle(370), 10);
  EXPECT_EQ(ReducedAngle(-130), 230);
  EXPECT_EQ(ReducedAngle(360), 0);
  EXPECT_EQ(ReducedAngle(-1e-20), 0);
}

TEST(BodyAngles, OfTheReferenceDayAndPeriods) {
  EXPECT_NEAR(EarthAngle(37701), 230, 1e-9);
  EXPECT_NEAR(EarthAngle(37701 + 86164.09 / 86400), 230, 1e-9);
  EXPECT_NEAR(EarthAngle(37701.25), 320.2464, 1e-3);
  EXPECT_NEAR(MoonViewAngle(37701), 230, 1e-9);
  EXPECT_NEAR(MoonViewAngle(37701 + 27.32166 / 4), 320, 1e-9);
  EXPECT_NEAR(MoonAngle(37701), 180, 1e-9);
  EXPECT_NEAR(MoonAngle(37701 + 27.5 / 4), 270, 1e-9);
  EXPECT_NEAR(MoonAngle(37701 - 27.5 / 4), 90, 1e-9);
  EXPECT_NEAR(MoonAngle(37701 + 27.5 * 10.5), 0, 1e-6);
}

// The Sun in the frame that turns with the Earth: by the turn since the reference day, its declination by a sine
// through the year. Turned as the Earth is, its direction is that of the theory of the planets.
TEST(SunPlaceTest, AgreesWithThePlainFormulaNearTheReferenceDay) {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  SolarSystem sky(prompt);
  for (const double day : {37696.0, 37699.3, 37701.0, 37701.6, 37706.0}) {
    SCOPED_TRACE(day);
    const double azimuth = ReducedAngle(-40 + (day - 37701) * 360 * 86400 / 86164.09) / kRadian;
    const double declination = -23 * std::sin((37701 - day) / 180 * 3.1416) / kRadian;
    const Vec3 turning{std::sin(azimuth) * std::cos(declination), std::cos(azimuth) * std::cos(declination),
                       std::sin(declination)};
    const double turn = EarthAngle(day) / kRadian;
    const Vec3 plain{turning[0] * std::cos(turn) - turning[1] * std::sin(turn),
                     turning[0] * std::sin(turn) + turning[1] * std::cos(turn), turning[2]};
    const Vec3 sun = SunPlace(sky, day);
    const double length = std::sqrt(sun[0] * sun[0] + sun[1] * sun[1] + sun[2] * sun[2]);
    EXPECT_NEAR(length / kSunDistanceKm, 0.996, 0.004);
    const double cosine = (sun[0] * plain[0] + sun[1] * plain[1] + sun[2] * plain[2]) / length;
    EXPECT_GT(cosine, std::cos(5.5 / kRadian));
  }
  // At the summer solstice the Sun stands north by the tilt of the ecliptic.
  const Vec3 summer = SunPlace(sky, 37793.8);
  EXPECT_NEAR(std::atan2(summer[2], std::hypot(summer[0], summer[1])) * kRadian, 23.45, 0.01);
  EXPECT_NEAR(std::atan2(summer[1], summer[0]) * kRadian, 90, 0.3);
}

TEST(MoonOnEclipticTest, IsInKilometres) {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  SolarSystem sky(prompt);
  const Vec3 moon = MoonOnEcliptic(sky, 33706);  // 12 April 1992
  EXPECT_NEAR(std::atan2(moon[1], moon[0]) * kRadian, 133.16, 0.3);
  EXPECT_NEAR(std::sqrt(moon[0] * moon[0] + moon[1] * moon[1] + moon[2] * moon[2]), 368409.7, 1500);
}

// Five points on a square in four days.
struct EarthScene : RecordedScene {
  EarthScene() : bodies(prompt, ORV_SOURCE_DIR "/textures") {
    scene = std::make_unique<ClassGl>(control, lists, view, prompt, clock, std::function<bool(PointLists&)>(), &bodies);
    const double places[][2] = {{20, 0}, {0, 20}, {-20, 0}, {0, -20}, {20, 0}};
    for (int i = 0; i < 5; ++i) AddPoint(kReferenceDay + i, places[i][0], places[i][1], 0);
    lists.EarthOn = lists.TimePlot = true;
    lists.FactorScale = 0.0005;
    lists.FindPlotValues();
    view.redrawFraction = 0.5;
  }
  void Start() {
    RecordedScene::Start();
    Paint();
  }
  void MoveTo(int index) {
    int previous = 0;
    scene->ChangeCURRINDEXI(index, previous);
    Paint();
  }
  const std::vector<DrawnSphere>& Spheres() { return control.Recording().Spheres(); }
  Vec3 ToEye(const Vec3& v, double w) {
    const auto eye = Transform(control.ModelviewMatrix(), {v[0], v[1], v[2], w});
    return {eye[0], eye[1], eye[2]};
  }
  // The direction that a point of a sphere's own x axis has in the scene, as an angle about the axis of the Earth.
  double TurnOf(const DrawnSphere& sphere) {
    const Matrix4& m = sphere.state.modelview;
    const Vec3 x = ToEye({1, 0, 0}, 0);
    const Vec3 y = ToEye({0, 1, 0}, 0);
    return ReducedAngle(std::atan2(m[0] * y[0] + m[1] * y[1] + m[2] * y[2], m[0] * x[0] + m[1] * x[1] + m[2] * x[2]) *
                        kRadian);
  }
  std::vector<GlOperation> OperationsFrom(GlOperation first) {
    std::vector<GlOperation> found;
    for (const GlCall& call : control.Recording().Calls()) {
      if (!found.empty() || call.operation == first) found.push_back(call.operation);
    }
    return found;
  }
  OrbitBodies bodies;
};

TEST(EarthDrawing, StandsAtTheCentreWithItsPicture) {
  EarthScene s;
  s.Start();
  ASSERT_EQ(s.Spheres().size(), 2U);
  const DrawnSphere& earth = s.Spheres()[0];
  EXPECT_NEAR(earth.radius, 6378 * s.lists.FactorScale, 1e-9);
  EXPECT_EQ(earth.slices, 106);
  EXPECT_EQ(earth.stacks, 106);
  EXPECT_TRUE(earth.textured);
  EXPECT_TRUE(earth.state.On(GL_LIGHTING));
  EXPECT_TRUE(earth.state.On(GL_TEXTURE_2D));
  EXPECT_TRUE(earth.state.On(GL_LIGHT0));
  EXPECT_EQ(earth.state.texture, IdentityMatrix());
  EXPECT_EQ(earth.state.shadeModel, static_cast<GLenum>(GL_SMOOTH));
  EXPECT_EQ(earth.state.colour, (Rgba{1, 1, 1, 1}));
  EXPECT_NEAR(s.TurnOf(earth), EarthAngle(kReferenceDay + 2), 1e-3);
  const auto& textures = s.control.Recording().Textures();
  ASSERT_EQ(textures.size(), 2U);
  EXPECT_EQ(textures.at(earth.state.textureName).width, 2048);
  EXPECT_NE(s.Spheres()[1].state.textureName, earth.state.textureName);
  // What comes after is drawn as before.
  EXPECT_FALSE(s.control.Recording().State().On(GL_LIGHTING));
  EXPECT_FALSE(s.control.Recording().State().On(GL_TEXTURE_2D));
  EXPECT_EQ(s.control.Recording().State().textureName, 0U);
}

TEST(EarthDrawing, TexturesAreMadeOnceAContext) {
  EarthScene s;
  s.Start();
  s.Paint();
  EXPECT_EQ(s.control.Recording().Count(GlOperation::MakeTexture), 0U);
  s.control.Attach(*s.scene);
  s.Paint();
  EXPECT_EQ(s.control.Recording().Count(GlOperation::MakeTexture), 2U);
  s.view.earthTexture = "moonjpg.jpg";
  s.Paint();
  EXPECT_EQ(s.control.Recording().Count(GlOperation::MakeTexture), 0U);
  EXPECT_EQ(s.Spheres()[0].state.textureName, s.Spheres()[1].state.textureName);
}

TEST(EarthDrawing, AMissingPictureIsLoggedOnce) {
  EarthScene s;
  s.view.earthTexture = "absent.jpg";
  s.view.moonTexture = "";
  s.Start();
  s.Paint();
  ASSERT_EQ(s.dialogs.log.size(), 1U);
  EXPECT_NE(s.dialogs.log[0].find("absent.jpg was not read: there is no such file."), std::string::npos);
  ASSERT_EQ(s.Spheres().size(), 2U);
  for (const DrawnSphere& sphere : s.Spheres()) {
    EXPECT_FALSE(sphere.textured);
    EXPECT_FALSE(sphere.state.On(GL_TEXTURE_2D));
    EXPECT_EQ(sphere.state.colour, OptionColour(s.view.options.ColourOfSphere));
  }
  s.control.Attach(*s.scene);
  s.Paint();
  EXPECT_EQ(s.dialogs.log.size(), 1U);
}

TEST(EarthDrawing, TheFirstPointHasTheAngleOne) {
  EarthScene s;
  s.view.options.SatelliteShown = 1;
  s.view.redrawFraction = 0;
  s.Start();
  EXPECT_EQ(s.bodies.EarthAngleDrawn(), 1);
  EXPECT_EQ(s.bodies.SatelliteDrawn().BodyAngle(), 1);
  ASSERT_EQ(s.Spheres().size(), 2U);
  EXPECT_NEAR(s.TurnOf(s.Spheres()[0]), 1, 1e-3);
  s.MoveTo(1);
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), EarthAngle(kReferenceDay + 1), 1e-9);
  EXPECT_NEAR(s.bodies.SatelliteDrawn().BodyAngle(), EarthAngle(kReferenceDay + 1), 1e-9);
}

// At the end of a running plot the bodies turn by steps of the timer, not by paints.
TEST(EarthDrawing, TurnsOnAtTheEndOfARunningPlot) {
  EarthScene s;
  s.view.options.SatelliteShown = 1;
  s.view.animation = true;
  s.view.STEPPT = 2;
  s.Start();
  EXPECT_EQ(s.bodies.EarthAngleDrawn(), 1);
  EXPECT_TRUE(s.WorkingTick());
  s.Paint();
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), EarthAngle(kReferenceDay + 2), 1e-9);
  EXPECT_TRUE(s.WorkingTick());
  s.Paint();
  s.Paint();
  const double end = EarthAngle(kReferenceDay + 4);
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), end, 1e-9);
  for (int step = 1; step <= 3; ++step) {
    EXPECT_TRUE(s.WorkingTick());
    s.Paint();
    s.Paint();
    EXPECT_NEAR(s.bodies.EarthAngleDrawn(), ReducedAngle(end + 4 * step), 1e-9);
    EXPECT_NEAR(s.bodies.SatelliteDrawn().BodyAngle(), ReducedAngle(end + 5 * step), 1e-9);
  }
  s.scene->SetRedrawState(kFrozen);
  EXPECT_FALSE(s.WorkingTick());
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), ReducedAngle(end + 12), 1e-9);
  // The option that hides the Earth leaves nothing that turns.
  s.scene->SetRedrawState(kRunning);
  s.view.options.Check1[0] = 1;
  EXPECT_FALSE(s.WorkingTick());
}

TEST(EarthDrawing, AStandingPlotStandsStill) {
  EarthScene s;
  s.view.redrawFraction = 1;
  s.Start();
  const double end = EarthAngle(kReferenceDay + 4);
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), end, 1e-9);
  EXPECT_FALSE(s.WorkingTick());
  s.Paint();
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), end, 1e-9);
  // Another plot that stands at its end has the angle of its own time.
  for (int i = 0; i < 5; ++i) s.lists.PointList(0, i) += 0.5F;
  s.NewPlot();
  EXPECT_NEAR(s.bodies.EarthAngleDrawn(), EarthAngle(kReferenceDay + 4.5), 1e-9);
}

TEST(MoonDrawing, StandsAtItsPlaceTenTimesAsLarge) {
  EarthScene s;
  s.Start();
  ASSERT_EQ(s.Spheres().size(), 2U);
  Vec3 place = EquatorFromEcliptic(MoonOnEcliptic(s.bodies.Sky(), kReferenceDay + 2));
  for (double& part : place) part *= s.lists.FactorScale;
  const auto eye = s.Spheres()[1].InEye();
  const Vec3 expected = s.ToEye(place, 1);
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(eye[k], expected[k], 1e-6);
  EXPECT_NEAR(s.Spheres()[1].radius, 10 * 1740 * s.lists.FactorScale, 1e-9);
  EXPECT_TRUE(s.Spheres()[1].textured);
  s.view.options.MoonFactor = 1;
  s.Paint();
  EXPECT_NEAR(s.Spheres()[1].radius, 1740 * s.lists.FactorScale, 1e-9);
}

TEST(MoonDrawing, ItsPoleIsALineUnlessThereAreNoAxes) {
  EarthScene s;
  s.view.options.MoonFactor = 1;
  s.Start();
  const auto pole = [&]() -> std::optional<DrawnPrimitive> {
    for (const DrawnPrimitive& line : s.control.Recording().PrimitivesOf(GL_LINES)) {
      if (line.vertices.size() == 2) return line;
    }
    return std::nullopt;
  };
  auto line = pole();
  ASSERT_TRUE(line);
  const double half = 1738 * 3 * s.lists.FactorScale;
  EXPECT_NEAR(line->vertices[0].position.z, -half, 1e-6);
  EXPECT_NEAR(line->vertices[1].position.z, half, 1e-6);
  EXPECT_EQ(line->vertices[0].colour, (Rgba{1, 1, 0, 1}));
  EXPECT_EQ(line->state.lineWidth, 2);
  EXPECT_FALSE(line->state.On(GL_LIGHTING));
  s.view.options.Check1[1] = 1;
  s.Paint();
  EXPECT_EQ(pole()->vertices[0].colour, OptionColour(s.view.options.ColourOfAxis));
  s.view.options.Check1[3] = 1;
  s.Paint();
  EXPECT_FALSE(pole());
}

TEST(MoonDrawing, TheMoonAsCentralBody) {
  EarthScene s;
  s.lists.MoonView = true;
  s.Start();
  ASSERT_EQ(s.Spheres().size(), 1U);
  EXPECT_NEAR(s.Spheres()[0].radius, 1738 * s.lists.FactorScale, 1e-9);
  EXPECT_NEAR(s.TurnOf(s.Spheres()[0]), MoonViewAngle(kReferenceDay + 2), 1e-3);
  EXPECT_EQ(s.control.Recording().Textures().size(), 1U);
}

TEST(SunLight, StandsWhereTheSunIs) {
  EarthScene s;
  s.Start();
  const Vec3 sun = SunPlace(s.bodies.Sky(), kReferenceDay + 2);
  const auto calls = s.control.Recording().Calls();
  std::map<GLuint, std::array<double, 4>> light;
  for (const GlCall& call : calls) {
    if (call.operation == GlOperation::Light && call.names[0] == GL_LIGHT0) light[call.names[1]] = call.values;
  }
  const auto expect = [&](GLuint name, const std::array<double, 4>& value, double tolerance) {
    for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(light[name][k], value[k], tolerance) << name << " " << k;
  };
  expect(GL_AMBIENT, {0.2, 0.2, 0.4, 1}, 1e-6);
  expect(GL_DIFFUSE, {1, 1, 0.7, 1}, 1e-6);
  expect(GL_SPECULAR, {0.9, 0.9, 0.9, 1}, 1e-6);
  const double factor = s.lists.FactorScale;
  expect(GL_POSITION, {sun[0] * factor, sun[1] * factor, sun[2] * factor, 1}, 1e-6 * kSunDistanceKm * factor);
  const auto lines = s.control.Recording().PrimitivesOf(GL_LINE_STRIP);
  ASSERT_FALSE(lines.empty());
  const DrawnPrimitive& line = lines.back();
  EXPECT_EQ(line.vertices[1].colour, (Rgba{1, 1, 0, 0.6F}));
  EXPECT_EQ(line.state.lineWidth, 7);
  const double reach = 1.25 * 6378 / 150000000 * factor;
  EXPECT_NEAR(line.vertices[1].position.x, sun[0] * reach, 1e-6);
  EXPECT_NEAR(line.vertices[1].position.y, sun[1] * reach, 1e-6);
  EXPECT_NEAR(line.vertices[1].position.z, sun[2] * reach, 1e-6);
}

// The light comes before what it lights, the Earth before the Moon.
TEST(SunLight, ComesBeforeTheBodies) {
  EarthScene s;
  s.Start();
  std::vector<std::string> order;
  bool plotSeen = false;
  for (const GlCall& call : s.control.Recording().Calls()) {
    if (call.operation == GlOperation::CallList && call.names[0] == s.scene->Plot().PlotList()) plotSeen = true;
    if (!plotSeen) continue;
    if (call.operation == GlOperation::Light && call.names[1] == GL_POSITION) order.push_back("light");
    if (call.operation == GlOperation::Sphere) order.push_back(call.values[0] > 6 * kEarthRadiusKm ? "?" : "sphere");
  }
  EXPECT_EQ(order, (std::vector<std::string>{"light", "sphere", "sphere"}));
}

TEST(SunLight, OfAPlotWithoutAScaleIsMeasuredByTheScene) {
  EarthScene s;
  s.lists.EarthOn = false;
  s.lists.FactorScale = 1;
  s.view.options.SatelliteShown = 1;
  s.Start();
  EXPECT_TRUE(s.Spheres().empty());
  const auto lines = s.control.Recording().PrimitivesOf(GL_LINE_STRIP);
  ASSERT_FALSE(lines.empty());
  const Vertex& end = lines.back().vertices[1].position;
  EXPECT_NEAR(std::hypot(end.x, end.y, end.z) / static_cast<double>(s.scene->RRMAXAXES()), 1.25, 0.02);
}

TEST(OrbitBodiesTest, AnEmptyPlotIsNoTrouble) {
  EarthScene s;
  s.lists.Clear();
  s.lists.EarthOn = true;
  s.lists.FactorScale = 0.001;
  s.view.options.SatelliteShown = 1;
  s.view.animation = true;
  s.Start();
  EXPECT_FALSE(s.Spheres().empty());
  s.WorkingTick();
  s.Paint();
  // The plot that waits for its user stands before its first point.
  EarthScene waiting;
  waiting.Start();
  waiting.MoveTo(-1);
  EXPECT_EQ(waiting.Spheres().size(), 2U);
  EXPECT_TRUE(waiting.dialogs.boxes.empty());
}

}  // namespace
}  // namespace orv
