#include "geometry/ray_tracing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <tbb/global_control.h>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/ray_index.h"
#include "reference/plain_ray_tracing.h"
#include "support/random_strips.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

using testing::Chance;
using testing::Corners;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A model put together by hand. Primitive 1 is the thruster with one cell, as long as no test says otherwise.
class Model {
 public:
  Model(int primitives, int cellsI, int cellsJ, int strips) {
    cells.CellData.Size(primitives, cellsI, cellsJ, 20);
    cells.BorderCorners.Size(primitives, strips, 12);
    input.NumberOfPrimitives = primitives;
    input.numberPrimWithVolumic = primitives;
    input.ThrusterPrimitive = 1;
    SetCounts(1, 1, 1);
  }

  void SetCounts(int k, int n, int m) {
    cells.CellData(k, 0, 0, 1) = n;
    cells.CellData(k, 0, 0, 2) = m;
  }
  void SetThruster(const Sight& at) {
    thruster = at;
    SetCell(1, 1, 1, at);
  }
  void SetCell(int k, int i, int j, const Sight& at, double angle = 0) {
    CellBlock& data = cells.CellData;
    data(k, i, j, 1) = at.x;
    data(k, i, j, 2) = at.y;
    data(k, i, j, 3) = at.z;
    data(k, i, j, 8) = Length(at - thruster);
    data(k, i, j, 10) = angle;
    data(k, i, j, 18) = data(k, i, j, 20) = -7;
  }
  void AddStrip(int k, const Corners& corners) {
    const double s = ++cells.BorderCorners(k, 0, 0);
    for (std::size_t n = 0; n < 4; ++n) {
      cells.BorderCorners(k, s, 3 * n + 1) = corners[n].x;
      cells.BorderCorners(k, s, 3 * n + 2) = corners[n].y;
      cells.BorderCorners(k, s, 3 * n + 3) = corners[n].z;
    }
  }
  // A square of the given half width perpendicular to z, with one cell in its middle.
  void SetPlate(int k, const Sight& middle, double half, double angle = 0) {
    SetCounts(k, 1, 1);
    SetCell(k, 1, 1, middle, angle);
    AddStrip(k, Square(middle, half));
  }
  static Corners Square(const Sight& middle, double half) {
    return {middle + Sight{-half, -half, 0}, middle + Sight{half, -half, 0}, middle + Sight{half, half, 0},
            middle + Sight{-half, half, 0}};
  }

  void Run() {
    report = {};
    report.ShadowStatusText = "before";
    ErrorPrompt prompt(dialogs);
    a_SpaceApplicationRayTrac(cells, input, state, report, prompt);
  }
  double Flag(int k, int i = 1, int j = 1) const { return cells.CellData(k, i, j, 20); }
  double Distance(int k, int i = 1, int j = 1) const { return cells.CellData(k, i, j, 18); }

  // Quantities 18 and 20 of everything, bit by bit.
  std::vector<std::uint64_t> Results() const {
    std::vector<std::uint64_t> bits;
    for (int k = 0; k <= cells.CellData.primitives(); ++k) {
      for (const int q : {18, 20}) {
        for (const double value : cells.CellData.plane(q, k)) bits.push_back(std::bit_cast<std::uint64_t>(value));
      }
    }
    return bits;
  }
  void Forget() {
    for (const int q : {18, 20}) std::ranges::fill(cells.CellData.plane(q), -7.0);
  }

  Cells cells;
  Sight thruster;
  RayTracingInput input;
  RayTracingState state;
  RayTracingReport report;
  testing::ScriptedDialogs dialogs;
};

