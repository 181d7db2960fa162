#include "numerics/level_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace orv {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

LevelAxis Axis(const std::vector<double>& values) {
  LevelAxis axis({Bounds{1, static_cast<std::ptrdiff_t>(values.size())}});
  axis.values() = values;
  return axis;
}

LevelAxis Steps(int count, double first, double last) {
  LevelAxis axis({Bounds{1, count}});
  for (int i = 1; i <= count; ++i) axis(i) = first + (last - first) * (i - 1) / (count - 1);
  return axis;
}

LevelGrid Grid(const LevelAxis& X, const LevelAxis& Y, const std::function<double(double, double)>& field) {
  LevelGrid Z({X.bounds(0), Y.bounds(0)});
  for (std::ptrdiff_t i = 1; i <= X.bounds(0).upper; ++i) {
    for (std::ptrdiff_t j = 1; j <= Y.bounds(0).upper; ++j) Z(i, j) = field(X(i), Y(j));
  }
  return Z;
}

// The pieces of level 0 in the rectangle from (0, 0) to (1, 1), corners by number.
std::vector<LevelPiece> TraceCorners(const std::array<double, 4>& corners) {
  LevelGrid Z({Bounds{1, 2}, Bounds{1, 2}});
  Z(1, 1) = corners[0];
  Z(1, 2) = corners[1];
  Z(2, 1) = corners[2];
  Z(2, 2) = corners[3];
  return TraceLevel(Axis({0, 1}), Axis({0, 1}), Z, 0);
}

using Ends = std::array<double, 4>;

// A piece with its ends in a fixed order.
Ends EndsOf(const LevelPiece& piece) {
  if (piece.x1 < piece.x2 || (piece.x1 == piece.x2 && piece.y1 <= piece.y2)) {
    return {piece.x1, piece.y1, piece.x2, piece.y2};
  }
  return {piece.x2, piece.y2, piece.x1, piece.y1};
}

std::vector<Ends> Sorted(const std::vector<LevelPiece>& pieces) {
  std::vector<Ends> ends;
  for (const LevelPiece& piece : pieces) ends.push_back(EndsOf(piece));
  std::sort(ends.begin(), ends.end());
  return ends;
}

std::string DescriptionOf(const std::function<void()>& work, FailureNumber number) {
  try {
    work();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), number);
    return failure.description();
  }
  return "nothing raised";
}

std::array<int, 3> Parts(Colour32 colour) {
  return {static_cast<int>(colour & 255), static_cast<int>(colour >> 8 & 255), static_cast<int>(colour >> 16)};
}

TEST(LevelPalette, RunsFromVioletToRedInFiveStretches) {
  const Array<Colour32, 1> palette = BuildPalette();
  EXPECT_EQ(palette.bounds(0).lower, 0);
  EXPECT_EQ(palette.bounds(0).upper, 1279);
  EXPECT_EQ(Parts(palette(0)), (std::array{255, 0, 255}));
  EXPECT_EQ(Parts(palette(1279)), (std::array{255, 0, 0}));
  struct Row {
    int entry;
    std::array<int, 3> rgb;
  };
  // One entry within each stretch, by hand: 5 * e / 1279 = s + f.
  for (const Row& row : {Row{100, {155, 0, 255}}, Row{400, {0, 144, 255}}, Row{600, {0, 255, 167}},
                         Row{900, {132, 255, 0}}, Row{1100, {255, 178, 0}}}) {
    SCOPED_TRACE(row.entry);
    EXPECT_EQ(Parts(palette(row.entry)), row.rgb);
  }
  EXPECT_EQ(DescriptionOf([&] { palette(1280); }, FailureNumber::SubscriptOutOfRange), "Subscript out of range");
}

TEST(LevelPalette, NeighboursDifferByOneOrTwo) {
  const Array<Colour32, 1> palette = BuildPalette();
  for (int e = 1; e < kPaletteEntries; ++e) {
    const std::array<int, 3> a = Parts(palette(e - 1));
    const std::array<int, 3> b = Parts(palette(e));
    int difference = 0;
    for (std::size_t k = 0; k < 3; ++k) difference = std::max(difference, std::abs(a[k] - b[k]));
    EXPECT_LE(difference, 2) << e;
  }
}

