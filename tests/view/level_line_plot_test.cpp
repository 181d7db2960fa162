#include "view/level_line_plot.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "support/level_fields.h"
#include "support/recording_surface.h"

namespace orv {
namespace {

using testing::ConeField;
using testing::FieldOnPlate;
using testing::PlaneField;
using testing::RecordingSurface;
using testing::SaddleField;

constexpr double kFrameFont = 6;
constexpr double kLabelFont = 7;

// The strokes behind the frame's: one a level, then the samples of the legend.
std::vector<RecordingSurface::Stroke> Levels(const RecordingSurface& surface, std::size_t count) {
  return {surface.strokes.begin() + 1, surface.strokes.begin() + 1 + static_cast<std::ptrdiff_t>(count)};
}

// Values on the plot's axes of a place on the surface.
SurfacePoint ValueAt(const PlotArea& area, const SurfacePoint& place) {
  return {area.x.low + (place.x - area.box.left) / area.box.width() * (area.x.high - area.x.low),
          area.y.low + (area.box.bottom - place.y) / area.box.height() * (area.y.high - area.y.low)};
}

PlotArea AreaOf(const LevelLineInput& input, double width, double height) {
  RecordingSurface surface(width, height);
  double lo = 0;
  double hi = 0;
  FindExtremes(input.Z, lo, hi);
  return DrawLevelFrame(input, MakeLevels(input, lo, hi, BuildPalette()), surface);
}

void ExpectApart(const std::vector<RecordingSurface::Printed>& texts) {
  for (std::size_t a = 0; a < texts.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_FALSE(texts[a].box.Meets(texts[b].box)) << texts[a].text << " and " << texts[b].text;
    }
  }
}

TEST(PlotLevelLines, DrawsEveryLevelWhereThePlaneHasIt) {
  RecordingSurface surface(640, 480);
  const LevelLineInput input = FieldOnPlate(PlaneField);
  EXPECT_EQ(PlotLevelLines(input, surface), "");
  const PlotArea area = AreaOf(input, 640, 480);
  ASSERT_EQ(surface.strokes.size(), 1U + 10 + 10);
  const auto levels = Levels(surface, 10);
  const double expected[] = {10, 30, 50, 70, 90, 110, 130, 150, 170, 190};
  for (std::size_t t = 0; t < 10; ++t) {
    for (const SurfaceLine& line : levels[t].lines) {
      for (const SurfacePoint& end : {line.begin, line.end}) {
        const SurfacePoint value = ValueAt(area, end);
        EXPECT_NEAR(PlaneField(value.x, value.y), expected[t], 1e-9);
      }
    }
    // The lowest and the highest level touch a corner only.
    EXPECT_EQ(levels[t].lines.empty(), t == 0 || t == 9);
  }
}

TEST(PlotLevelLines, ColoursLevelsFromVioletToRed) {
  RecordingSurface surface(640, 480);
  (void)PlotLevelLines(FieldOnPlate(ConeField), surface);
  const auto levels = Levels(surface, 10);
  EXPECT_EQ(levels[0].colour, (SurfaceColour{255, 0, 255}));
  EXPECT_EQ(levels[9].colour, (SurfaceColour{255, 0, 0}));
  // Entry 568 of the palette: 5 * 568 / 1279 = 2.2205.
  EXPECT_EQ(levels[4].colour, (SurfaceColour{0, 255, 199}));
  for (std::size_t t = 0; t < 10; ++t) {
    // The legend shows them from the highest down.
    EXPECT_EQ(surface.strokes[20 - t].colour, levels[t].colour);
    EXPECT_EQ(surface.strokes[20 - t].lines.size(), 1U);
  }
}

TEST(PlotLevelLines, ALevelOnTheLowestCornerLeavesItsGap) {
  RecordingSurface surface(640, 480);
  (void)PlotLevelLines(FieldOnPlate(ConeField), surface);
  EXPECT_TRUE(Levels(surface, 10)[0].lines.empty());  // 0 is met in the middle cell alone
}

TEST(PlotLevelLines, FramesTheAxesWithRoundNumbers) {
  RecordingSurface surface(640, 480);
  LevelLineInput input = FieldOnPlate(PlaneField);
  input.XLabel = " across ";
  (void)PlotLevelLines(input, surface);
  for (const char* text : {"-2.0", "-1.5", "0.0", "2.0", "1.5", "across", "Y", "Density (m-3)"}) {
    EXPECT_TRUE(surface.Has(text)) << text;
  }
  for (const auto& printed : surface.TextsOf(kFrameFont)) {
    EXPECT_EQ(printed.font.family, "MS Serif");
    EXPECT_FALSE(printed.font.bold);
    EXPECT_GE(printed.box.left, 0) << printed.text;
    EXPECT_LE(printed.box.right, 640) << printed.text;
    EXPECT_GE(printed.box.top, 0) << printed.text;
    EXPECT_LE(printed.box.bottom, 480) << printed.text;
  }
  ExpectApart(surface.TextsOf(kFrameFont));
}

TEST(PlotLevelLines, GivesTheSurfaceItsFontBack) {
  for (const bool flat : {false, true}) {
    RecordingSurface surface(640, 480);
    surface.setFont({"Courier", 11, true});
    (void)PlotLevelLines(FieldOnPlate([&](double x, double) { return flat ? 3 : x; }), surface);
    EXPECT_EQ(surface.Font(), (SurfaceFont{"Courier", 11, true}));
  }
}

TEST(PlotLevelLines, LetsEventsThroughOnceAtTheEnd) {
  RecordingSurface surface(640, 480);
  int times = 0;
  std::size_t drawn = 0;
  (void)PlotLevelLines(FieldOnPlate(PlaneField), surface, [&] {
    ++times;
    drawn = surface.texts.size() + surface.strokes.size();
  });
  EXPECT_EQ(times, 1);
  EXPECT_EQ(drawn, surface.texts.size() + surface.strokes.size());
}

TEST(PlotLevelLines, AFlatGridLeavesTheFrameAlone) {
  RecordingSurface surface(640, 480);
  EXPECT_EQ(PlotLevelLines(FieldOnPlate([](double, double) { return 3.0; }), surface), "Error in Contour Levels");
  EXPECT_EQ(surface.strokes.size(), 1U);
  EXPECT_TRUE(surface.TextsOf(kLabelFont).empty());
  EXPECT_TRUE(surface.Has("Density (m-3)"));
}

TEST(PlotLevelLines, CloseLevelsLeaveTheFrameAlone) {
  RecordingSurface surface(640, 480);
  EXPECT_EQ(PlotLevelLines(FieldOnPlate([](double x, double) { return 1000 + x; }), surface),
            "Error in Contour Levels");
  EXPECT_EQ(surface.strokes.size(), 1U);
}

TEST(PlotLevelLines, ASingleColumnLeavesTheFrameAlone) {
  for (const bool swap : {false, true}) {
    RecordingSurface surface(640, 480);
    LevelLineInput input = FieldOnPlate(PlaneField, 2, 9);
    input.X.Size({Bounds{1, 1}});
    input.X(1) = 5;
    input.Swap = swap ? 1 : 0;
    EXPECT_EQ(PlotLevelLines(input, surface), "Error in Input Parameters");
    EXPECT_EQ(surface.strokes.size(), 1U);
    // The axis of a single value ends one above it.
    EXPECT_TRUE(surface.Has("5.0"));
    EXPECT_TRUE(surface.Has("6.0"));
  }
}

TEST(PlotLevelLines, NoPointsAndNoLevelsAreErrors) {
  RecordingSurface surface(640, 480);
  EXPECT_EQ(PlotLevelLines({}, surface), "Error in Input Parameters");
  LevelLineInput input = FieldOnPlate(PlaneField);
  input.LevelCount = 0;
  EXPECT_EQ(PlotLevelLines(input, surface), "Error in Input Parameters");
}

TEST(PlotLevelLines, AGridSmallerThanItsAxesIsTold) {
  RecordingSurface surface(640, 480);
  LevelLineInput input = FieldOnPlate(PlaneField);
  input.Z.Size({Bounds{1, 3}, Bounds{1, 3}});
  for (int k = 1; k <= 3; ++k) input.Z(k, 1) = k;
  EXPECT_EQ(PlotLevelLines(input, surface), "Subscript out of range");
}

TEST(PlotLevelLines, SwapTurnsThePlotOver) {
  LevelLineInput input = FieldOnPlate([](double x, double y) { return x + 10 * y; });
  input.XLabel = "first";
  input.YLabel = "second";
  RecordingSurface surface(640, 480);
  input.Swap = 1;
  EXPECT_EQ(PlotLevelLines(input, surface), "");
  const auto place = [&](const std::string& text) {
    for (const auto& printed : surface.texts) {
      if (printed.text == text) return printed.pen;
    }
    ADD_FAILURE() << text;
    return SurfacePoint{};
  };
  EXPECT_GT(place("first").x, -1);
  EXPECT_LT(place("first").y, place("second").y);  // "second" stands below the plot
  // A plane that rises tenfold along the swapped Y has steep lines.
  const auto levels = Levels(surface, 10);
  ASSERT_FALSE(levels[5].lines.empty());
  for (const SurfaceLine& line : levels[5].lines) {
    EXPECT_GT(std::abs(line.end.y - line.begin.y), std::abs(line.end.x - line.begin.x));
  }
}

TEST(PlotLevelLines, FactorsMoveTheOuterLevels) {
  LevelLineInput input = FieldOnPlate(PlaneField);  // 10 .. 190
  input.LowFactor = 2;
  input.HighFactor = 0.5;
  RecordingSurface surface(640, 480);
  (void)PlotLevelLines(input, surface);
  EXPECT_TRUE(surface.Has("20. m-3"));
  EXPECT_TRUE(surface.Has("95. m-3"));
  EXPECT_FALSE(surface.Has("190. m-3"));
}

TEST(PlotLevelLines, LabelsOnALogarithmicScaleShowTheAntilogarithm) {
  LevelLineInput input = FieldOnPlate([](double x, double y) { return 2 + (x + y + 3.5) / 7 * 9; });
  input.LogScale = 1;
  RecordingSurface surface(640, 480);
  EXPECT_EQ(PlotLevelLines(input, surface), "");
  EXPECT_TRUE(surface.Has("100. m-3"));
  EXPECT_TRUE(surface.Has("1000. m-3"));
  EXPECT_TRUE(surface.Has("10000.   m-3"));
}

TEST(PlotLevelLines, WithoutLabelsTheLegendKeepsItsSamples) {
  LevelLineInput input = FieldOnPlate(PlaneField);
  input.Labels = false;
  RecordingSurface surface(640, 480);
  (void)PlotLevelLines(input, surface);
  EXPECT_TRUE(surface.TextsOf(kLabelFont).empty());
  EXPECT_EQ(surface.strokes.size(), 21U);
}

TEST(PlotLevelLines, ASmallSurfaceLosesTheLegendBeforeThePlot) {
  RecordingSurface surface(110, 150);
  EXPECT_EQ(PlotLevelLines(FieldOnPlate(PlaneField), surface), "");
  EXPECT_EQ(surface.strokes.size(), 11U);
  for (const double side : {0.0, 1.0, 10.0, 30.0}) {
    RecordingSurface tiny(side, side);
    EXPECT_EQ(PlotLevelLines(FieldOnPlate(PlaneField), tiny), "");
    EXPECT_TRUE(tiny.strokes.empty());
    EXPECT_EQ(PlotLevelLines(FieldOnPlate([](double, double) { return 1.0; }), tiny), "Error in Contour Levels");
  }
}

TEST(LevelLabels, StandAtTheEndOfThePieceThatHasRoom) {
  RecordingSurface surface(640, 480);
  const LevelLineInput input = FieldOnPlate(PlaneField);
  (void)PlotLevelLines(input, surface);
  const PlotArea area = AreaOf(input, 640, 480);
  const auto levels = Levels(surface, 10);
  std::set<std::string> labelled;
  for (const auto& printed : surface.TextsOf(kLabelFont)) {
    if (printed.box.left > area.box.right) continue;  // the legend
    labelled.insert(printed.text);
    EXPECT_GE(printed.box.left, area.box.left);
    EXPECT_LE(printed.box.right, area.box.right);
    EXPECT_GE(printed.box.top, area.box.top);
    EXPECT_LE(printed.box.bottom, area.box.bottom);
    double nearest = 1e9;
    for (const auto& level : levels) {
      if (level.colour != printed.colour) continue;
      for (const SurfaceLine& line : level.lines) {
        const double aside = std::max({printed.box.left - line.end.x, line.end.x - printed.box.right, 0.0});
        const double above = std::max({printed.box.top - line.end.y, line.end.y - printed.box.bottom, 0.0});
        nearest = std::min(nearest, std::hypot(aside, above));
      }
    }
    EXPECT_LE(nearest, 2.5) << printed.text;
  }
  EXPECT_EQ(labelled, (std::set<std::string>{"30. m-3", "50. m-3", "70. m-3", "90. m-3", "110. m-3", "130. m-3",
                                             "150. m-3", "170. m-3"}));
}

TEST(LevelLabels, NeverCoverEachOther) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(0, 1);
  std::uniform_int_distribution<int> cells(2, 30);
  std::uniform_int_distribution<int> side(60, 900);
  std::uniform_int_distribution<int> count(2, 40);
  for (int k = 0; k < 150; ++k) {
    LevelLineInput input = FieldOnPlate([&](double, double) { return value(random); }, cells(random), cells(random));
    input.LevelCount = count(random);
    RecordingSurface surface(side(random), side(random));
    EXPECT_EQ(PlotLevelLines(input, surface), "");
    ExpectApart(surface.TextsOf(kLabelFont));
    if (HasFailure()) break;
  }
}

