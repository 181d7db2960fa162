#include "view/class_gl.h"

#include <gmock/gmock.h>
#include <limits>

#include "support/recorded_scene.h"
#include "view/plot_texts.h"

namespace orv {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordedScene;
using ::testing::SizeIs;

constexpr double kNear = 1e-5;

void ExpectColour(const Rgba& colour, double red, double green, double blue) {
  EXPECT_NEAR(colour.red, red, 0.01);
  EXPECT_NEAR(colour.green, green, 0.01);
  EXPECT_NEAR(colour.blue, blue, 0.01);
}

std::array<double, 4> LightValue(const RecordingGl& gl, GLenum name) {
  std::array<double, 4> value{};
  for (const GlCall& call : gl.Calls()) {
    if (call.operation == GlOperation::Light && call.names[0] == GL_LIGHT0 && call.names[1] == name) {
      value = call.values;
    }
  }
  return value;
}

std::array<double, 4> MaterialValue(const RecordingGl& gl, GLenum name) {
  for (const GlCall& call : gl.Calls()) {
    if (call.operation == GlOperation::Material && call.names[0] == GL_FRONT && call.names[1] == name) {
      return call.values;
    }
  }
  return {};
}

// The start.

TEST(ClassGl, InitGLSetsTheStateOfTheScene) {
  RecordedScene s;
  s.control.Attach(*s.scene);
  const RecordingGl& gl = s.control.Recording();
  const DrawingState& state = gl.State();
  EXPECT_TRUE(s.control.DoubleBuffered());
  EXPECT_EQ(state.clearColour, (Rgba{10 / 256.0F, 20 / 256.0F, 70 / 256.0F, 1}));
  EXPECT_FALSE(state.On(GL_LIGHTING));
  EXPECT_TRUE(state.On(GL_DEPTH_TEST));
  EXPECT_TRUE(state.On(GL_COLOR_MATERIAL));
  EXPECT_TRUE(state.On(GL_LIGHT0));
  EXPECT_EQ(state.shadeModel, GLenum{GL_FLAT});
  EXPECT_EQ(gl.Count(GlOperation::ColorMaterial), 1U);
  EXPECT_GT(s.control.PickDepth(), 0);
  EXPECT_THAT(gl.Errors(), IsEmpty());
}

TEST(ClassGl, InitGLSetsLightAndMaterial) {
  RecordedScene s;
  s.control.Attach(*s.scene);
  const RecordingGl& gl = s.control.Recording();
  EXPECT_THAT(LightValue(gl, GL_AMBIENT), ElementsAre(0, 1, 1, 1));
  EXPECT_THAT(LightValue(gl, GL_DIFFUSE), ElementsAre(1, 0, 1, 1));
  EXPECT_THAT(LightValue(gl, GL_SPECULAR), ElementsAre(1, 1, 0, 1));
  EXPECT_THAT(LightValue(gl, GL_POSITION), ElementsAre(10, 30, 150, 1));
  const auto grey = MaterialValue(gl, GL_AMBIENT);
  EXPECT_NEAR(grey[0], 0.1, kNear);
  EXPECT_NEAR(grey[2], 0.1, kNear);
  const auto diffuse = MaterialValue(gl, GL_DIFFUSE);
  EXPECT_NEAR(diffuse[0], 0.3, kNear);
  EXPECT_NEAR(diffuse[2], 0.7, kNear);
  EXPECT_NEAR(MaterialValue(gl, GL_SPECULAR)[1], 0.6, kNear);
  EXPECT_EQ(MaterialValue(gl, GL_SHININESS)[0], 60);
}

TEST(ClassGl, InitGLPlacesTheCamera) {
  RecordedScene s;
  s.control.Attach(*s.scene);
  const Camera& camera = s.control.Camera();
  EXPECT_EQ(camera.Up(), (Vec3{0, 1, 0}));
  EXPECT_EQ(camera.LookAt(), (Vec3{0, 0, 0}));
  EXPECT_EQ(camera.Position(), (Vec3{10, 10, 10}));
  EXPECT_EQ(camera.FieldAngle(), 180);
  EXPECT_EQ(camera.Projection(), kOrthographic);
  EXPECT_EQ(camera.Window(), (OrthoWindow{-10, 10, -10, 10}));
  EXPECT_EQ(std::min(camera.NearPlane(), camera.FarPlane()), -10000);
  EXPECT_EQ(std::max(camera.NearPlane(), camera.FarPlane()), 10000);
}

TEST(ClassGl, InitGLAsksForFourFonts) {
  RecordedScene s;
  s.control.Attach(*s.scene);
  ASSERT_THAT(s.control.fonts, SizeIs(4));
  EXPECT_EQ(s.control.fonts[0].name, "Comic Sans MS");
  EXPECT_EQ(s.control.fonts[0].size, 10);
  const double sizes[] = {10, 9, 6, 14};
  for (std::size_t font = 1; font < 4; ++font) {
    EXPECT_EQ(s.control.fonts[font].name, "Arial");
    EXPECT_EQ(s.control.fonts[font].size, sizes[font]);
    EXPECT_EQ(s.control.fonts[font].bold, font == 3);
  }
}

TEST(ClassGl, ReshapePassesTheSizeToTheCamera) {
  RecordedScene s;
  s.Start();
  int result = 0;
  s.scene->Reshape(300, 200, result);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(s.control.Camera().Width(), 300);
  EXPECT_EQ(s.control.Camera().Height(), 200);
}

// A paint.

TEST(ClassGl, DrawsLabelsThenAxesThenThePlotThenItsTexts) {
  RecordedScene s;
  s.AddPoint(36526.5, 0, 0, 0);
  s.AddPoint(36527.5, 10, 0, 0);
  s.lists.TimePlot = true;
  s.lists.Title = "Orbit";
  s.Start();
  s.Paint();
  const RecordingGl& gl = s.control.Recording();
  std::size_t depthCleared = 0;
  std::size_t axes = 0;
  std::size_t plot = 0;
  const auto& calls = gl.Calls();
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i].operation == GlOperation::Clear && calls[i].names[0] == GL_DEPTH_BUFFER_BIT) depthCleared = i;
    if (calls[i].operation != GlOperation::CallList) continue;
    (calls[i].names[0] == s.scene->Plot().PlotList() ? plot : axes) = i;
  }
  ASSERT_GT(depthCleared, 0U);
  EXPECT_LT(depthCleared, axes);
  EXPECT_LT(axes, plot);
  std::size_t labels = 0;
  std::size_t texts = 0;
  for (const auto& place : s.control.places) {
    if (place.text == "X " || place.text == "Orbit") {
      ++labels;
      if (place.text == "X ") {
        EXPECT_LE(place.callsBefore, depthCleared);
      }
    } else if (place.text.find("2000") != std::string::npos) {
      ++texts;
      EXPECT_GT(place.callsBefore, plot);
    }
  }
  EXPECT_EQ(labels, 3U);  // a letter, the logo and the title of the legend
  EXPECT_EQ(texts, 2U);
}