TEST(LevelLines, SwapTransposesGridAxesAndLabels) {
  LevelLineInput input;
  input.X = Axis({1, 2, 3});
  input.Y = Axis({10, 20});
  input.Z = Grid(input.X, input.Y, [](double x, double y) { return x + y; });
  input.XLabel = "across";
  input.YLabel = "along";
  LevelLineInput plain = input;
  Arrange(plain);
  EXPECT_EQ(plain.Z.values(), input.Z.values());
  EXPECT_EQ(plain.XLabel, "across");

  input.Swap = 1;
  Arrange(input);
  EXPECT_EQ(input.X.values(), (std::vector<double>{10, 20}));
  EXPECT_EQ(input.Y.values(), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(input.XLabel, "along");
  EXPECT_EQ(input.YLabel, "across");
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(input.Z(i, j), input.X(i) + input.Y(j));
  }
}

TEST(LevelLines, SwapOfAShortGridFailsAndChangesNothing) {
  LevelLineInput input;
  input.X = Axis({1, 2, 3});
  input.Y = Axis({10, 20});
  input.Z.Size({Bounds{1, 2}, Bounds{1, 2}});
  input.Swap = 1;
  EXPECT_EQ(DescriptionOf([&] { Arrange(input); }, FailureNumber::SubscriptOutOfRange), "Subscript out of range");
  EXPECT_EQ(input.X.values().size(), 3U);
  EXPECT_EQ(input.XLabel, " X ");
}

TEST(LevelLines, ExtremesPassOverWhatIsNoNumber) {
  LevelGrid Z({Bounds{1, 2}, Bounds{1, 3}});
  Z.values() = {kNotANumber, -2, 5, kInfinity, 3, -kInfinity};
  double lo = 7;
  double hi = 7;
  FindExtremes(Z, lo, hi);
  EXPECT_EQ(lo, -2);
  EXPECT_EQ(hi, 5);
  FindExtremes(LevelGrid(), lo, hi);
  EXPECT_EQ(lo, 0);
  EXPECT_EQ(hi, 0);
}

TEST(LevelLines, FactorsKeepTheOrderOfTheBounds) {
  struct Row {
    double lowFactor, highFactor, lo, hi, newLo, newHi;
  };
  for (const Row& row : {Row{1, 1, 2, 10, 2, 10}, Row{1, 1, 3, 3, 3, 3}, Row{0.5, 2, 2, 10, 1, 20},
                         Row{2, 0.5, 2, 10, 4, 5},    // both inwards
                         Row{3, 0.4, 2, 10, 6, 10},   // the product of the low one stays below, the other would cross
                         Row{9, 0.3, 2, 10, 2, 3},    // only the high one stays above
                         Row{6, 0.1, 2, 10, 2, 10},   // neither
                         Row{2, 1, 5, 10, 5, 10}}) {  // both products are equal: the low bound would meet the high
    SCOPED_TRACE(std::to_string(row.lowFactor) + " " + std::to_string(row.highFactor));
    double lo = row.lo;
    double hi = row.hi;
    ApplyFactors(row.lowFactor, row.highFactor, lo, hi);
    EXPECT_EQ(lo, row.newLo);
    EXPECT_EQ(hi, row.newHi);
  }
}

TEST(LevelTable, HasEqualStepsRoundedToThreeDigits) {
  LevelLineInput input;
  input.LabelFormat = " #.# m-3";
  const Array<Colour32, 1> palette = BuildPalette();
  const LevelRecords levels = MakeLevels(input, 0, 10, palette);
  ASSERT_EQ(levels.values().size(), 10U);
  const double expected[] = {0, 1.11, 2.22, 3.33, 4.44, 5.56, 6.67, 7.78, 8.89, 10};
  const int entries[] = {0, 142, 284, 426, 568, 711, 853, 995, 1137, 1279};
  for (int t = 1; t <= 10; ++t) {
    SCOPED_TRACE(t);
    EXPECT_EQ(levels(t).Level, expected[t - 1]);
    EXPECT_EQ(levels(t).LineColour, palette(entries[t - 1]));
    EXPECT_EQ(levels(t).LabelColour, levels(t).LineColour);
    EXPECT_EQ(levels(t).Active, 1);
    EXPECT_EQ(levels(t).LabelFont, 7);
  }
  EXPECT_EQ(levels(1).Label, " 0.   m-3");
  EXPECT_EQ(levels(2).Label, " 1.1 m-3");
  EXPECT_EQ(levels(10).Label, " 10. m-3");
}