TEST(LevelLabels, OfBundledLinesLookForAnotherPiece) {
  // A wall: all lines run side by side, closer together than a label is high.
  RecordingSurface surface(640, 480);
  const LevelLineInput input = FieldOnPlate([](double, double y) { return std::atan(40 * y); });
  EXPECT_EQ(PlotLevelLines(input, surface), "");
  const PlotArea area = AreaOf(input, 640, 480);
  int within = 0;
  for (const auto& printed : surface.TextsOf(kLabelFont)) within += printed.box.right <= area.box.right ? 1 : 0;
  EXPECT_GE(within, 7);
  ExpectApart(surface.TextsOf(kLabelFont));
}

TEST(Conrec, SetsALevelThatIsOffToOne) {
  RecordingSurface surface(640, 480);
  const LevelLineInput input = FieldOnPlate(SaddleField);
  LevelRecords levels = MakeLevels(input, -10, 10, BuildPalette());
  levels(3).Active = 0;
  levels(4).Active = 2;
  const PlotArea area = DrawLevelFrame(input, levels, surface);
  std::string errorText = "before";
  CONREC(surface, area, input.X, input.Y, input.Z, levels, errorText);
  EXPECT_EQ(errorText, "");
  EXPECT_EQ(levels(3).Active, 1);
  EXPECT_EQ(levels(4).Active, 2);
  EXPECT_FALSE(Levels(surface, 10)[2].lines.empty());
}

}  // namespace
}  // namespace orv