TEST(ClassGl, TheSceneIsDrawnWithoutLightAndBlended) {
  RecordedScene s;
  FillSheet(s.lists, 3, 3);
  s.Start();
  s.Paint();
  ASSERT_FALSE(s.control.Recording().Primitives().empty());
  for (const DrawnPrimitive& drawn : s.control.Recording().Primitives()) {
    EXPECT_FALSE(drawn.state.On(GL_LIGHTING));
    EXPECT_TRUE(drawn.state.On(GL_BLEND));
    EXPECT_EQ(drawn.state.blend, (std::array<GLenum, 2>{GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
  }
}

class CountedBodies : public SceneBodies {
 public:
  void DrawSatellite(ClassGl& scene) override { Note(scene, "satellite"); }
  void SetSunLight(ClassGl& scene) override { Note(scene, "sun"); }
  void DrawEarth(ClassGl& scene) override { Note(scene, "earth"); }
  void DrawMoon(ClassGl& scene) override { Note(scene, "moon"); }
  std::vector<std::string> names;
  std::vector<bool> plotDrawn;

 private:
  void Note(ClassGl& scene, const std::string& name) {
    names.push_back(name);
    bool drawn = false;
    for (const GlCall& call : dynamic_cast<RecordingControl&>(scene.Control()).Recording().Calls()) {
      drawn = drawn || (call.operation == GlOperation::CallList && call.names[0] == scene.Plot().PlotList());
    }
    plotDrawn.push_back(drawn);
  }
};

TEST(ClassGl, BodiesStandBeforeAndBehindThePlot) {
  CountedBodies bodies;
  RecordedScene s({}, &bodies);
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 10, 0, 0);
  s.AddTrace(0, 1, 0, 0);
  s.lists.EarthOn = true;
  s.Start();
  bodies = {};
  s.Paint();
  EXPECT_THAT(bodies.names, ElementsAre("satellite", "sun", "earth", "moon"));
  EXPECT_THAT(bodies.plotDrawn, ElementsAre(false, true, true, true));
  bodies = {};
  s.view.options.Check1[0] = 1;  // no Earth
  s.Paint();
  EXPECT_THAT(bodies.names, ElementsAre("satellite"));
}

TEST(ClassGl, TheSatelliteNeedsAnAttitudeOrItsOption) {
  CountedBodies bodies;
  RecordedScene s({}, &bodies);
  s.AddSquare(0, 1);
  s.AddSquare(1, 2);
  s.Start();
  EXPECT_THAT(bodies.names, IsEmpty()) << "outlines are no attitude";
  s.view.options.SatelliteShown = 1;
  s.Paint();
  EXPECT_THAT(bodies.names, ElementsAre("satellite", "sun"));
}

// The first paint.

TEST(ClassGl, TheFirstPaintWithoutAPlotReadsTheSampleOnce) {
  int loads = 0;
  RecordedScene s([&](PointLists&) {
    ++loads;
    return false;
  });
  s.Start();
  s.Paint();
  s.lists.PlotLoaded = 0;
  s.Paint();
  EXPECT_EQ(loads, 1);
  EXPECT_EQ(s.scene->RRMAXAXES(), 10);
  const auto lines = s.control.Recording().PrimitivesOf(GL_LINES);
  ASSERT_THAT(lines, SizeIs(1)) << "the axes stand there alone";
  EXPECT_THAT(lines[0].vertices, SizeIs(6));
  EXPECT_THAT(s.dialogs.boxes, IsEmpty());
}

TEST(ClassGl, TheSampleIsDrawn) {
  RecordedScene s([&](PointLists& lists) {
    FillCurve(lists, 20);
    return true;
  });
  s.Start();
  EXPECT_EQ(s.lists.NumberPoints, 19);
  EXPECT_EQ(s.scene->CURRINDEXI(), 19);
  EXPECT_FALSE(s.Drawn(GL_LINE_STRIP).empty());
}

TEST(ClassGl, APlotInPlaceNeedsNoSample) {
  int loads = 0;
  RecordedScene s([&](PointLists&) {
    ++loads;
    return true;
  });
  FillSheet(s.lists, 2, 2);
  s.Start();
  EXPECT_EQ(loads, 0);
}

TEST(ClassGl, DrawTakesAPlotOver) {
  RecordedScene s;
  FillSheet(s.lists, 8, 6);
  s.Start();
  EXPECT_EQ(s.lists.PlotLoaded, 1);
  EXPECT_EQ(s.lists.PlotNormalised, 1);
  EXPECT_EQ(s.lists.KeepScale, 2);
  EXPECT_EQ(s.scene->RRMAXAXES(), 10);
  EXPECT_FLOAT_EQ(s.scene->Scale().InverseScale, 0.1F);
  EXPECT_EQ(s.control.SceneRange(), 10);
  EXPECT_EQ(s.control.Camera().Window(), (OrthoWindow{-10, 10, -10, 10}));
  const auto light = LightValue(s.control.Recording(), GL_POSITION);
  EXPECT_NEAR(light[0], 1, kNear);
  EXPECT_NEAR(light[1], 3, kNear);
  EXPECT_NEAR(light[2], 15, kNear);
}

TEST(ClassGl, AFreePlotSetsTheRangeToItsRadius) {
  RecordedScene s;
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 3, 4, 5);  // each axis is stretched to 10
  s.Start();
  EXPECT_NEAR(s.scene->RRMAXAXES(), std::sqrt(300.0), 1e-4);
  EXPECT_NEAR(s.control.SceneRange(), std::sqrt(300.0), 1e-4);
}

TEST(ClassGl, AReplotKeepsTheScaleOfTheFullRun) {
  RecordedScene s;
  s.AddSquare(0, 0);
  s.AddSquare(1, 4);
  s.Start();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 1), 10);
  s.lists.Clear();
  s.AddSquare(0, 0);
  s.AddSquare(1, 2);
  s.lists.KeepScale = 1;
  s.NewPlot();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 1), 5);
  EXPECT_EQ(s.lists.KeepScale, 2);
  s.lists.Clear();
  s.AddSquare(0, 0);
  s.AddSquare(1, 2);
  s.lists.KeepScale = 0;
  s.NewPlot();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 1), 10);
}

