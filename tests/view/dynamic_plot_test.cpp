#include "view/dynamic_plot.h"

#include <gmock/gmock.h>

#include "support/recorded_scene.h"

// What the list of a plot draws.
namespace orv {
namespace {

using testing::Bytes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordedScene;
using ::testing::SizeIs;
using ByteArray = std::array<int, 4>;

// The first rebuild draws from the last entry to the first.
const ByteArray kNominal{0, 254, 0, 153};  // 255 / 256 with alpha 0.6
const ByteArray kInEvent{254, 0, 0, 153};

std::vector<double> Xs(const DrawnPrimitive& drawn) {
  std::vector<double> xs;
  for (const DrawnVertex& vertex : drawn.vertices) xs.push_back(vertex.position.x);
  return xs;
}

std::vector<ByteArray> Colours(const DrawnPrimitive& drawn) {
  std::vector<ByteArray> colours;
  for (const DrawnVertex& vertex : drawn.vertices) colours.push_back(Bytes(vertex.colour));
  return colours;
}

// Points along x from 0 to 10 with times 0 .. 1; the scale leaves them as they are and the radius is 10.
struct Trace : RecordedScene {
  explicit Trace(int points = 3) {
    for (int i = 0; i < points; ++i) {
      const double share = static_cast<double>(i) / (points - 1);
      AddPoint(share, 10 * share, 0, 0);
    }
  }
};

struct Squares : RecordedScene {
  explicit Squares(int sidesMode, int count = 3) {
    view.SidesMode = sidesMode;
    for (int i = 0; i < count; ++i) AddSquare(i, 2 * i);
  }
  // The area of a unit square in the scene.
  double Area() const { return std::pow(10.0 / (2 * lists.NumberPoints), 2); }
};

// Areas of the triangles as seen from +z: those that face it and those that face away.
struct Areas {
  double towards = 0;
  double away = 0;
};
Areas AreasOf(const std::vector<DrawnPrimitive>& triangles) {
  Areas areas;
  for (const DrawnPrimitive& drawn : triangles) {
    for (std::size_t i = 0; i + 2 < drawn.vertices.size(); i += 3) {
      const Vertex& a = drawn.vertices[i].position;
      const Vertex& b = drawn.vertices[i + 1].position;
      const Vertex& c = drawn.vertices[i + 2].position;
      const double area =
          0.5 * (static_cast<double>(b.x - a.x) * (c.y - a.y) - static_cast<double>(b.y - a.y) * (c.x - a.x));
      (area > 0 ? areas.towards : areas.away) += std::abs(area);
    }
  }
  return areas;
}

// Rebuilds.

TEST(DynamicPlot, AnUnchangedPaintIsOneCallOfTheList) {
  RecordedScene s;
  FillSheet(s.lists, 60, 50);
  s.Start();
  s.Paint();
  const long rebuilds = s.scene->Plot().Rebuilds();
  const GLuint list = s.scene->Plot().PlotList();
  s.Paint();
  const RecordingGl& gl = s.control.Recording();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds);
  EXPECT_EQ(s.scene->Plot().PlotList(), list);
  EXPECT_EQ(gl.Count(GlOperation::NewList), 0U);
  EXPECT_EQ(gl.Count(GlOperation::DrawVertices), 0U);
  EXPECT_EQ(gl.Count(GlOperation::Begin), 0U);
  EXPECT_EQ(gl.Count(GlOperation::DeleteLists), 0U);
  EXPECT_EQ(s.CallsOf(list), 1U);
  EXPECT_EQ(gl.Count(GlOperation::CallList), 2U) << "the axes and the plot";
  EXPECT_FALSE(gl.Primitives().empty());
}

struct Change {
  const char* what;
  void (*make)(RecordedScene&);
};

class StalePlot : public ::testing::TestWithParam<Change> {};

TEST_P(StalePlot, IsRebuiltOnce) {
  RecordedScene s;
  FillSheet(s.lists, 4, 3);
  const int outlines = s.lists.TraceCount;
  s.AddTrace(0, 0, 1, 0);
  s.AddTrace(0, 1, 1, 0);
  s.lists.TraceCount = s.lists.TraceMax = outlines;
  s.lists.VectorCount = 2;
  AutoRotation& rotation = s.lists.rotation;
  rotation.present = true;
  rotation.frames = 2;
  rotation.hasValues = true;
  rotation.main.start = 3;
  rotation.main.count = 2;
  rotation.values = {{0.1F, 0.2F}, {0.3F, 0.4F}, {0.5F, 0.6F}};
  rotation.minimum = {0, 0, 0};
  rotation.maximum = {1, 1, 1};
  s.view.AutoRotMode = 1;
  s.view.AutoRotPeriod = 5;
  s.Start();
  s.Paint();
  s.Paint();
  const long rebuilds = s.scene->Plot().Rebuilds();
  GetParam().make(s);
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds + 1);
  EXPECT_EQ(s.CallsOf(s.scene->Plot().PlotList()), 1U);
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds + 1) << "and then stands still";
}