TEST(RayTriangle, HitsInsideAndTellsTheParameter) {
  double t = 0;
  const Vector3 a(-1, -1, 2);
  const Vector3 b(4, 0, 0);
  const Vector3 c(0, 4, 0);
  EXPECT_EQ(RayTriangleHit({0.5, 0.25, 4}, a, b, c, t), 1);
  EXPECT_EQ(t, 0.5);
  EXPECT_EQ(RayTriangleHit({8, 0.25, 4}, a, b, c, t), 0);
  EXPECT_EQ(RayTriangleHit({0.5, 0.25, 1}, a, b, c, t), 0) << "ends before the triangle";
  EXPECT_EQ(t, 2);
  EXPECT_EQ(RayTriangleHit({0.5, 0.25, -4}, a, b, c, t), 0) << "leads away";
  EXPECT_EQ(t, -0.5);
  EXPECT_EQ(RayTriangleHit({0.5, 0.25, 2}, a, b, c, t), 0) << "ends on the triangle";
  EXPECT_EQ(t, 1);
}

TEST(RayTriangle, ParallelRayHasParameterOne) {
  double t = 0;
  EXPECT_EQ(RayTriangleHit({3, 1, 0}, {-1, -1, 2}, {4, 0, 0}, {0, 4, 0}, t), 0);
  EXPECT_EQ(t, 1);
  EXPECT_EQ(RayTriangleHit({0, 0, 0}, {-1, -1, 2}, {4, 0, 0}, {0, 4, 0}, t), 0) << "a ray of no length";
  EXPECT_EQ(t, 1);
}

// Through the side c the parameter is the hit point times the ray: 0.25 * 0.5 here for half of a ray of length 0.5.
TEST(RayTriangle, ThroughTheSideTheParameterIsNotDivided) {
  double t = 0;
  const Vector3 a(0, -1, 0.25);
  EXPECT_EQ(RayTriangleHit({0, 0, 0.5}, a, {4, 0, 0}, {0, 4, 0}, t), 1);
  EXPECT_EQ(t, 0.125);
  EXPECT_EQ(RayTriangleHit({0, 0, 0.125}, a, {4, 0, 0}, {0, 4, 0}, t), 1) << "the ray ends before the triangle";
  EXPECT_EQ(t, 0.03125);
  EXPECT_EQ(RayTriangleHit({0, 0, 8}, a, {4, 0, 0}, {0, 4, 0}, t), 0) << "the triangle is on the way";
  EXPECT_EQ(t, 2);
  EXPECT_EQ(RayTriangleHit({0, 0, -0.5}, a, {4, 0, 0}, {0, 4, 0}, t), 0);
  EXPECT_EQ(t, -0.125);
}

TEST(RayTriangle, NumbersThatAreNoneDoNotHit) {
  double t = 0;
  EXPECT_EQ(RayTriangleHit({kNaN, 0, 1}, {-1, -1, 0.5}, {4, 0, 0}, {0, 4, 0}, t), 0);
  EXPECT_EQ(RayTriangleHit({0, 0, 1}, {-1, -1, 0.5}, {kInfinity, 0, 0}, {0, 4, 0}, t), 0);
  EXPECT_EQ(RayTriangleHit({0, 0, kInfinity}, {-1, -1, 0.5}, {4, 0, 0}, {0, 4, 0}, t), 0);
}

TEST(RayQuad, IsSplitAlongTheDiagonalFromCornerOne) {
  double t = 0;
  const Vector3 o(1, 1, 1);
  const Vector3 p1(0, 0, 2);
  const Vector3 p2(2, 0, 2);
  const Vector3 p3(2, 2, 4);
  const Vector3 p4(0, 2, 2);
  // The diagonal rises to z = 4: right below it both halves meet at z = 3 over (1, 1).
  EXPECT_EQ(RayQuadHit({-0.4, 0.5, 8}, o, p1, p2, p3, p4, t), 1) << "half with corner 4";
  EXPECT_EQ(RayQuadHit({0.5, -0.4, 8}, o, p1, p2, p3, p4, t), 1) << "half with corner 2";
  EXPECT_EQ(RayQuadHit({40, 0, 8}, o, p1, p2, p3, p4, t), 0);
  EXPECT_NE(t, 1) << "the parameter of the second half";
  double second = 0;
  EXPECT_EQ(RayTriangleHit({40, 0, 8}, {1, -1, 1}, {0, 2, 2}, {-2, 0, 0}, second), 0);
  EXPECT_EQ(t, second);
}

