#include "geometry/cell_borders.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "geometry/cell_walk.h"
#include "geometry/display_model.h"
#include "geometry/geometry_model.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

CellBordersOutput Borders(DisplayModel& model, int rotating = 0, std::array<double, 4> shift = {}) {
  return a_SpaceApplicationCellsBordersQater(model.cells, {model.count, rotating, shift}, model.lists, model.prompt);
}

// The corners of the outline of cell n, as DisplayModel numbers them.
std::vector<float> CornersOf(const PointLists& lists, int n) {
  std::vector<float> corners;
  for (int point = 0; point < 5; ++point) corners.push_back(lists.TraceList(1, 6 * n + point));
  return corners;
}
bool IsForward(const PointLists& lists, int n) {
  return CornersOf(lists, n) == std::vector<float>{1, 2, 3, 4, 1};
}
bool IsReversed(const PointLists& lists, int n) {
  return CornersOf(lists, n) == std::vector<float>{1, 4, 3, 2, 1};
}

TEST(CellBorders, ACellTakesFivePointsAndABreak) {
  DisplayModel model({{2, 3}, {1, 1}});
  model.NumberCorners();
  Borders(model);
  const ListTable& list = model.lists.TraceList;
  EXPECT_EQ(model.lists.TraceCount, 6 * 7 - 1);
  EXPECT_EQ(model.lists.OutlineCount, 6 * 7);
  const std::vector<float> names = {111, 112, 113, 121, 122, 123, 211};  // i outer, j inner
  for (int n = 0; n < 7; ++n) {
    SCOPED_TRACE(n);
    EXPECT_TRUE(IsForward(model.lists, n));
    for (int point = 0; point < 5; ++point) {
      EXPECT_EQ(list(0, 6 * n + point), names[static_cast<std::size_t>(n)]);
      EXPECT_EQ(list(2, 6 * n + point), -list(1, 6 * n + point));
      EXPECT_EQ(list(3, 6 * n + point), 0);
    }
    for (int row = 0; row < 3; ++row) EXPECT_EQ(list(row, 6 * n + 5), 0);
    EXPECT_EQ(list(3, 6 * n + 5), kPenUp);
  }
  EXPECT_EQ(list(3, 42), 0);
  EXPECT_THAT(model.dialogs.boxes, IsEmpty());
}

TEST(CellBorders, TypesWithInwardCornersAreReversed) {
  for (const double code : {0.0, 1.0, 3.0, 3.5, 8.0, 14.0, 16.0}) {
    DisplayModel model({{1, 1, code}});
    model.NumberCorners();
    Borders(model);
    EXPECT_TRUE(IsForward(model.lists, 0)) << code;
  }
  for (const double code : {2.0, 4.0, 5.0}) {
    DisplayModel model({{1, 1, code}});
    model.NumberCorners();
    Borders(model);
    EXPECT_TRUE(IsReversed(model.lists, 0)) << code;
  }
}

TEST(CellBorders, ACylinderTurnsWithTheSignOfItsArea) {
  DisplayModel model({{1, 3, 7}, {1, 1, 1}});
  model.NumberCorners();
  model.cells.CellData(1, 1, 1, 4) = 2;
  model.cells.CellData(1, 1, 2, 4) = -2;
  model.cells.CellData(2, 1, 1, 4) = -2;
  Borders(model);
  EXPECT_TRUE(IsForward(model.lists, 0));
  EXPECT_TRUE(IsReversed(model.lists, 1));
  EXPECT_TRUE(IsForward(model.lists, 2)) << "an area of 0 is not negative";
  EXPECT_TRUE(IsForward(model.lists, 3)) << "only cylinders";
}

TEST(CellBorders, TheFacesOfATwoSidedPlateAreWoundAgainstEachOther) {
  DisplayModel model({{1, 4, 15}, {1, 4, 15.5}, {1, 5, 15}, {1, 5, 15.5}});
  model.NumberCorners();
  Borders(model);
  const std::vector<bool> reversed = {false, false, true,  true,         // above 2
                                      true,  true,  false, false,        // up to 2
                                      false, false, true,  true,  true,  // above 2.5
                                      true,  true,  false, false, false};
  for (int n = 0; n < 18; ++n) {
    EXPECT_EQ(IsReversed(model.lists, n), reversed[static_cast<std::size_t>(n)]) << n;
    EXPECT_EQ(IsForward(model.lists, n), !reversed[static_cast<std::size_t>(n)]) << n;
  }
}