void MoveEnd(RecordedScene& s) {
  int previous = 0;
  s.scene->ChangeCURRINDEXI(5, previous);
}
void MoveStart(RecordedScene& s) {
  int previous = 0;
  s.scene->ChangeCURRINDEXMINI(2, previous);
}

void ResetAnew(RecordedScene& s) {
  s.lists.PlotNormalised = 0;
  s.scene->Reset();
}

INSTANTIATE_TEST_SUITE_P(
    By, StalePlot,
    ::testing::Values(Change{"CURRINDEXI", MoveEnd}, Change{"CURRINDEXMINI", MoveStart},
                      Change{"TraceMin", [](RecordedScene& s) { s.lists.TraceMin = 7; }},
                      Change{"TraceMax", [](RecordedScene& s) { s.lists.TraceMax = 30; }},
                      Change{"ColorStyle", [](RecordedScene& s) { s.view.ColorStyle = 4; }},
                      Change{"ScaleMode", [](RecordedScene& s) { s.view.ScaleMode = 3; }},
                      Change{"SidesMode", [](RecordedScene& s) { s.view.SidesMode = 3; }},
                      Change{"AColour",
                             [](RecordedScene& s) {
                               s.view.options.ColourOfPlotNominal = {1, 2, 3};
                             }},
                      Change{"AThickness", [](RecordedScene& s) { s.view.options.ThicknessLinePlot = 3; }},
                      Change{"ABox", [](RecordedScene& s) { s.view.options.Check1[0] = 1; }},
                      Change{"ValueColours", [](RecordedScene& s) { s.view.valueColours = true; }},
                      Change{"Vectors", [](RecordedScene& s) { s.scene->ShowVectors(true); }},
                      Change{"ANewPlot", [](RecordedScene& s) { s.lists.PlotLoaded = 0; }}, Change{"Reset", ResetAnew},
                      Change{"AFrameOfATurn", [](RecordedScene& s) { s.clock.now += 6; }}),
    [](const ::testing::TestParamInfo<Change>& change) { return change.param.what; });

TEST(DynamicPlot, AFrameThatIsNotDueChangesNothing) {
  RecordedScene s;
  FillSheet(s.lists, 4, 3);
  s.Start();
  s.Paint();
  const long rebuilds = s.scene->Plot().Rebuilds();
  s.clock.now += 100;
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds) << "nothing turns in this plot";
}

TEST(DynamicPlot, TheDirectionAlternatesAtEachRebuild) {
  Trace s;
  s.Start();
  for (int rebuild = 0; rebuild < 4; ++rebuild) {
    const auto strips = s.Drawn(GL_LINE_STRIP);
    ASSERT_THAT(strips, SizeIs(1));
    if (s.scene->Plot().DrawForward() == 1) {
      EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 5, 0));
    } else {
      EXPECT_THAT(Xs(strips[0]), ElementsAre(0, 5, 10));
    }
    EXPECT_EQ(s.scene->Plot().DrawForward(), rebuild % 2 == 0 ? 1 : 0);
    s.view.ColorStyle += 1;
    s.Paint();
  }
}

TEST(DynamicPlot, AnUnchangedPaintKeepsTheDirection) {
  Trace s;
  s.Start();
  s.Paint();
  s.Paint();
  EXPECT_EQ(s.scene->Plot().DrawForward(), 1);
}

TEST(DynamicPlot, TheLastEntryIsDrawn) {
  Trace s(5);
  s.Start();
  const auto strips = s.Drawn(GL_LINE_STRIP);
  ASSERT_THAT(strips, SizeIs(1));
  EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 7.5, 5, 2.5, 0));
  int previous = 0;
  s.scene->ChangeCURRINDEXI(3, previous);
  s.scene->ChangeCURRINDEXMINI(1, previous);
  s.Paint();
  EXPECT_THAT(Xs(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(2.5, 5, 7.5));
}