TEST(RayOrder, FlatPrimitivesFirstAndTheLatestMaximumLast) {
  const auto order = [](std::vector<double> strips) {
    strips.insert(strips.begin(), 0);
    std::vector<int> list = PrimitiveOrder(strips);
    list.erase(list.begin());
    return list;
  };
  EXPECT_EQ(order({1, 1, 1}), (std::vector{1, 2, 3}));
  EXPECT_EQ(order({1, 12, 1, 24, 20, 2, 24, 1}), (std::vector{1, 3, 5, 6, 8, 2, 4, 7}));
  EXPECT_EQ(order({30, 12, 1}), (std::vector{2, 3, 1}));
  EXPECT_EQ(order({2, 2, 3}), (std::vector{1, 2, 3}));
  EXPECT_EQ(order({}), (std::vector<int>{}));
  std::mt19937 random(5);
  for (int n = 0; n < 200; ++n) {
    Model model(12, 1, 1, 40);
    std::vector<double> strips(13);
    for (std::size_t p = 1; p <= 12; ++p) strips[p] = model.cells.BorderCorners(p, 0, 0) = random() % 8;
    const std::vector<int> plain = reference::PlainOrder(reference::PlainStrips(model.cells, 12), 12);
    const std::vector<int> list = PrimitiveOrder(strips);
    for (std::size_t q = 1; q <= 12; ++q) ASSERT_EQ(list[q], plain[q]);
  }
}

// Thruster at the origin, plate 2 at z = 1 in front of plate 3 at z = 2.
Model TwoPlates() {
  Model model(3, 5, 5, 5);
  model.SetThruster({0, 0, 0});
  model.SetPlate(2, {0.25, 0.125, 1}, 1);
  model.SetPlate(3, {0.25, 0.125, 2}, 0.5);
  return model;
}

TEST(RayTracing, CellBehindAPlate) {
  Model model = TwoPlates();
  model.AddStrip(1, Model::Square({0, 0, 0.5}, 9));  // strips of the thruster stop nothing
  model.cells.CellData(1, 1, 1, 20) = 0.875;
  model.cells.CellData(1, 1, 1, 18) = 11;
  model.Run();
  EXPECT_EQ(model.report.ShadowStatusText, " Process: With shadow");
  EXPECT_EQ(model.Flag(2), 0);
  EXPECT_EQ(model.Distance(2), model.cells.CellData(2, 1, 1, 8));
  EXPECT_EQ(model.Flag(3), 2 + 1.0 / 1000);
  EXPECT_EQ(model.Distance(3), vNorm({0.25, 0.125, 2}) * 0.5);
  EXPECT_EQ(model.Flag(1), 0.875) << "the thruster's own cell keeps its flag";
  EXPECT_EQ(model.Distance(1), 11);
  EXPECT_EQ(model.report.raysCast, 2U);
  EXPECT_EQ(model.report.cellsShadowed, 1U);
  EXPECT_TRUE(model.state.computedOnce);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(RayTracing, OneFlatPrimitiveShadowsNothing) {
  Model model(2, 5, 5, 5);
  model.SetThruster({0, 0, 3});
  model.SetPlate(2, {0, 0, 0}, 2);
  model.SetCounts(2, 5, 5);
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) model.SetCell(2, i, j, {0.8 * i - 2.4, 0.8 * j - 2.4, 0}, i == 5 ? 61 : 60);
  }
  model.input.PlumeLimitAngle = 60;
  model.Run();
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) EXPECT_EQ(model.Flag(2, i, j), i == 5 ? 0.5 : 0);
  }
  EXPECT_EQ(model.report.raysCast, 20U);
  EXPECT_EQ(model.report.cellsBeyond, 5U);
}