// What geometry builds, seen from the side that the normal of a cell points to, has outlines that run anticlockwise.
TEST(CellBorders, OutlinesRunAnticlockwiseAboutTheNormal) {
  GeometryModel model({"Plate rect2sides size -1 1 -2 2 1 1 0.05 cells 2 4 T 0 0 2", "Panel rect 1 1 2 2",
                       "Ring disc size 5 2 1 cells 8 3", "Cone con size 2 4 1 cells 8 2",
                       "Ball sph size 2 4 1 cells 12 8", "Tube cyl size 2 3 1 cells 8 3"});
  model.Build();
  PointLists lists;
  const int count = model.cells.numberPrimWithVolumic;
  a_SpaceApplicationCellsBordersQater(model.cells, {count, 0, {}}, lists, model.prompt);
  for (const CellStretch& stretch : WalkCells(model.cells, count, kListEntries).stretches) {
    SCOPED_TRACE(stretch.primitive);
    ASSERT_GT(stretch.cells, 0);
    OnCells(stretch, [&](int i, int j, int n) {
      const auto point = [&](int p) {
        const auto x = [&](int row) { return static_cast<double>(lists.TraceList(row, 6 * n + p)); };
        return Vector3(x(0), x(1), x(2));
      };
      Vector3 first;
      Vector3 second;
      vCombine(point(2), 1, point(0), -1, first);  // the diagonals
      vCombine(point(3), 1, point(1), -1, second);
      Vector3 cross;
      vcross(first, second, cross);
      EXPECT_GT(vDot(cross, model.Normal(stretch.primitive, i, j)), 0) << i << ' ' << j;
    });
  }
}

TEST(CellBorders, TheRotatingPrimitiveIsRemembered) {
  DisplayModel model({{2, 2}, {3, 2}, {1, 2}});
  const CellBordersOutput output = Borders(model, 2);
  EXPECT_EQ(output.rotating.first, 24);
  EXPECT_EQ(output.rotating.entries, 36);
  ASSERT_EQ(output.primitives.size(), 4U);
  EXPECT_EQ(output.primitives[3].first, 60);
  EXPECT_EQ(output.primitives[3].entries, 12);
  DisplayModel still({{2, 2}});
  EXPECT_EQ(Borders(still, 0).rotating.entries, 0);
}

TEST(CellBorders, TheShiftIsTakenOffEveryPoint) {
  DisplayModel model({{1, 1}});
  model.NumberCorners();
  Borders(model, 0, {1, 11, 0.5, -2});
  EXPECT_EQ(model.lists.TraceList(0, 0), 100);
  EXPECT_EQ(model.lists.TraceList(1, 1), 1.5);
  EXPECT_EQ(model.lists.TraceList(2, 1), 0);
  EXPECT_EQ(model.lists.TraceList(0, 5), 0) << "a break stays at 0";
  DisplayModel plain({{1, 1}});
  plain.NumberCorners();
  Borders(plain, 0, {2, 11, 0.5, -2});
  EXPECT_EQ(plain.lists.TraceList(0, 0), 111);
}

TEST(CellBorders, WritesBehindWhatTheListHolds) {
  for (const auto& [last, first] : {std::pair{kNoEntry, 0}, {0, 0}, {11, 12}}) {
    DisplayModel model({{1, 1}});
    model.NumberCorners();
    model.lists.TraceCount = last;
    Borders(model, 1);
    EXPECT_EQ(model.lists.TraceList(0, first), 111) << last;
    EXPECT_EQ(model.lists.TraceList(3, first + 5), kPenUp) << last;
    EXPECT_EQ(model.lists.TraceCount, first + 5);
    EXPECT_EQ(model.lists.OutlineCount, first + 6);
  }
}

TEST(CellBorders, AModelWithoutCellsLeavesTheListAlone) {
  DisplayModel model({{0, 3}});
  Borders(model);
  EXPECT_EQ(model.lists.TraceCount, kNoEntry);
  EXPECT_EQ(model.lists.OutlineCount, 0);
  EXPECT_THAT(model.dialogs.boxes, IsEmpty());
}