TEST(LevelTable, RoundsLargeAndSmallNumbersThroughTheirText) {
  const Array<Colour32, 1> palette = BuildPalette();
  LevelLineInput input;
  input.LevelCount = 3;
  const LevelRecords large = MakeLevels(input, 1.2345e20, 9.8765e20, palette);
  EXPECT_DOUBLE_EQ(large(1).Level, 1.23e20);
  EXPECT_DOUBLE_EQ(large(2).Level, 5.56e20);
  EXPECT_DOUBLE_EQ(large(3).Level, 9.88e20);
  const LevelRecords small = MakeLevels(input, -1.2345e-9, 0, palette);
  EXPECT_DOUBLE_EQ(small(1).Level, -1.23e-9);
  EXPECT_EQ(small(3).Level, 0);
}

TEST(LevelTable, LeavesLabelsOutWhenTheyAreOff) {
  LevelLineInput input;
  input.Labels = false;
  const LevelRecords levels = MakeLevels(input, 0, 1, BuildPalette());
  for (const LevelRecord& level : levels.values()) EXPECT_EQ(level.Label, "");
}

TEST(LevelTable, PassesOverWhatASingleLevelCannotHave) {
  LevelLineInput input;
  input.LevelCount = 1;
  const LevelRecords levels = MakeLevels(input, 3, 9, BuildPalette());
  ASSERT_EQ(levels.values().size(), 1U);
  EXPECT_EQ(levels(1).Level, 0);
  EXPECT_EQ(levels(1).LineColour, 0U);
  input.LevelCount = 0;
  EXPECT_TRUE(MakeLevels(input, 3, 9, BuildPalette()).values().empty());
}

TEST(LevelTable, AFlatGridGivesEqualLevels) {
  const LevelLineInput input;
  const LevelRecords levels = MakeLevels(input, 4.2, 4.2, BuildPalette());
  for (const LevelRecord& level : levels.values()) EXPECT_EQ(level.Level, 4.2);
  EXPECT_EQ(DescriptionOf(
                [&] {
                  CheckContourInput(Axis({0, 1}), Axis({0, 1}), levels);
                },
                kContourFailure),
            "Error in Contour Levels");
}

TEST(LevelTable, CloseLevelsBecomeEqual) {
  const LevelRecords levels = MakeLevels({}, 1000, 1004, BuildPalette());
  EXPECT_EQ(levels(1).Level, levels(2).Level);
  EXPECT_EQ(DescriptionOf(
                [&] {
                  CheckContourInput(Axis({0, 1}), Axis({0, 1}), levels);
                },
                kContourFailure),
            "Error in Contour Levels");
}

TEST(LevelLabels, TakeTheFormatOrSignificantDigits) {
  struct Row {
    double level, LogScale;
    const char* format;
    const char* label;
  };
  for (const Row& row : {
           Row{12.34, 0, " #.# m", " 12.3 m"},
           Row{1, 0, " #.# m", " 1. m"},
           Row{9999.94, 0, " #.# m", " 9999.9 m"},
           Row{10000, 0, " #.# m", " 10000.   m"},
           Row{1234567, 0, " #.# m", " 1.23E+06   m"},
           Row{0.999, 0, " #.# m", " 0.999   m"},
           Row{0.5, 0, " #.# m", " 0.5   m"},
           Row{0.001, 0, " #.# m", " 1.E-03   m"},
           Row{0, 0, " #.# m", " 0.   m"},
           Row{-12.34, 0, " #.# m", " -12.3   m"},
           Row{3, 1, " #.# m", " 1000. m"},
           Row{15, 2, " #.# m-3", " 100.E+13   m-3"},
           Row{-2, 1, " #.# m", " 0.01   m"},
           // The unit is text, not a mask.
           Row{5.25, 0, " #.# A.m-²/A", " 5.3 A.m-²/A"},
           Row{5.25, 0, " #.#  10E+00 units", " 5.3  10E+00 units"},
           Row{5.25, 0, " #.# ", " 5.3 "},
       }) {
    SCOPED_TRACE(std::to_string(row.level) + row.format);
    EXPECT_EQ(LevelLabel(row.level, row.LogScale, row.format), row.label);
  }
}