TEST(RayTracing, NotHiddenChoosesTheMode) {
  Model model = TwoPlates();
  model.input.NotHidden = 1;
  model.Run();
  EXPECT_EQ(model.report.ShadowStatusText, " Process: No shadow");
  for (const int k : {1, 2, 3}) {
    EXPECT_EQ(model.Flag(k), 0) << "the thruster's own cell too";
    EXPECT_EQ(model.Distance(k), model.cells.CellData(k, 1, 1, 8));
  }
  EXPECT_EQ(model.report.raysCast, 0U);
  EXPECT_FALSE(model.state.computedOnce) << "nothing was computed";

  model.input.NotHidden = 2;  // no computation took place yet
  model.Run();
  EXPECT_EQ(model.report.ShadowStatusText, "before");
  EXPECT_EQ(model.Flag(3), 2.001);
  EXPECT_TRUE(model.state.computedOnce);

  model.Forget();
  model.Run();
  EXPECT_EQ(model.report.ShadowStatusText, "WARNING: Process with shadow flags from the previous run");
  EXPECT_EQ(model.Flag(2), -7);
  EXPECT_EQ(model.Flag(3), -7);

  model.input.NotHidden = 3;
  model.Run();
  EXPECT_EQ(model.report.ShadowStatusText, "before");
  EXPECT_EQ(model.Flag(3), 2.001);
}

TEST(RayTracing, NoShadowKeepsToTheRange) {
  Model model = TwoPlates();
  model.input.NotHidden = 1;
  model.input.OnlyPrimitive = 3;
  model.Run();
  EXPECT_EQ(model.Flag(2), -7);
  EXPECT_EQ(model.Flag(3), 0);
  model.Forget();
  model.input.OnlyPrimitive = 0;
  model.input.numberPrimWithVolumic = 2;
  model.Run();
  EXPECT_EQ(model.Flag(2), 0);
  EXPECT_EQ(model.Flag(3), -7);
}

TEST(RayTracing, OnlyPrimitiveIsTestedAgainstAll) {
  Model model = TwoPlates();
  model.input.OnlyPrimitive = 3;
  model.Run();
  EXPECT_EQ(model.Flag(2), -7);
  EXPECT_EQ(model.Flag(3), 2.001);
  model.Forget();
  model.input.OnlyPrimitive = 1;
  model.Run();
  EXPECT_EQ(model.Flag(1), -7) << "the thruster is never tested";
}

// Volumic slices stand behind the primitives: they are tested, but stop nothing.
TEST(RayTracing, ObstaclesEndWithThePrimitives) {
  Model model = TwoPlates();
  model.input.NumberOfPrimitives = 2;
  model.Run();
  EXPECT_EQ(model.Flag(3), 2.001);
  model = TwoPlates();
  model.input.NumberOfPrimitives = 2;
  model.SetCell(2, 1, 1, {0.25, 0.125, 3});
  model.Run();
  EXPECT_EQ(model.Flag(2), 0) << "plate 3 is before it but is no obstacle";
}

TEST(RayTracing, WithoutThrusterTheRaysLeaveFromTheOrigin) {
  Model model = TwoPlates();
  model.SetCell(1, 1, 1, {0.125, 0.25, 4});
  model.input.ThrusterPrimitive = 0;
  model.Run();
  EXPECT_EQ(model.Flag(1), 2.001) << "primitive 1 is like any other";
  EXPECT_EQ(model.Flag(2), 0);
  EXPECT_EQ(model.Flag(3), 2.001);
}

TEST(RayTracing, StripsEndingInZeroHaveAMark) {
  for (const int hit : {1, 9, 10, 11, 20, 30}) {
    Model model(3, 40, 1, 40);
    model.SetThruster({0, 0, 0});
    model.SetCounts(2, 40, 1);
    for (int s = 1; s <= 40; ++s) {
      model.SetCell(2, s, 1, {50, 50, 1});
      model.AddStrip(2, Model::Square({s == hit ? 0.0 : 9.0 + s, 0, 1}, 0.4));
    }
    model.SetPlate(3, {0.125, 0.25, 2}, 1);
    model.Run();
    const double code = hit % 10 == 0 ? hit + 0.111 : hit;
    EXPECT_EQ(model.Flag(3), 2 + code / 1000);
    if (hit == 10) {
      EXPECT_NEAR(model.Flag(3), 2.010111, 1e-12);
    }
  }
}