TEST(ClassGl, AResetWithoutANewPlotScalesNothing) {
  RecordedScene s;
  s.AddSquare(0, 0);
  s.AddSquare(1, 4);
  s.Start();
  const float corner = s.lists.TraceList(0, 7);
  for (int repeat = 0; repeat < 3; ++repeat) {
    s.scene->Reset();
    s.Paint();
  }
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 1), 10);
  EXPECT_EQ(s.lists.TraceList(0, 7), corner);
  EXPECT_EQ(s.lists.TraceCount, 11);
}

// The first views.

TEST(ClassGl, TheNoticeSetsTheCameraOnceAndOnceMoreForAPlot) {
  RecordedScene s;
  s.Start();
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 1);
  const Vec3 position = s.control.Camera().Position();
  EXPECT_NEAR(std::abs(position[1]), 100, 1e-9) << "axis 2 is taken while none is stored";
  EXPECT_GT(s.control.RedrawRequests(), 0);
  FillSheet(s.lists, 3, 3);
  s.NewPlot();
  s.Paint();
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 2) << "once more with the keep-scale flag at 2";
  FillSheet(s.lists, 4, 4);
  s.NewPlot();
  s.Paint();
  s.Paint();
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 2) << "and then no more";
}

TEST(ClassGl, TheNoticeWaitsForAnAwaitedPlot) {
  RecordedScene s;
  s.lists.FirstDraw = 1;
  s.Start();
  EXPECT_EQ(s.control.Camera().Position(), (Vec3{10, 10, 10}));
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 0);
  s.lists.FirstDraw = 0;
  s.Paint();
  EXPECT_NE(s.control.Camera().Position(), (Vec3{10, 10, 10}));
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 1);
}