TEST(LevelLabels, AnAntilogarithmBeyondTheRangeOfNumbersIsLeftOut) {
  EXPECT_EQ(DescriptionOf([] { LevelLabel(400, 1, " #.# "); }, FailureNumber::Overflow), "Overflow");
  LevelLineInput input;
  input.LogScale = 1;
  input.LevelCount = 2;
  const LevelRecords levels = MakeLevels(input, 2, 400, BuildPalette());
  EXPECT_EQ(levels(1).Label, " 100. ");
  EXPECT_EQ(levels(2).Label, "");
  EXPECT_EQ(levels(2).Level, 400);
}

TEST(LevelAxes, HaveRoundNumbers) {
  struct Row {
    double p, q, low, high, step;
    int steps;
  };
  for (const Row& row : {
           Row{0, 1, 0, 1, 0.125, 8},
           Row{0, 10, 0, 10, 1.25, 8},
           Row{0, 7, 0, 7, 1, 7},
           Row{0.3, 6.9, 0, 7, 1, 7},
           Row{-1.75, 1.75, -2, 2, 0.5, 8},
           Row{2, -1, -1, 2, 0.5, 6},
           Row{5, 5, 5, 6, 0.125, 8},
           Row{0, 1000, 0, 1000, 125, 8},
           Row{-0.013, 0.049, -0.02, 0.05, 0.01, 7},
           Row{0, 99, 0, 100, 10, 10},
       }) {
    SCOPED_TRACE(std::to_string(row.p) + " to " + std::to_string(row.q));
    const AxisScale axis = ScaleAxis(row.p, row.q, "#0.0##");
    EXPECT_DOUBLE_EQ(axis.low, row.low);
    EXPECT_DOUBLE_EQ(axis.high, row.high);
    EXPECT_DOUBLE_EQ(axis.step, row.step);
    EXPECT_EQ(axis.steps, row.steps);
    EXPECT_DOUBLE_EQ(axis.Tick(0), row.low);
    EXPECT_DOUBLE_EQ(axis.Tick(axis.steps), row.high);
  }
}

TEST(LevelAxes, HoldTheirLimitsInFiveToTwelveSteps) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> magnitude(-12, 12);
  std::uniform_real_distribution<double> share(-1, 1);
  for (int k = 0; k < 2000; ++k) {
    const double size = std::pow(10, magnitude(random));
    const double p = share(random) * size;
    const double q = share(random) * size;
    const AxisScale axis = ScaleAxis(p, q, "#0.0##");
    ASSERT_LE(axis.low, std::min(p, q) + 1e-9 * size);
    ASSERT_GE(axis.high, std::max(p, q) - 1e-9 * size);
    ASSERT_GE(axis.steps, 5);
    ASSERT_LE(axis.steps, 12);
    ASSERT_GT(axis.high - axis.low, 0);
  }
}