TEST(DynamicPlot, TheFirstPaintOfALineIsNominal) {
  Trace s;
  s.Start();
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(kNominal, kNominal, kNominal));
}

// Lines: pen and events.

TEST(DynamicPlot, ALiftedPenBreaksTheLine) {
  Trace s(6);
  s.lists.PointList(4, 2) = kPenUp;
  s.Start();
  const auto strips = s.Drawn(GL_LINE_STRIP);
  ASSERT_THAT(strips, SizeIs(2));
  EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 8, 6));
  EXPECT_THAT(Xs(strips[1]), ElementsAre(2, 0));
}

TEST(DynamicPlot, EventsColourTheLine) {
  Trace s(5);
  s.AddEvent(0.2, 1);
  s.AddEvent(0.6, 0);
  s.Start();
  EXPECT_EQ(s.lists.EventTwoState, 0);
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(kNominal, kNominal, kInEvent, kInEvent, kNominal));
}

TEST(DynamicPlot, EventsOfOneKindComeInPairs) {
  Trace s(5);
  s.AddEvent(0.2, 1);
  s.AddEvent(0.6, 1);
  s.Start();
  EXPECT_EQ(s.lists.EventTwoState, 1);
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(kNominal, kNominal, kInEvent, kInEvent, kNominal));
}

TEST(DynamicPlot, TheColourOfAPointDependsOnItsTimeAlone) {
  Trace s(5);
  s.AddEvent(0.2, 1);
  s.AddEvent(0.6, 1);
  s.Start();
  int previous = 0;
  s.scene->ChangeCURRINDEXMINI(2, previous);  // upwards, and from within the event
  s.Paint();
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(kInEvent, kNominal, kNominal));
}

TEST(DynamicPlot, LevelsAreEventsOfTheirOwn) {
  Trace s(5);
  s.AddEvent(0, 0);
  s.AddEvent(0.2, 3);
  s.AddEvent(0.6, 1);
  s.AddEvent(0.9, 0);
  s.view.options.ColourOfPlotEvents = {0, 0, 128};
  s.Start();
  const ByteArray blue{0, 0, 128, 153};
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)), ElementsAre(kNominal, blue, blue, blue, kNominal));
  EXPECT_THAT(s.Drawn(GL_POINTS), IsEmpty()) << "whole levels are no dots";
}

TEST(DynamicPlot, AStateWithAFractionIsADotOfItsOwn) {
  Trace s(5);
  s.AddEvent(0, 0);
  s.AddEvent(0.4, 1.5);
  s.AddEvent(0.6, 1);
  s.Start();
  ASSERT_EQ(s.lists.EventTwoState, 0);
  const auto dots = s.Drawn(GL_POINTS);
  ASSERT_THAT(dots, SizeIs(1));
  EXPECT_THAT(Xs(dots[0]), ElementsAre(5));
  EXPECT_THAT(Colours(dots[0]), ElementsAre(kInEvent));
  const auto strips = s.Drawn(GL_LINE_STRIP);
  ASSERT_THAT(strips, SizeIs(2)) << "the line ends before the dot";
  EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 7.5));
  EXPECT_THAT(Xs(strips[1]), ElementsAre(5, 5, 2.5, 0)) << "and begins anew at it";
}

TEST(DynamicPlot, ASmallFractionIsANominalDot) {
  Trace s(3);
  s.AddEvent(0, 0);
  s.AddEvent(0.4, 0.05);
  s.AddEvent(0.9, 1);
  s.Start();
  const auto dots = s.Drawn(GL_POINTS);
  ASSERT_THAT(dots, SizeIs(1));
  EXPECT_THAT(Colours(dots[0]), ElementsAre(kNominal));
}

// Values along the line.

// Values 0 to 4: the scene's radius 10 gives 2.05 / 4 * 10 / 6 for a unit.
constexpr double kBarOfTwo = 1.708333;
constexpr double kBarOfFour = 3.416667;
// The ends and the middle of the plain colour scale: hues 0.84, 0.42 and 0.
const ByteArray kLowest{255, 0, 245, 255};
const ByteArray kMiddle{0, 255, 133, 255};
const ByteArray kHighest{255, 0, 0, 255};