TEST(ClassGl, AFrozenViewKeepsItsStep) {
  RecordedScene s;
  s.view.frozen = true;
  s.Start();
  EXPECT_EQ(s.scene->Cameras().ViewStep(), 0);
}

// Labels.

TEST(ClassGl, LogoAndLettersStandAtTheirDistances) {
  RecordedScene s;
  FillSheet(s.lists, 4, 4);
  s.view.options.LengthAxisFactor = 1.2;
  s.view.options.PositionFactor = 0.5;
  s.Start();
  s.Paint();
  const SceneText* x = s.TextOf("X ");
  ASSERT_NE(x, nullptr);
  EXPECT_NEAR(x->x, 2.34, kNear);  // 10 * 1.2 * 0.65 * 0.5 * 0.6
  EXPECT_EQ(x->y, 0);
  EXPECT_EQ(x->fontName, "Arial");
  ExpectColour(x->colour, 40 / 255.0, 80 / 255.0, 120 / 255.0);
  ASSERT_NE(s.TextOf("Y "), nullptr);
  EXPECT_NEAR(s.TextOf("Y ")->y, 2.34, kNear);
  ASSERT_NE(s.TextOf("Z "), nullptr);
  EXPECT_NEAR(s.TextOf("Z ")->z, 2.34, kNear);
  ASSERT_FALSE(s.control.SceneTexts().empty());
  const SceneText& logo = s.control.SceneTexts().front();
  EXPECT_EQ(logo.fontName, "Comic Sans MS");
  EXPECT_NEAR(logo.x, 7.8, kNear);  // 10 * 1.2 * 0.65
  EXPECT_EQ(logo.size, 1);
  ExpectColour(logo.colour, 170 / 255.0, 85 / 255.0, 1);
}