TEST(LevelAxes, PrintNumbersOrDates) {
  EXPECT_EQ(ScaleAxis(0, 1, "#0.0##").TextOf(0.125), "0.125");
  EXPECT_EQ(ScaleAxis(0, 1, "#0.0##").TextOf(1), "1.0");
  EXPECT_EQ(ScaleAxis(0, 1, "#0.0##").TextOf(-2), "-2.0");
  // The fixed mask stays even for days.
  EXPECT_FALSE(ScaleAxis(37701, 37800, "#0.0##").dates);
  EXPECT_EQ(ScaleAxis(37701, 37800, "#0.0##").TextOf(37701), "37701.0");

  EXPECT_EQ(ScaleAxis(37701, 37800, "").TextOf(37701), "21 Mar 03");
  EXPECT_EQ(ScaleAxis(0, 5e6, "").TextOf(1234567), "1234 567");
  EXPECT_EQ(ScaleAxis(0, 5e6, "").TextOf(1234), "1 234");
  EXPECT_EQ(ScaleAxis(0, 50, "").TextOf(25), "25");
  // Both limits must lie strictly within 4 October 1957 and 1 January 3000.
  EXPECT_FALSE(ScaleAxis(21097, 30000, "").dates);
  EXPECT_TRUE(ScaleAxis(21098, 30000, "").dates);
  EXPECT_TRUE(ScaleAxis(401768, 30000, "").dates);
  EXPECT_FALSE(ScaleAxis(401769, 30000, "").dates);
}

TEST(LevelAxes, RefuseLimitsThatMakeNoAxis) {
  for (const double bad : {kNotANumber, kInfinity, -kInfinity}) {
    EXPECT_EQ(DescriptionOf([&] { ScaleAxis(0, bad, ""); }, FailureNumber::Overflow), "Overflow");
  }
  EXPECT_EQ(DescriptionOf([] { ScaleAxis(1e300, 1e300, ""); }, FailureNumber::InvalidProcedureCall),
            "Invalid procedure call or argument");
  EXPECT_EQ(DescriptionOf([] { ScaleAxis(-1.7e308, 1.7e308, ""); }, FailureNumber::Overflow), "Overflow");
}

TEST(LevelCheck, WantsTwoPointsALevelAndRisingLevels) {
  const LevelRecords one = MakeLevels({}, 0, 9, BuildPalette());
  const LevelAxis two = Axis({0, 1});
  const std::string bad = "Error in Input Parameters";
  const auto check = [&](const LevelAxis& X, const LevelAxis& Y, const LevelRecords& levels) {
    return DescriptionOf([&] { CheckContourInput(X, Y, levels); }, kContourFailure);
  };
  EXPECT_EQ(check(Axis({0}), two, one), bad);
  EXPECT_EQ(check(two, Axis({0}), one), bad);
  EXPECT_EQ(check(two, Axis({}), one), bad);
  EXPECT_EQ(check(two, two, LevelRecords()), bad);
  EXPECT_EQ(check(two, two, one), "nothing raised");

  LevelRecords levels = one;
  levels(7).Level = levels(6).Level;
  EXPECT_EQ(check(two, two, levels), "Error in Contour Levels");
  levels(7).Level = kNotANumber;
  EXPECT_EQ(check(two, two, levels), "Error in Contour Levels");
  levels(7).Level = 0;
  EXPECT_EQ(check(two, two, levels), "Error in Contour Levels");
  // The input comes first.
  EXPECT_EQ(check(Axis({0}), two, levels), bad);
  EXPECT_EQ(static_cast<int>(kContourFailure), 1001);
  EXPECT_STREQ(kContourSource, "CONREC");
}

TEST(LevelTracer, CutsOffALoneCorner) {
  struct Row {
    std::array<double, 4> corners;
    Ends ends;
  };
  // h = -1 against 3 and 1: a quarter and a half of the sides.
  for (const Row& row : {Row{{-1, 3, 1, 2}, {0, 0.25, 0.5, 0}}, Row{{3, -1, 2, 1}, {0, 0.75, 0.5, 1}},
                         Row{{3, 2, -1, 1}, {0.75, 0, 1, 0.5}}, Row{{2, 3, 1, -1}, {0.75, 1, 1, 0.5}}}) {
    for (const double sign : {1.0, -1.0}) {
      std::array<double, 4> corners = row.corners;
      for (double& h : corners) h *= sign;
      const std::vector<LevelPiece> pieces = TraceCorners(corners);
      ASSERT_EQ(pieces.size(), 1U);
      EXPECT_EQ(EndsOf(pieces[0]), row.ends);
    }
  }
}