TEST(RayTracing, ARayThatEndsOnAnObstacleIsFree) {
  Model model(3, 1, 1, 1);
  model.SetThruster({0, 0, 0});
  model.SetPlate(2, {0, 0, 1}, 1);
  model.SetPlate(3, {0.25, 0.125, 1}, 0.0625);  // its cell lies on plate 2
  model.Run();
  EXPECT_EQ(model.Flag(3), 0);
  model.SetThruster({0.25, 0.125, 1});  // on plate 2 and 3
  model.SetCell(3, 1, 1, {0.25, 0.5, 3});
  model.Run();
  EXPECT_EQ(model.Flag(3), 0) << "an obstacle at the thruster point does not count";
}

// Eight columns round z; the thruster looks at it from x = 10.
TEST(RayTracing, FarSideOfACylinderIsShadowedByTheNearColumns) {
  Model model(2, 8, 1, 8);
  model.SetThruster({10, 0.0625, 0.25});
  model.SetCounts(2, 8, 1);
  const auto at = [](double column, double r, double z) {
    const double angle = 2 * std::numbers::pi * (column - 0.5) / 8;
    return Sight{r * std::cos(angle), r * std::sin(angle), z};
  };
  for (int s = 1; s <= 8; ++s) {
    model.SetCell(2, s, 1, at(s, 0.9, 0));
    model.AddStrip(2, {at(s - 0.5, 1, -1), at(s + 0.5, 1, -1), at(s + 0.5, 1, 1), at(s - 0.5, 1, 1)});
  }
  model.Run();
  // Columns 1 and 8 face the thruster; a cell lies inside of its own column, which does not count.
  EXPECT_EQ(model.Flag(2, 1), 0);
  EXPECT_EQ(model.Flag(2, 8), 0);
  for (const int s : {3, 4, 5, 6}) {
    EXPECT_GE(model.Flag(2, s), 2.001) << s;
    EXPECT_LE(model.Flag(2, s), 2.008) << s;
    EXPECT_NE(model.Flag(2, s), 2 + s / 1000.0) << "never its own column";
    EXPECT_LT(model.Distance(2, s), model.cells.CellData(2, s, 1, 8));
  }
}

// The search begins with the obstacle and one strip before the strip of the last hit, not with the nearest.
TEST(RayTracing, SearchBeginsAtTheLastHit) {
  Model model(4, 4, 1, 4);
  model.SetThruster({0, 0, 0});
  model.SetPlate(2, {0, 0, 1}, 1);
  model.SetPlate(3, {0, 0, 2}, 4);
  model.SetCounts(4, 3, 1);
  model.SetCell(4, 1, 1, {0.5, 0.25, 4});
  model.SetCell(4, 2, 1, {6, 0.25, 4});  // passes plate 2, is stopped by plate 3
  model.SetCell(4, 3, 1, {0.5, 0.25, 4});
  model.Run();
  EXPECT_EQ(model.Flag(4, 1), 2.001) << "the order of the list";
  EXPECT_EQ(model.Flag(4, 2), 3.001);
  EXPECT_EQ(model.Flag(4, 3), 3.001) << "the search begins with plate 3 now";

  Model strips(3, 4, 1, 4);
  strips.SetThruster({0, 0, 0});
  strips.SetCounts(2, 4, 1);
  for (int s = 1; s <= 4; ++s) {
    strips.SetCell(2, s, 1, {0, 0, 0});
    strips.AddStrip(2, Model::Square({s == 3 ? 2.0 : 0.0, 0, 1.0 + s}, s == 3 ? 3 : 1));
  }
  strips.SetCounts(3, 3, 1);
  strips.SetCell(3, 1, 1, {0.5, 0.25, 9});
  strips.SetCell(3, 2, 1, {6, 0.25, 9});
  strips.SetCell(3, 3, 1, {0.5, 0.25, 9});
  strips.Run();
  EXPECT_EQ(strips.Flag(3, 1), 2.001);
  EXPECT_EQ(strips.Flag(3, 2), 2.003);
  EXPECT_EQ(strips.Flag(3, 3), 2.002) << "one strip before the last hit";
}