TEST(ClassGl, OptionsOfZeroTakeTheirDefaults) {
  RecordedScene s;
  FillSheet(s.lists, 4, 4);
  s.view.options.LengthAxisFactor = 0;
  s.view.options.PositionFactor = 0;
  s.view.options.ThicknessLineAxis = 0;
  s.view.options.ThicknessLinePlot = 0;
  s.view.SidesMode = kDotsAndBorders;
  s.Start();
  s.Paint();
  ASSERT_NE(s.TextOf("X "), nullptr);
  EXPECT_NEAR(s.TextOf("X ")->x, 3.9, kNear);  // 10 * 0.65 * 0.6
  for (const DrawnPrimitive& drawn : s.control.Recording().PrimitivesOf(GL_LINES)) {
    EXPECT_FLOAT_EQ(drawn.state.lineWidth, 0.1F);
  }
  const auto dots = s.Drawn(GL_POINTS);
  ASSERT_THAT(dots, SizeIs(1));
  EXPECT_FLOAT_EQ(dots[0].state.pointSize, 0.1F);
}

TEST(ClassGl, EachBoxTakesItsLabelAway) {
  RecordedScene s;
  s.AddPoint(36526.5, 0, 0, 0);
  s.AddPoint(36527.5, 10, 0, 0);
  s.lists.TimePlot = true;
  s.lists.EarthOn = true;
  s.lists.Title = "Orbit";
  s.Start();
  struct Seen {
    bool vernal, logo, letters, large, origin, date, axes;
    bool operator==(const Seen&) const = default;
  };
  const FontHandle large = s.control.fonts[3].handle;
  const auto look = [&](std::size_t box) {
    s.view.options.Check1 = {};
    if (box < s.view.options.Check1.size()) s.view.options.Check1[box] = 1;
    s.Paint();
    Seen seen{};
    for (const SceneText& text : s.control.SceneTexts()) {
      if (text.text == "VernaL") seen.vernal = true;
      if (text.fontName == "Comic Sans MS") seen.logo = true;
      if (text.text == "Y ") seen.letters = true;
      if (text.text == "Y " && text.font == large) seen.large = true;
      if (text.text.find(" , ") != std::string::npos) seen.origin = true;
      if (text.text.find("2000") != std::string::npos) seen.date = true;
    }
    seen.axes = !s.control.Recording().PrimitivesOf(GL_LINES).empty();
    return seen;
  };
  EXPECT_EQ(look(99), (Seen{true, true, true, false, true, true, true}));
  EXPECT_EQ(look(0), (Seen{false, true, true, false, true, true, true}));
  EXPECT_EQ(look(1), (Seen{false, true, true, false, true, true, true}));
  EXPECT_EQ(look(2), (Seen{true, true, true, true, true, true, true}));
  EXPECT_EQ(look(3), (Seen{true, true, false, false, true, true, false}));
  EXPECT_EQ(look(4), (Seen{true, false, true, false, true, true, true}));
  EXPECT_EQ(look(5), (Seen{true, true, true, false, false, true, true}));
  EXPECT_EQ(look(6), (Seen{true, true, true, false, true, false, true}));
}