TEST(LevelTracer, RunsThroughOneCornerOnTheLevel) {
  // The corner opposite of the lone one lies on the level: the piece cuts the lone corner off.
  EXPECT_EQ(Sorted(TraceCorners({-1, 1, 3, 0})), (std::vector<Ends>{{0, 0.5, 0.25, 0}}));
  // A neighbour lies on it: the piece ends there.
  EXPECT_EQ(Sorted(TraceCorners({-1, 0, 3, 2})), (std::vector<Ends>{{0, 1, 0.25, 0}}));
  EXPECT_EQ(Sorted(TraceCorners({1, 0, -3, -2})), (std::vector<Ends>{{0, 1, 0.25, 0}}));
}

TEST(LevelTracer, CutsAcrossBetweenTwoPairs) {
  struct Row {
    std::array<double, 4> corners;
    Ends ends;
  };
  for (const Row& row : {Row{{-1, -1, 1, 3}, {0.25, 1, 0.5, 0}},     // corners 1, 2 below
                         Row{{-1, 1, -1, 3}, {0, 0.5, 1, 0.25}},     // 1, 3
                         Row{{1, -1, 3, -1}, {0, 0.5, 1, 0.75}},     // 2, 4
                         Row{{1, 3, -1, -1}, {0.5, 0, 0.75, 1}}}) {  // 3, 4
    const std::vector<LevelPiece> pieces = TraceCorners(row.corners);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(EndsOf(pieces[0]), row.ends);
  }
}

TEST(LevelTracer, RunsAroundTheLowCornersOfASaddle) {
  EXPECT_EQ(Sorted(TraceCorners({-1, 1, 1, -1})), (std::vector<Ends>{{0, 0.5, 0.5, 0}, {0.5, 1, 1, 0.5}}));
  EXPECT_EQ(Sorted(TraceCorners({1, -1, -1, 1})), (std::vector<Ends>{{0, 0.5, 0.5, 1}, {0.5, 0, 1, 0.5}}));
}

TEST(LevelTracer, DrawsNothingWhereItHasNothingToCut) {
  for (const std::array<double, 4>& corners : {
           std::array<double, 4>{1, 2, 3, 4},
           {-1, -2, -3, -4},
           {0, 0, 0, 0},
           {0, 1, 2, 3},
           {-1, -2, 0, -3},  // one on the level, three on one side
           {0, 0, 1, 1},
           {0, 0, -1, 1},
           {0, -1, 1, 0},  // two on it, whatever the others
           {-1, 0, 0, 1},
           {0, 0, 0, 1},
           {0, 0, -1, 0},  // three
       }) {
    EXPECT_TRUE(TraceCorners(corners).empty()) << corners[0] << corners[1] << corners[2] << corners[3];
  }
  EXPECT_TRUE(TraceCorners({-1, 1, kNotANumber, 1}).empty());
  EXPECT_TRUE(TraceCorners({-1, kInfinity, 1, 1}).size() <= 1);
  EXPECT_TRUE(TraceCorners({-kInfinity, kInfinity, 1, 1}).empty());
}

TEST(LevelTracer, LeavesAGapWhereTheLevelPassesThroughTwoCorners) {
  // The line x + y = 0 meets opposite corners of the rectangles on the diagonal and of those beside it only one.
  const LevelAxis X = Axis({-2, -1, 0, 1, 2});
  const auto field = [](double x, double y) { return x + y; };
  EXPECT_TRUE(TraceLevel(X, X, Grid(X, X, field), 0).empty());
  EXPECT_FALSE(TraceLevel(X, X, Grid(X, X, field), 0.1).empty());
}

TEST(LevelTracer, GoesThroughRowsInTheOuterLoop) {
  const LevelAxis X = Steps(4, 0, 3);
  const LevelAxis Y = Steps(3, 0, 2);
  const std::vector<LevelPiece> pieces =
      TraceLevel(X, Y, Grid(X, Y, [](double x, double y) { return x + 4 * y; }), 5.5);
  // Columns of the rectangles that the line passes: 1 and 2 in the first row, 0 and 1 in the second.
  std::vector<std::pair<int, int>> visited;
  for (const LevelPiece& piece : pieces) {
    visited.emplace_back(static_cast<int>((piece.y1 + piece.y2) / 2), static_cast<int>((piece.x1 + piece.x2) / 2));
  }
  EXPECT_EQ(visited, (std::vector<std::pair<int, int>>{{0, 1}, {0, 2}, {1, 0}, {1, 1}}));
}