// Column u of the obstacle rules the u-th strip tried, whichever strip that is.
TEST(RayTracing, ObstacleIsGivenUpAtTheFirstColumnBeyondTheLimit) {
  const auto flag = [](std::array<double, 3> angles, double limit, int hit) {
    Model model(3, 3, 2, 3);
    model.SetThruster({0, 0, 0});
    model.SetCounts(2, 3, 2);
    for (int s = 1; s <= 3; ++s) {
      model.SetCell(2, s, 1, {50, 50, 1}, 179);
      model.SetCell(2, s, 2, {50, 50, 1}, angles[static_cast<std::size_t>(s - 1)]);
      model.AddStrip(2, Model::Square({s == hit ? 0.0 : 9.0 + s, 0, 1}, 1));
    }
    model.SetPlate(3, {0.125, 0.25, 2}, 1, 10);
    model.input.PlumeLimitAngle = limit;
    model.Run();
    return model.Flag(3);
  };
  EXPECT_EQ(flag({20, 20, 20}, 60, 3), 2.003);
  EXPECT_EQ(flag({20, 60, 60}, 60, 3), 2.003) << "at the limit";
  EXPECT_EQ(flag({20, 61, 20}, 60, 3), 0) << "given up before strip 3";
  EXPECT_EQ(flag({20, 61, 20}, 60, 1), 2.001);
  EXPECT_EQ(flag({61, 20, 20}, 60, 1), 0);
  EXPECT_EQ(flag({200, 200, 200}, 180, 3), 2.003) << "never with a limit of 180";
  EXPECT_EQ(flag({200, 200, 200}, 179.5, 3), 2.003) << "179 of the first row is inside";
  EXPECT_EQ(flag({20, 179, 20}, 178, 3), 0);
}

TEST(RayTracing, WhatLiesOutsideOfTheArraysIsToldOnceAndLeftOut) {
  Model model = TwoPlates();
  model.cells.BorderCorners(2, 0, 0) = 9;  // of 5
  model.Run();
  EXPECT_EQ(model.Flag(3), 2.001);
  EXPECT_EQ(model.dialogs.Count("error fautea_SpaceApplicationRayTrac"), 1);
  EXPECT_EQ(model.dialogs.Count("Subscript out of range"), 1);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[1].title, "Error fautea_SpaceApplicationRayTrac");

  Model columns(3, 2, 1, 5);  // five strips, two columns
  columns.SetThruster({0, 0, 0});
  columns.SetCounts(2, 2, 1);
  for (int s = 1; s <= 5; ++s) columns.AddStrip(2, Model::Square({s == 2 ? 0.0 : 9.0, 0, 1}, 1));
  columns.SetPlate(3, {0.125, 0.25, 2}, 1, 10);
  columns.input.PlumeLimitAngle = 60;
  columns.Run();
  EXPECT_EQ(columns.Flag(3), 2.002);
  EXPECT_EQ(columns.dialogs.Count("Subscript out of range"), 1);

  Model many = TwoPlates();
  many.input.NumberOfPrimitives = 4;  // of 3
  many.input.numberPrimWithVolumic = 5;
  many.SetCounts(3, 7, 1);  // of 5
  many.dialogs.answers = std::deque<Answer>(100, Answer::Retry);
  many.Run();
  EXPECT_EQ(many.Flag(3), 2.001);
  EXPECT_EQ(many.Flag(3, 5), 0);
  EXPECT_EQ(many.dialogs.Count("error fautea_SpaceApplicationRayTrac"), 4);
}