TEST(ClassGl, TheVernalDirectionIsOnTheScaleOfThePlot) {
  RecordedScene s;
  s.lists.FactorScale = 0.001;
  s.AddPoint(0, 0, 0, 20);
  s.AddPoint(1, 40, 0, 0);
  s.lists.EarthOn = true;
  s.Start();
  s.Paint();
  const SceneText* vernal = s.TextOf("VernaL");
  ASSERT_NE(vernal, nullptr);
  EXPECT_NEAR(vernal->x, 0.001 * 6978.137 * 10 / 40, 1e-4);
  EXPECT_EQ(vernal->y, 0);
  EXPECT_EQ(vernal->size, 3);
  ExpectColour(vernal->colour, 170 / 255.0, 85 / 255.0, 1);
  s.lists.EarthOn = false;
  s.Paint();
  EXPECT_EQ(s.TextOf("VernaL"), nullptr);
}

TEST(ClassGl, AnAnalysisPlotShowsNoVernalDirection) {
  RecordedScene s;
  FillSheet(s.lists, 3, 3);  // with the factor 1.01
  s.Start();
  s.Paint();
  EXPECT_EQ(s.TextOf("VernaL"), nullptr);
}

TEST(ClassGl, MaravoSetsTheLabelFontOnce) {
  RecordedScene s;
  FillSheet(s.lists, 3, 3);
  s.lists.MaravoFactor = 2;
  s.Start();
  s.Paint();
  s.Paint();
  ASSERT_THAT(s.control.fonts, SizeIs(5));
  EXPECT_EQ(s.control.fonts[4].name, "Arial");
  EXPECT_EQ(s.control.fonts[4].size, 26);
  ASSERT_NE(s.TextOf("X "), nullptr);
  EXPECT_EQ(s.TextOf("X ")->font, s.control.fonts[4].handle);
}

TEST(ClassGl, OtherDottedPlotsSetLargerDots) {
  RecordedScene s;
  s.AddSquare(0, 0);
  s.AddSquare(1, 4);
  s.view.options.ThicknessLinePlot = 2;
  const auto widest = [&](const std::string& title) {
    s.lists.Title = title;
    s.Paint();
    double size = 0;
    for (const GlCall& call : s.control.Recording().Calls()) {
      if (call.operation == GlOperation::CallList && call.names[0] == s.scene->Plot().PlotList()) break;
      if (call.operation == GlOperation::PointSize) size = call.values[0];
    }
    return size;
  };
  s.Start();
  EXPECT_EQ(widest("OrvValis  M13"), 2);
  EXPECT_EQ(widest("Cloud"), 30);
}

TEST(ClassGl, TheGridComesWithItsOption) {
  RecordedScene s;
  s.Start();
  s.Paint();
  const std::size_t plain = s.control.Recording().PrimitivesOf(GL_LINES).size();
  s.view.grid = true;
  s.Paint();
  EXPECT_EQ(s.control.Recording().PrimitivesOf(GL_LINES).size(), plain + 1);
}

TEST(ClassGl, ANewBackgroundFillsThePictureThatShowsItFirst) {
  RecordedScene s;
  s.AddSquare(0, 0);
  s.Start();
  s.Paint();
  const auto clears = [&] {
    std::vector<std::size_t> places;
    const std::vector<GlCall>& calls = s.control.Recording().Calls();
    for (std::size_t k = 0; k < calls.size(); ++k) {
      if (calls[k].operation == GlOperation::Clear && (calls[k].names[0] & GL_COLOR_BUFFER_BIT) != 0) {
        places.push_back(k);
      }
    }
    return places;
  };
  EXPECT_THAT(clears(), SizeIs(1)) << "the control alone";
  s.view.options.ColourOfBackGround = {255, 128, 0};
  s.Paint();
  ASSERT_THAT(clears(), SizeIs(2));
  const GlCall& colour = s.control.Recording().Calls()[clears()[1] - 1];
  EXPECT_EQ(colour.operation, GlOperation::ClearColor);
  EXPECT_THAT(colour.values, ElementsAre(255 / 256.0, 0.5, 0, 1));
  EXPECT_LT(clears()[1], s.control.places.front().callsBefore) << "before anything is drawn";
  EXPECT_EQ(s.control.RedrawRequests(), 0) << "no second paint";
  s.Paint();
  EXPECT_THAT(clears(), SizeIs(1));
}