TEST(LevelTracer, FollowsAPlaneExactly) {
  for (const bool descending : {false, true}) {
    const LevelAxis X = descending ? Steps(23, 2, -2) : Steps(23, -2, 2);
    const LevelAxis Y = Axis({-1, -0.9, -0.4, 0.35, 0.5, 1.7, 2.1});
    const auto plane = [](double x, double y) { return 3 * x - 2 * y + 0.7; };
    const LevelGrid Z = Grid(X, Y, plane);
    for (const double level : {-4.111, -1.03, 0.0, 0.77, 3.33}) {
      const std::vector<LevelPiece> pieces = TraceLevel(X, Y, Z, level);
      double length = 0;
      for (const LevelPiece& piece : pieces) {
        EXPECT_NEAR(plane(piece.x1, piece.y1), level, 1e-9);
        EXPECT_NEAR(plane(piece.x2, piece.y2), level, 1e-9);
        length += std::hypot(piece.x2 - piece.x1, piece.y2 - piece.y1);
      }
      // All of the straight line within the plate: y = (3 x + 0.7 - level) / 2.
      const double first = std::max(-2.0, (2 * -1 - 0.7 + level) / 3);
      const double last = std::min(2.0, (2 * 2.1 - 0.7 + level) / 3);
      EXPECT_NEAR(length, (last - first) * std::hypot(1, 1.5), 1e-9) << level;
    }
  }
}

TEST(LevelTracer, DrawsTheCirclesOfACone) {
  const LevelAxis X = Steps(101, -1, 1);
  const LevelGrid Z = Grid(X, X, [](double x, double y) { return std::hypot(x - 0.0123, y + 0.0077); });
  for (const double radius : {0.2, 0.5, 0.8}) {
    const std::vector<LevelPiece> pieces = TraceLevel(X, X, Z, radius);
    double length = 0;
    for (const LevelPiece& piece : pieces) {
      // Linear cuts on a spacing of 0.02: within its square over 8 radii.
      EXPECT_NEAR(std::hypot(piece.x1 - 0.0123, piece.y1 + 0.0077), radius, 0.02 * 0.02 / 8 / radius + 1e-9);
      length += std::hypot(piece.x2 - piece.x1, piece.y2 - piece.y1);
    }
    const double circle = 2 * std::acos(-1.0) * radius;
    EXPECT_NEAR(length, circle, 0.001 * circle);
  }
}

TEST(LevelTracer, KeepsTheBranchesOfASaddleApart) {
  const LevelAxis X = Steps(40, -1, 1);  // an even count: no cell centre on the axes
  const LevelGrid Z = Grid(X, X, [](double x, double y) { return x * y; });
  // On a grid line x y is linear, so the cuts are exact.
  for (const double level : {-0.3, -0.001, 0.001, 0.3}) {
    const std::vector<LevelPiece> pieces = TraceLevel(X, X, Z, level);
    EXPECT_FALSE(pieces.empty());
    for (const LevelPiece& piece : pieces) {
      EXPECT_NEAR(piece.x1 * piece.y1, level, 1e-12);
      EXPECT_NEAR(piece.x2 * piece.y2, level, 1e-12);
    }
  }
  // In the middle rectangle the level -0.0005 runs around the two low corners, the level 0.0005 too.
  const double h = 1.0 / 39;
  const auto inTheMiddle = [&](double level) {
    std::vector<LevelPiece> middle;
    for (const LevelPiece& piece : TraceLevel(X, X, Z, level)) {
      if (std::max({std::abs(piece.x1), std::abs(piece.x2), std::abs(piece.y1), std::abs(piece.y2)}) < h + 1e-12) {
        middle.push_back(piece);
      }
    }
    return middle;
  };
  for (const double level : {-0.0005, 0.0005}) {
    const std::vector<LevelPiece> middle = inTheMiddle(level);
    ASSERT_EQ(middle.size(), 2U);
    // Low corners are those with x y < 0: the mean of a piece lies on their side.
    for (const LevelPiece& piece : middle) EXPECT_LT((piece.x1 + piece.x2) * (piece.y1 + piece.y2), 0);
  }
}