struct Valued : Trace {
  Valued() {
    AddValue(0, 0);
    AddValue(1, 4);
    lists.ValueAxis = 2;
  }
};

TEST(DynamicPlot, ValuesMakeACombOfBars) {
  Valued s;
  s.Start();
  const auto strips = s.Drawn(GL_LINE_STRIP);
  ASSERT_THAT(strips, SizeIs(1));
  EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 10, 10, 5, 5, 5, 0, 0, 0));
  std::vector<double> heights;
  for (const DrawnVertex& vertex : strips[0].vertices) {
    heights.push_back(vertex.position.y);
    EXPECT_EQ(vertex.position.z, 0);
  }
  const double expected[] = {0, kBarOfFour, 0, 0, kBarOfTwo, 0, 0, 0, 0};
  for (std::size_t i = 0; i < heights.size(); ++i) EXPECT_NEAR(heights[i], expected[i], 1e-5) << i;
  EXPECT_THAT(Colours(strips[0]),
              ElementsAre(kHighest, kHighest, kNominal, kMiddle, kMiddle, kNominal, kLowest, kLowest, kNominal));
}

TEST(DynamicPlot, BarsGrowAlongTheirAxis) {
  for (int axis = 1; axis <= 3; ++axis) {
    Valued s;
    s.lists.ValueAxis = axis;
    s.Start();
    const Vertex end = s.Drawn(GL_LINE_STRIP).at(0).vertices.at(1).position;
    EXPECT_NEAR(end.x, 10 + (axis == 1 ? kBarOfFour : 0), 1e-5);
    EXPECT_NEAR(end.y, axis == 2 ? kBarOfFour : 0, 1e-5);
    EXPECT_NEAR(end.z, axis == 3 ? kBarOfFour : 0, 1e-5);
  }
}

TEST(DynamicPlot, BarsGrowFromTheBoundNextToZero) {
  const auto ends = [](double low, double high) {
    Trace s;
    s.AddValue(0, low);
    s.AddValue(1, high);
    s.lists.ValueAxis = 3;
    s.Start();
    const DrawnPrimitive strip = s.Drawn(GL_LINE_STRIP).at(0);
    return std::pair<double, double>(strip.vertices.at(7).position.z, strip.vertices.at(1).position.z);
  };
  const auto above = ends(2, 6);
  EXPECT_NEAR(above.first, 0, 1e-5);
  EXPECT_NEAR(above.second, kBarOfFour, 1e-5);
  const auto below = ends(-6, -2);
  EXPECT_NEAR(below.first, -kBarOfFour, 1e-5);
  EXPECT_NEAR(below.second, 0, 1e-5);
  const auto across = ends(-2, 2);
  EXPECT_NEAR(across.first, -kBarOfTwo, 1e-5);
  EXPECT_NEAR(across.second, kBarOfTwo, 1e-5);
}

TEST(DynamicPlot, EqualValuesHaveAScale) {
  Trace s;
  s.AddValue(0, 0);
  s.AddValue(1, 0);
  s.lists.ValueAxis = 2;
  s.Start();
  EXPECT_EQ(s.lists.ValueMax, 1);
  const DrawnPrimitive strip = s.Drawn(GL_LINE_STRIP).at(0);
  EXPECT_THAT(strip.vertices, SizeIs(9));
  for (const DrawnVertex& vertex : strip.vertices) EXPECT_EQ(vertex.position.y, 0);
}

TEST(DynamicPlot, APointWithoutAValueIsPlain) {
  Valued s;
  s.AddPoint(1.5, 10, 0, 0);
  s.Start();
  const DrawnPrimitive strip = s.Drawn(GL_LINE_STRIP).at(0);
  EXPECT_THAT(strip.vertices, SizeIs(10));
  EXPECT_EQ(Bytes(strip.vertices[0].colour), kNominal);
  EXPECT_EQ(Bytes(strip.vertices[1].colour), kHighest);
}

TEST(DynamicPlot, ValuesColourTheLineInPlaceOfBars) {
  Valued s;
  s.AddPoint(1.5, 10, 0, 0);  // without a value: no vertex
  s.view.valueColours = true;
  s.Start();
  const auto strips = s.Drawn(GL_LINE_STRIP);
  ASSERT_THAT(strips, SizeIs(1));
  EXPECT_THAT(Xs(strips[0]), ElementsAre(10, 5, 0));
  EXPECT_THAT(Colours(strips[0]), ElementsAre(kHighest, kMiddle, kLowest));
}