TEST(RayTracing, EmptyModels) {
  Model model(1, 1, 1, 1);
  model.SetThruster({0, 0, 0});
  model.Run();
  EXPECT_EQ(model.report.raysCast, 0U);
  EXPECT_TRUE(model.state.computedOnce);
  model.input.NumberOfPrimitives = 0;
  model.input.numberPrimWithVolumic = 0;
  model.input.ThrusterPrimitive = 0;
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

#ifndef ORV_RANDOM_MODELS
#define ORV_RANDOM_MODELS 4000
#endif

// A cylinder, cone or sphere of n columns round an axis, with the centres of its cells on the round surface.
struct Round {
  Sight middle;
  Sight axis;
  Sight e1;
  Sight e2;
  double foot;  // radii
  double top;
  bool ball;
  Sight At(double u, double v) const {
    const double angle = 2 * std::numbers::pi * u;
    const double height = ball ? std::sin(std::numbers::pi * (v - 0.5)) : v - 0.5;
    const double radius = ball ? foot * std::cos(std::numbers::pi * (v - 0.5)) : foot + v * (top - foot);
    return middle + height * axis + radius * std::cos(angle) * e1 + radius * std::sin(angle) * e2;
  }
};

class RandomModel {
 public:
  explicit RandomModel(std::uint32_t seed) : chance_(seed), model(2 + chance_.Below(7), 14, 9, 14) {
    chance_.grid = chance_.OneIn(2);
    size_ = std::array{3.0, 3.0, 1.0, 0.01, 1e4}[static_cast<std::size_t>(chance_.Below(5))];
    model.SetThruster(chance_.OneIn(3) ? Sight{} : chance_.Point(size_));
    axis_ = chance_.Any(1);
    anyAngles_ = chance_.OneIn(4);
    if (chance_.OneIn(8)) model.input.ThrusterPrimitive = 0;
    if (chance_.OneIn(8)) --model.input.NumberOfPrimitives;
    origin_ = model.input.ThrusterPrimitive == 0 ? Sight{} : model.thruster;
    for (int k = 1; k <= model.cells.CellData.primitives(); ++k) AddPrimitive(k);
    for (int k = 1; k <= model.cells.CellData.primitives(); ++k) {
      if (k != model.input.ThrusterPrimitive && chance_.OneIn(3)) MoveCells(k);
    }
  }

 private:
  double Angle(const Sight& at) {
    if (anyAngles_) return chance_.Between(0, 181);
    const Sight ray = at - model.thruster;
    return std::acos(std::clamp(Dot(ray, axis_) / Length(ray) / Length(axis_), -1.0, 1.0)) * 180 / std::numbers::pi;
  }
  void AddPrimitive(int k) {
    if (k == model.input.ThrusterPrimitive) {
      model.AddStrip(k, chance_.Quadrilateral(origin_, size_));
      return model.SetCell(k, 1, 1, model.thruster);
    }
    if (chance_.OneIn(2)) return AddRound(k);
    const int n = 1 + chance_.Below(14);
    const int m = 1 + chance_.Below(9);
    model.SetCounts(k, n, m);
    const int strips = chance_.OneIn(2) ? 1 : chance_.OneIn(3) ? 2 : 1 + chance_.Below(14);
    Corners corners{};
    for (int s = 1; s <= strips; ++s) {
      corners = chance_.Quadrilateral(origin_, size_);
      quads_.push_back(corners);
      model.AddStrip(k, corners);
    }
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        const Sight at =
            corners[0] + (i - 0.5) / n * (corners[1] - corners[0]) + (j - 0.5) / m * (corners[3] - corners[0]);
        model.SetCell(k, i, j, at, Angle(at));
      }
    }
  }
  void AddRound(int k) {
    Round round{};
    round.middle = chance_.OneIn(5) ? origin_ : chance_.Point(size_);
    round.axis = chance_.Point(size_);
    const Sight side = Cross(round.axis, chance_.Any(1));
    round.e1 = 1 / Length(side) * side;
    const Sight other = Cross(round.axis, round.e1);
    round.e2 = 1 / Length(other) * other;
    round.foot = chance_.Between(0.1, 1) * size_;
    round.top = chance_.OneIn(3) ? 0.0 : chance_.OneIn(2) ? round.foot : chance_.Between(0.1, 1) * size_;
    round.ball = chance_.OneIn(4);
    const int n = 3 + chance_.Below(12);
    const int m = 1 + chance_.Below(9);
    model.SetCounts(k, n, m);
    for (int i = 1; i <= n; ++i) {
      const double low = (i - 1.0) / n;
      const double high = static_cast<double>(i) / n;
      const Corners corners = {round.At(low, 0), round.At(high, 0), round.At(high, 1), round.At(low, 1)};
      quads_.push_back(corners);
      model.AddStrip(k, corners);
      for (int j = 1; j <= m; ++j) {
        const Sight at = round.At((i - 0.5) / n, (j - 0.5) / m);
        model.SetCell(k, i, j, at, Angle(at));
      }
    }
  }
  // Hard rays in the place of the cells.
  void MoveCells(int k) {
    for (int i = 1; i <= model.cells.CountI(k); ++i) {
      for (int j = 1; j <= model.cells.CountJ(k); ++j) {
        const Sight at = chance_.End(origin_, quads_, size_);
        model.SetCell(k, i, j, at, Angle(at));
      }
    }
  }

  Chance chance_;
  double size_ = 1;
  Sight axis_;
  Sight origin_;
  bool anyAngles_ = false;
  std::vector<Corners> quads_;

 public:
  Model model;
};