// Texts of a plot.

TEST(ClassGl, TheDateStandsInTheCornerAndAtTheMovingPoint) {
  RecordedScene s;
  s.AddPoint(36526.5, 0, 0, 0);
  s.AddPoint(36527.5, 5, 0, 0);
  s.AddPoint(36528.5, 10, 0, 0);
  s.lists.TimePlot = true;
  s.lists.Title = "Orbit of a test";
  s.Start();
  int previous = 0;
  s.scene->ChangeCURRINDEXI(1, previous);
  s.Paint();
  const std::string date = "Orbit 02  Jan 2000 12:00 ";
  EXPECT_TRUE(s.control.HasOverlayText(date));
  const SceneText* moving = s.TextOf(date);
  ASSERT_NE(moving, nullptr);
  EXPECT_NEAR(moving->x, 5, kNear);
  s.scene->ChangeCURRINDEXI(0, previous);
  s.Paint();
  for (const OverlayText& text : s.control.OverlayTexts()) EXPECT_EQ(text.text.find("2000"), std::string::npos);
  s.scene->ChangeCURRINDEXI(1, previous);
  s.lists.TimePlot = false;
  s.Paint();
  EXPECT_FALSE(s.control.HasOverlayText(date));
}

TEST(ClassGl, TheLegendEndsAboveTheTextsInTheCorner) {
  RecordedScene s;
  s.AddPoint(36526.5, 0, 0, 0);
  s.AddPoint(36527.5, 5, 0, 0);
  s.lists.TimePlot = true;
  s.lists.ValueCount = 1;
  s.Start();
  int previous = 0;
  s.scene->ChangeCURRINDEXI(1, previous);
  s.Paint();
  const double corner = s.control.Height() / s.control.DeviceRatio() - CornerTextHeight(s.lists, s.view);
  EXPECT_EQ(CornerTextHeight(s.lists, s.view), 36);
  double lowest = 0;
  for (const OverlaySquare& square : s.control.OverlaySquares()) {
    lowest = std::max(lowest, square.line + square.height);
  }
  EXPECT_GT(lowest, corner / 2);
  EXPECT_LE(lowest, corner);
}

TEST(ClassGl, TheOriginIsTenCharactersANumber) {
  RecordedScene s;
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 10, 0, 0);
  s.Start();
  s.Paint();
  const SceneText* origin = nullptr;
  for (const SceneText& text : s.control.SceneTexts()) {
    if (text.text.find(" , ") != std::string::npos) origin = &text;
  }
  ASSERT_NE(origin, nullptr);
  EXPECT_EQ(origin->text.size(), 39U);  // three times ten and " , "
  EXPECT_EQ(origin->colour, OptionColour(s.view.options.ColourOfAxisLabels));
  for (std::size_t number = 0; number < 3; ++number) {
    EXPECT_EQ(std::stod(origin->text.substr(13 * number, 10)), 0);
    EXPECT_EQ(origin->text.substr(13 * number + 10, 3), " , ");
  }
  EXPECT_EQ(origin->x, 0);
  EXPECT_EQ(origin->y, 0);
  EXPECT_EQ(origin->z, 0);
}

TEST(ClassGl, AFixedScaleHasNoOriginLabel) {
  RecordedScene s;
  FillSheet(s.lists, 3, 3);
  s.Start();
  s.Paint();
  for (const SceneText& text : s.control.SceneTexts()) EXPECT_EQ(text.text.find(" , "), std::string::npos);
}