TEST(DynamicPlot, BarsReturnToTheColourOfTheEvent) {
  Valued s;
  s.AddEvent(0.4, 1);
  s.AddEvent(0.6, 0);
  s.Start();
  EXPECT_THAT(Colours(s.Drawn(GL_LINE_STRIP).at(0)),
              ElementsAre(kHighest, kHighest, kNominal, kMiddle, kMiddle, kInEvent, kLowest, kLowest, kNominal));
}

// Dots and outlines.

TEST(DynamicPlot, DotsHaveTheColourOfTheirValue) {
  Squares s(kDots);
  s.view.options.ThicknessLinePlot = 4;
  s.Start();
  const auto dots = s.Drawn(GL_POINTS);
  ASSERT_THAT(dots, SizeIs(1));
  EXPECT_THAT(Xs(dots[0]), ElementsAre(10, 5, 0));
  EXPECT_THAT(Colours(dots[0]), ElementsAre(kHighest, kMiddle, kLowest));
  EXPECT_EQ(dots[0].state.pointSize, 4);
  EXPECT_THAT(s.Drawn(GL_TRIANGLES), IsEmpty());
  EXPECT_THAT(s.Drawn(GL_LINES), IsEmpty());
}

TEST(DynamicPlot, BordersAreClosedLinesInTheColourOfTheirCell) {
  Squares s(kDotsAndBorders);
  s.view.options.ThicknessLineAxis = 3;
  s.Start();
  const auto lines = s.Drawn(GL_LINES);
  ASSERT_THAT(lines, SizeIs(1));
  ASSERT_THAT(lines[0].vertices, SizeIs(3 * 4 * 2));
  EXPECT_EQ(lines[0].state.lineWidth, 3);
  double length = 0;
  for (std::size_t i = 0; i < lines[0].vertices.size(); i += 2) {
    const Vertex& a = lines[0].vertices[i].position;
    const Vertex& b = lines[0].vertices[i + 1].position;
    length += std::hypot(b.x - a.x, b.y - a.y);
  }
  EXPECT_NEAR(length, 12 * 10.0 / 4, 1e-4);
  EXPECT_EQ(Bytes(lines[0].vertices[0].colour), kLowest);
  EXPECT_EQ(Bytes(lines[0].vertices[8].colour), kMiddle);
  EXPECT_EQ(Bytes(lines[0].vertices[23].colour), kHighest);
  EXPECT_FALSE(s.Drawn(GL_POINTS).empty());
}

TEST(DynamicPlot, TheFrontOfAFaceIsItsRectoSide) {
  Squares s(kRectoSide);
  s.Start();
  const Areas areas = AreasOf(s.Drawn(GL_TRIANGLES));
  EXPECT_NEAR(areas.towards, 3 * s.Area(), 1e-4);
  EXPECT_EQ(areas.away, 0);
}

TEST(DynamicPlot, TheVersoSideIsTheReverse) {
  Squares s(kVersoSide);
  s.Start();
  const Areas areas = AreasOf(s.Drawn(GL_TRIANGLES));
  EXPECT_EQ(areas.towards, 0);
  EXPECT_NEAR(areas.away, 3 * s.Area(), 1e-4);
}

TEST(DynamicPlot, BothSidesAreDrawnTogether) {
  Squares s(kBothSides);
  s.Start();
  const Areas areas = AreasOf(s.Drawn(GL_TRIANGLES));
  EXPECT_NEAR(areas.towards, 3 * s.Area(), 1e-4);
  EXPECT_NEAR(areas.away, 3 * s.Area(), 1e-4);
}

TEST(DynamicPlot, FacesHaveTheColourOfTheirCell) {
  for (const int mode : {kRectoSide, kVersoSide, kBothSides}) {
    Squares s(mode);
    s.Start();
    for (const DrawnPrimitive& drawn : s.Drawn(GL_TRIANGLES)) {
      for (const DrawnVertex& vertex : drawn.vertices) {
        const double x = vertex.position.x;
        EXPECT_EQ(Bytes(vertex.colour), x < 2.5 ? kLowest : (x < 7.5 ? kMiddle : kHighest)) << mode;
      }
    }
  }
}