TEST(CellBorders, BeyondTheTableTheRestIsLeftOutAndToldOnce) {
  DisplayModel exact({{174762 / 2, 2}});
  Borders(exact);
  EXPECT_EQ(exact.lists.TraceCount, 6 * 174762 - 1);
  EXPECT_THAT(exact.dialogs.boxes, IsEmpty());

  DisplayModel model({{174762 / 2, 2}, {1, 3}, {2, 2}});
  model.NumberCorners();
  const CellBordersOutput output = Borders(model, 3);
  EXPECT_EQ(model.lists.TraceCount, 6 * 174762 - 1);
  EXPECT_LT(model.lists.TraceCount, kListEntries);
  EXPECT_EQ(model.lists.OutlineCount, 6 * 174762);
  EXPECT_EQ(output.rotating.entries, 0);
  EXPECT_EQ(model.dialogs.Count("error fautea_SpaceApplicationCellsBordersQater"), 1);
  EXPECT_EQ(model.dialogs.Count("Subscript out of range"), 1);

  DisplayModel cut({{174760 / 2, 2}, {2, 3}});
  cut.NumberCorners();
  EXPECT_EQ(Borders(cut, 2).rotating.entries, 12);
  EXPECT_EQ(cut.lists.TraceList(0, 6 * 174761), 212);
  EXPECT_EQ(cut.lists.TraceList(3, 6 * 174762), 0);
}

TEST(CellBorders, ACoordinateBeyondSinglePrecisionIsToldAndStandsAsZero) {
  DisplayModel model({{1, 2}});
  model.NumberCorners();
  model.cells.CellCorners(1, 1, 1, 1) = 1e300;
  model.cells.CellCorners(1, 1, 2, 4) = std::numeric_limits<double>::quiet_NaN();
  Borders(model);
  EXPECT_EQ(model.lists.TraceList(0, 0), 0);
  EXPECT_EQ(model.lists.TraceList(0, 7), 0);
  EXPECT_EQ(model.lists.TraceList(0, 8), 112);
  EXPECT_EQ(model.dialogs.Count("Overflow"), 1);
}

// --- the walk over the cells -----------------------------------------------------------------------------------------

TEST(CellWalk, CountsFollowArraysAndRoom) {
  DisplayModel model({{2, 3}, {4, 5}, {1, 1}});
  const CellWalk all = WalkCells(model.cells, 3, 100);
  EXPECT_TRUE(all.whole);
  EXPECT_EQ(all.cells, 27);
  EXPECT_EQ(all.stretches[2].first, 26);
  const CellWalk cut = WalkCells(model.cells, 3, 10);
  EXPECT_FALSE(cut.whole);
  EXPECT_EQ(cut.cells, 10);
  EXPECT_EQ(cut.stretches[1].cells, 4);
  EXPECT_EQ(cut.stretches[2].cells, 0);
  std::vector<int> seen;
  OnCells(cut.stretches[1], [&](int i, int j, int n) { seen.push_back(100 * n + 10 * i + j); });
  EXPECT_THAT(seen, ElementsAre(611, 712, 813, 914));
  model.cells.CellData(2, 0, 0, 1) = 1e12;
  const CellWalk beyond = WalkCells(model.cells, 3, 100);
  EXPECT_FALSE(beyond.whole);
  EXPECT_EQ(beyond.stretches[1].countI, 5);
}

TEST(CellWalk, TheRadiusIsTheFarthestCentre) {
  DisplayModel model({{1, 1}, {1, 2}});
  model.cells.CellData(1, 1, 1, 1) = 1;
  model.cells.CellData(2, 1, 2, 2) = -3;
  model.cells.CellData(2, 1, 2, 3) = 4;
  EXPECT_DOUBLE_EQ(CellRadius(model.cells, {}), 5);
  EXPECT_DOUBLE_EQ(CellRadius(model.cells, {0, -3, 0}), 4);
  DisplayModel none({});
  EXPECT_EQ(CellRadius(none.cells, {}), 0);
}

}  // namespace
}  // namespace orv::testing