// Another way to the same pieces, for fields without corners on the level: the crossed sides of each rectangle.
std::vector<Ends> PlainPieces(const LevelAxis& X, const LevelAxis& Y, const LevelGrid& Z, double level) {
  std::vector<Ends> all;
  for (int i = 1; i < static_cast<int>(X.values().size()); ++i) {
    for (int j = 1; j < static_cast<int>(Y.values().size()); ++j) {
      struct Place {
        int i, j;
      };
      const std::array<Place, 4> round = {Place{i, j}, {i + 1, j}, {i + 1, j + 1}, {i, j + 1}};
      std::vector<std::array<double, 2>> cuts;
      std::vector<bool> fromLow;
      for (std::size_t k = 0; k < 4; ++k) {
        const Place& a = round[k];
        const Place& b = round[(k + 1) % 4];
        const double za = Z(a.i, a.j);
        const double zb = Z(b.i, b.j);
        if ((za < level) == (zb < level)) continue;
        const double t = (level - za) / (zb - za);
        cuts.push_back({X(a.i) + t * (X(b.i) - X(a.i)), Y(a.j) + t * (Y(b.j) - Y(a.j))});
        fromLow.push_back(za < level);
      }
      const auto add = [&](std::size_t a, std::size_t b) {
        all.push_back(EndsOf({cuts[a][0], cuts[a][1], cuts[b][0], cuts[b][1]}));
      };
      if (cuts.size() == 2) add(0, 1);
      if (cuts.size() == 4) {
        // Sides in turn: a cut that leaves a low corner belongs with the one that came to it.
        if (fromLow[0]) {
          add(3, 0);
          add(1, 2);
        } else {
          add(0, 1);
          add(2, 3);
        }
      }
    }
  }
  std::sort(all.begin(), all.end());
  return all;
}

TEST(LevelTracer, AgreesWithThePlainForm) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> value(-1, 1);
  for (int k = 0; k < 200; ++k) {
    std::uniform_int_distribution<int> count(2, 9);
    const LevelAxis X = Steps(count(random), 0, 5);
    const LevelAxis Y = Steps(count(random), 3, -1);
    const LevelGrid Z = Grid(X, Y, [&](double, double) { return value(random); });
    const double level = value(random) / 2;
    const std::vector<Ends> traced = Sorted(TraceLevel(X, Y, Z, level));
    const std::vector<Ends> plain = PlainPieces(X, Y, Z, level);
    ASSERT_EQ(traced.size(), plain.size());
    std::vector<bool> taken(plain.size());
    for (const Ends& ends : traced) {
      // Rounding may change the order of pieces and their ends.
      const auto same = [&](const Ends& other) {
        const double direct = std::max({std::abs(ends[0] - other[0]), std::abs(ends[1] - other[1]),
                                        std::abs(ends[2] - other[2]), std::abs(ends[3] - other[3])});
        const double turned = std::max({std::abs(ends[0] - other[2]), std::abs(ends[1] - other[3]),
                                        std::abs(ends[2] - other[0]), std::abs(ends[3] - other[1])});
        return std::min(direct, turned) < 1e-12;
      };
      std::size_t found = 0;
      while (found < plain.size() && (taken[found] || !same(plain[found]))) ++found;
      ASSERT_LT(found, plain.size());
      taken[found] = true;
    }
  }
}

TEST(LevelTracer, FailsOnAGridSmallerThanItsAxes) {
  LevelGrid Z({Bounds{1, 2}, Bounds{1, 2}});
  EXPECT_EQ(
      DescriptionOf([&] { TraceLevel(Steps(3, 0, 1), Steps(2, 0, 1), Z, 0); }, FailureNumber::SubscriptOutOfRange),
      "Subscript out of range");
}

}  // namespace
}  // namespace orv