TEST(DynamicPlot, BacksAreCulledInTheOutlinePassOnly) {
  for (int mode = 0; mode < kSidesModes; ++mode) {
    Squares s(mode);
    s.AddTrace(0, 0, 1, 0);
    s.AddTrace(1, 0, 1, 0);
    s.Start();
    s.Paint();
    for (const DrawnPrimitive& drawn : s.control.Recording().Primitives()) {
      const bool face = drawn.primitive == GL_TRIANGLES;
      EXPECT_EQ(drawn.state.On(GL_CULL_FACE), face) << "sides " << mode;
      if (face) {
        EXPECT_EQ(drawn.state.cullFace, GLenum{GL_BACK});
      }
    }
    EXPECT_EQ(s.Drawn(GL_TRIANGLES).empty(), mode < kRectoSide);
    EXPECT_FALSE(s.control.Recording().State().On(GL_CULL_FACE));
  }
}

TEST(DynamicPlot, OutlinesAreDrawnWhole) {
  Squares s(kDotsAndBorders, 4);  // entries 0-5, 6-11, 12-17, 18-23
  s.Start();
  const auto cells = [&](int first, int last) {
    s.lists.TraceMin = first;
    s.lists.TraceMax = last;
    s.Paint();
    std::vector<int> found;
    for (const DrawnPrimitive& drawn : s.Drawn(GL_LINES)) {
      EXPECT_EQ(drawn.vertices.size() % 8, 0U);
      for (std::size_t i = 0; i < drawn.vertices.size(); i += 8) {
        const double centre = 0.5 * (drawn.vertices[i].position.x + drawn.vertices[i + 4].position.x);
        found.push_back(static_cast<int>(std::lround(centre * 6 / 10 / 2)));
      }
    }
    return found;
  };
  EXPECT_THAT(cells(0, 23), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(cells(0, 20), ElementsAre(0, 1, 2)) << "down to whole outlines";
  EXPECT_THAT(cells(0, 8), ElementsAre(0));
  EXPECT_THAT(cells(0, 3), IsEmpty());
  EXPECT_THAT(cells(1, 23), ElementsAre(1, 2, 3)) << "up to whole outlines";
  EXPECT_THAT(cells(6, 23), ElementsAre(1, 2, 3));
  EXPECT_THAT(cells(7, 20), ElementsAre(2));
  EXPECT_THAT(cells(7, 14), IsEmpty());
}

TEST(DynamicPlot, PairsBehindTheOutlinesAreLinesInEveryMode) {
  for (int mode = 0; mode < kSidesModes; ++mode) {
    Squares s(mode);
    s.AddTrace(0, 0, 1, 0);
    s.AddTrace(4, 0, 1, 0);
    s.AddTrace(0, 4, 1, 0);
    s.AddTrace(0, 4, 3, 0);
    s.Start();
    std::size_t pairs = 0;
    for (const DrawnPrimitive& drawn : s.Drawn(GL_LINES)) {
      for (std::size_t i = 0; i + 1 < drawn.vertices.size(); i += 2) {
        const Vertex& a = drawn.vertices[i].position;
        const Vertex& b = drawn.vertices[i + 1].position;
        if (a.z == 0) continue;
        ++pairs;
        const bool first = a == Vertex{0, 0, 2.5F} && b == Vertex{10, 0, 2.5F};
        const bool second = a == Vertex{0, 10, 2.5F} && b == Vertex{0, 10, 7.5F};
        EXPECT_TRUE(first || second) << "sides " << mode;
      }
    }
    EXPECT_EQ(pairs, 2U) << "sides " << mode;
  }
}

TEST(DynamicPlot, TheScaleStandsOnTheAxesInItsModes) {
  for (int mode = 0; mode < kScaleModes; ++mode) {
    Squares s(kDots);
    s.view.ScaleMode = mode;
    s.view.options.ThicknessLinePlot = 2;
    s.Start();
    const auto dots = s.Drawn(GL_POINTS);
    const bool onAxes = mode == 1 || mode == 3 || mode == 4;
    ASSERT_THAT(dots, SizeIs(onAxes ? 2 : 1)) << mode;
    if (onAxes) {
      EXPECT_EQ(dots[0].state.pointSize, 10);
    }
    EXPECT_EQ(dots.back().state.pointSize, 2) << "the points keep their size";
  }
}

// Lines wider than the system draws.

double DistanceOf(const Vertex& a, const Vertex& b) {
  return std::hypot(static_cast<double>(a.x - b.x), static_cast<double>(a.y - b.y), static_cast<double>(a.z - b.z));
}

void ExpectStrips(RecordedScene& s, double pixels, std::size_t lines) {
  const auto triangles = s.Drawn(GL_TRIANGLES);
  ASSERT_THAT(triangles, SizeIs(1));
  const auto& vertices = triangles[0].vertices;
  ASSERT_EQ(vertices.size(), 6 * lines);
  const double wide = pixels * s.control.Camera().UnitsPerPixel();
  for (std::size_t i = 0; i < vertices.size(); i += 6) {
    EXPECT_NEAR(DistanceOf(vertices[i].position, vertices[i + 1].position), wide, 1e-4);
    EXPECT_NEAR(triangles[0].InEye(i)[2], triangles[0].InEye(i + 1)[2], 1e-4) << "it faces the camera";
  }
  EXPECT_FALSE(triangles[0].state.On(GL_CULL_FACE));
}

TEST(DynamicPlot, WideBordersBecomeStripsThatFaceTheCamera) {
  Squares s(kDotsAndBorders);
  s.control.Recording().SetWidestLine(1);
  s.view.options.ThicknessLineAxis = 4;
  s.Start();
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_LINES), IsEmpty());
  ExpectStrips(s, 4, 12);
}