// Flags and shadow distances of every cell, bit by bit, whatever the number of threads.
TEST(RayTracingModels, AgreeWithThePlainForm) {
  std::size_t shadowed = 0;
  std::size_t rays = 0;
  for (std::uint32_t seed = 0; seed < ORV_RANDOM_MODELS; ++seed) {
    const std::size_t threads = std::array<std::size_t, 3>{1, 2, 7}[seed / 64 % 3];
    const tbb::global_control control(tbb::global_control::max_allowed_parallelism, threads);
    RandomModel random(seed);
    Model& model = random.model;
    model.input.PlumeLimitAngle = std::array{180.0, 180.0, 60.0, 25.0}[seed % 4];
    model.input.NotHidden = std::array{0.0, 2.0, 3.0}[seed % 3];  // 2 computes: it is the first time
    if (seed % 5 == 0) model.input.OnlyPrimitive = static_cast<int>(seed / 5) % model.input.NumberOfPrimitives + 1;
    model.Forget();
    model.Run();
    const std::vector<std::uint64_t> shipped = model.Results();
    model.Forget();
    reference::PlainRayTracing(model.cells, model.input);
    ASSERT_TRUE(shipped == model.Results()) << "seed " << seed;
    ASSERT_TRUE(model.dialogs.boxes.empty());
    shadowed += model.report.cellsShadowed;
    rays += model.report.raysCast;
  }
  EXPECT_GT(shadowed, rays / 8);
  EXPECT_LT(shadowed, rays / 8 * 7);
}

// A model of many chunks: the caches pass from one to the next in order.
TEST(RayTracingModels, ManyCellsAreSearchedInOrder) {
  Chance chance(77);
  Model model(9, 150, 40, 150);
  model.SetThruster({0.1, 0.2, -4});
  for (int k = 2; k <= 9; ++k) {
    const double z = 0.5 * k;
    const int strips = k % 3 == 0 ? 1 : 30;
    for (int s = 1; s <= strips; ++s) model.AddStrip(k, Model::Square(chance.Any(2) + Sight{0, 0, z}, 0.4));
    model.SetCounts(k, 150, 40);
    for (int i = 1; i <= 150; ++i) {
      for (int j = 1; j <= 40; ++j) model.SetCell(k, i, j, {0.03 * i - 2, 0.1 * j - 2, z + 2}, 0.5 * (i + j));
    }
  }
  for (const double limit : {180.0, 60.0}) {
    model.input.PlumeLimitAngle = limit;
    model.Forget();
    reference::PlainRayTracing(model.cells, model.input);
    const std::vector<std::uint64_t> plain = model.Results();
    for (const std::size_t threads : {1, 2, 7}) {
      const tbb::global_control control(tbb::global_control::max_allowed_parallelism, threads);
      model.Forget();
      model.Run();
      ASSERT_TRUE(plain == model.Results()) << threads << " threads";
    }
    EXPECT_EQ(model.report.raysCast + model.report.cellsBeyond, 8U * 150 * 40);
    EXPECT_GT(model.report.cellsShadowed, 2000U);
  }
}

}  // namespace
}  // namespace orv