TEST(ClassGl, TheValueLineTellsTheValueAtTheMovingPoint) {
  RecordedScene s;
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(0.5, 5, 0, 0);
  s.AddPoint(1, 10, 0, 0);
  s.AddPoint(2, 10, 0, 0);
  s.AddValue(0, 0);
  s.AddValue(1, 4);
  s.lists.ValueAxis = 2;
  s.Start();
  int previous = 0;
  s.scene->ChangeCURRINDEXI(1, previous);
  s.Paint();
  EXPECT_TRUE(s.control.HasOverlayText("Value : 2  limits: 0 to 4"));
  s.scene->ChangeCURRINDEXI(0, previous);
  s.Paint();
  EXPECT_TRUE(s.control.HasOverlayText("Value : 0  limits: 0 to 4")) << "also at the start of the plot";
  s.scene->ChangeCURRINDEXI(3, previous);  // no value at this time
  s.Paint();
  for (const OverlayText& text : s.control.OverlayTexts()) EXPECT_FALSE(text.text.starts_with("Value"));
  s.scene->ChangeCURRINDEXI(1, previous);
  s.view.options.Check1[6] = 1;
  s.Paint();
  for (const OverlayText& text : s.control.OverlayTexts()) EXPECT_FALSE(text.text.starts_with("Value"));
}

// Failures.

struct FailingScene : RecordedScene {
  FailingScene() {
    AddPoint(36526.5, 0, 0, 0);
    AddPoint(36527.5, 10, 0, 0);
    lists.TimePlot = true;
    lists.Title = "Orbit";
    Start();
    control.failingText = "Orbit ";
  }
};

TEST(ClassGl, AFailureInDrawingIsTold) {
  FailingScene s;
  s.Paint();
  ASSERT_THAT(s.dialogs.boxes, SizeIs(2));
  EXPECT_EQ(s.dialogs.boxes[0].title, "Error D B L");
  EXPECT_EQ(s.dialogs.boxes[0].text, Describe(FailureNumber::DivisionByZero));
  EXPECT_EQ(s.dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_EQ(s.dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  s.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(s.control.PaintAnew(*s.scene), ProgramEnd);
}

// A body that fails leaves neither the program nor a matrix behind.
TEST(ClassGl, AFailureOfABodyIsToldToo) {
  struct FailingBodies : SceneBodies {
    void DrawSatellite(ClassGl&) override { fail("satellite"); }
    void SetSunLight(ClassGl&) override { fail("sun"); }
    void DrawEarth(ClassGl&) override { fail("earth"); }
    void DrawMoon(ClassGl&) override { fail("moon"); }
    std::function<void(const std::string&)> fail = [](const std::string&) {};
  } bodies;
  RecordedScene s({}, &bodies);
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 10, 0, 0);
  s.AddTrace(0, 1, 0, 0);
  s.lists.EarthOn = true;
  s.Start();
  for (const std::string failing : {"satellite", "sun", "earth", "moon"}) {
    SCOPED_TRACE(failing);
    bodies.fail = [&](const std::string& name) {
      if (name == failing) Raise(FailureNumber::DivisionByZero);
    };
    s.dialogs.boxes.clear();
    s.control.PaintAnew(*s.scene);
    ASSERT_THAT(s.dialogs.boxes, SizeIs(2));
    EXPECT_EQ(s.dialogs.boxes[0].title, "Error D B L");
    long open = 0;
    for (const GlCall& call : s.control.Recording().Calls()) {
      if (call.operation == GlOperation::PushMatrix) ++open;
      if (call.operation == GlOperation::PopMatrix) --open;
    }
    EXPECT_EQ(open, 0);
  }
}

TEST(ClassGl, FailuresOfListsInTheMakingAreSilent) {
  FailingScene s;
  for (const FailureNumber number :
       {FailureNumber::FileNotFound, FailureNumber::BadFileName, FailureNumber::InvalidProcedureCall,
        FailureNumber::PathFileAccessError, FailureNumber::SubscriptOutOfRange, FailureNumber::Overflow,
        static_cast<FailureNumber>(94)}) {
    s.control.failure = number;
    s.Paint();
    EXPECT_THAT(s.dialogs.boxes, IsEmpty()) << static_cast<int>(number);
  }
}

TEST(ClassGl, APlotAtTheOriginLeavesAValidView) {
  RecordedScene s;
  s.lists.FactorScale = 1.01;
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 0, 0, 0);
  s.Start();
  EXPECT_EQ(s.scene->RRMAXAXES(), 10);
  EXPECT_EQ(s.control.SceneRange(), 10);
}

}  // namespace
}  // namespace orv