TEST(DynamicPlot, WideLinesBecomeStripsThatFaceTheCamera) {
  RecordedScene s;
  s.AddPoint(0, 0, 0, 0);
  s.AddPoint(1, 10, 3, 0);
  s.AddPoint(2, 5, 10, 4);
  s.control.Recording().SetWidestLine(2);
  s.view.options.ThicknessLinePlot = 6;
  s.Start();
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_LINE_STRIP), IsEmpty());
  ExpectStrips(s, 6, 2);
  const long rebuilds = s.scene->Plot().Rebuilds();
  s.scene->CameraSet("proj", 0, 0);
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds + 1) << "they turn with the camera";
  ExpectStrips(s, 6, 2);
  Trackball& ball = s.control.Trackball();
  ball.Enable(true);
  ball.Down(0, 0);
  ball.Move(0.3, 0.2);
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds + 2) << "and with the trackball";
  ExpectStrips(s, 6, 2);
}

TEST(DynamicPlot, LinesWithinTheLimitStayLines) {
  Trace s;
  s.control.Recording().SetWidestLine(6);
  s.view.options.ThicknessLinePlot = 6;
  s.Start();
  EXPECT_THAT(s.Drawn(GL_TRIANGLES), IsEmpty());
  ASSERT_THAT(s.Drawn(GL_LINE_STRIP), SizeIs(1));
  EXPECT_EQ(s.Drawn(GL_LINE_STRIP)[0].state.lineWidth, 6);
}

// What is left when drawing fails.

class FailingGl : public RecordingGl {
 public:
  void DrawVertices(GLenum primitive, std::span<const ColouredVertex> vertices) override {
    if (fails) Raise(FailureNumber::DivisionByZero);
    RecordingGl::DrawVertices(primitive, vertices);
  }
  bool fails = false;
};

TEST(DynamicPlot, AFailureLeavesNoListOpen) {
  FailingGl gl;
  PointLists lists;
  FillCurve(lists, 10);
  ViewState view;
  SceneScale scale;
  DynamicPlot plot;
  const DynamicPlot::Input input{lists, view, scale, 9, 0};
  gl.fails = true;
  EXPECT_THROW(plot.Draw(gl, input), RuntimeFailure);
  gl.fails = false;
  plot.Draw(gl, input);
  EXPECT_THAT(gl.Errors(), IsEmpty());
  EXPECT_THAT(gl.PrimitivesOf(GL_LINE_STRIP), SizeIs(1)) << "the next paint draws the plot";
}

TEST(DynamicPlot, ReleaseGivesTheListsBack) {
  RecordingGl gl;
  PointLists lists;
  FillSheet(lists, 50, 40);
  ViewState view;
  SceneScale scale;
  DynamicPlot plot;
  plot.Draw(gl, {lists, view, scale, lists.NumberPoints, 0});
  const GLuint last = gl.GenLists(1);
  plot.Release(gl);
  for (GLuint list = 1; list < last; ++list) EXPECT_FALSE(gl.HasList(list)) << list;
  EXPECT_EQ(plot.PlotList(), 0U);
}

}  // namespace
}  // namespace orv
