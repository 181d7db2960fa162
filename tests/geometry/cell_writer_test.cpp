#include "geometry/cell_writer.h"

#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

class CellWriterTest : public ::testing::Test {
 protected:
  CellWriterTest() : prompt(dialogs), block(prompt, FailureLabels::Of("test")) {
    cells.CellData.Size(2, 4, 3, 30);
    cells.CellCorners.Size(2, 4, 3, 12);
  }

  static CellShape Shape() {
    CellShape shape;
    shape.centre = {1, 2, 3};
    shape.area = 4;
    shape.normal = {5, 6, 7};
    shape.SetFlatCorners({0.25, 0, 0}, {0, 0.5, 0});
    return shape;
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  FailureBlock block;
  Cells cells;
};

TEST_F(CellWriterTest, WritesQuantitiesAndCornersAndReadsThemBack) {
  CellWriter writer(cells, block, 2);
  writer.Write(4, 3, Shape());
  for (int q = 1; q <= 7; ++q) EXPECT_EQ(cells.CellData(2, 4, 3, q), q);
  EXPECT_EQ(cells.CellData(2, 4, 3, 8), kFarDistance);
  const double corners[12] = {0.75, 1.5, 3, 1.25, 1.5, 3, 1.25, 2.5, 3, 0.75, 2.5, 3};
  for (int n = 1; n <= 12; ++n) EXPECT_EQ(cells.CellCorners(2, 4, 3, n), corners[n - 1]) << n;
  const CellShape read = writer.Read(4, 3);
  EXPECT_EQ(read.area, 4);
  EXPECT_EQ(read.normal(3), 7);
  EXPECT_EQ(read.corners[2](2), 2.5);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellWriterTest, EachElementOutsideTheBoundsFailsAlone) {
  dialogs.answers = std::deque<Answer>(20, Answer::Retry);
  CellWriter writer(cells, block, 2);
  writer.Write(5, 1, Shape());
  EXPECT_EQ(dialogs.Count("error faute"), 20);
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 20);
  writer.SetQuantity(1, 4, 8, 1);  // told and ignored
  writer.SetQuantity(1, 4, 8, 1);
  EXPECT_EQ(dialogs.Count("error faute"), 21);
  EXPECT_EQ(writer.Read(5, 1).area, 0);
}

TEST_F(CellWriterTest, AnArrayThatIsTooSmallTakesWhatItCan) {
  cells.CellCorners.Size(2, 1, 3, 12);
  dialogs.answers = std::deque<Answer>(100, Answer::Retry);
  CellWriter writer(cells, block, 2);
  writer.Write(2, 3, Shape());
  EXPECT_EQ(cells.CellData(2, 2, 3, 6), 6);
  EXPECT_EQ(dialogs.Count("error faute"), 12);
}

TEST_F(CellWriterTest, RunsOnEveryCellInsideAndTellsTheOthers) {
  OnEachElement(block, cells.CellData, {1, 4, 3}, 29, [](int i, int j, double& value) { value = 10 * i + j; });
  EXPECT_EQ(cells.CellData(1, 4, 3, 29), 43);
  EXPECT_EQ(cells.CellData(1, 1, 1, 29), 11);
  EXPECT_EQ(cells.CellData(1, 0, 1, 29), 0);
  EXPECT_TRUE(dialogs.boxes.empty());
  dialogs.answers = std::deque<Answer>(100, Answer::Retry);
  OnEachPair(block, cells.CellData, {1, 6, 2}, 1, 2, [](int i, int, double& a, double& b) {
    a = i;
    b = -i;
  });
  EXPECT_EQ(cells.CellData(1, 4, 2, 2), -4);
  EXPECT_EQ(dialogs.Count("error faute"), 4);
  OnEachElement(block, cells.CellData, {1, 2, 4}, 3, [](int, int j, double& value) { value = j; });
  EXPECT_EQ(cells.CellData(1, 2, 3, 3), 3);
  EXPECT_EQ(dialogs.Count("error faute"), 6);
}

TEST(CellShape, MeanAndAreaOfASkewQuadrilateral) {
  CellShape shape;
  shape.corners = {Vector3(0, 0, 0), Vector3(2, 0, 0), Vector3(2, 1, 0), Vector3(0, 3, 0)};
  EXPECT_EQ(shape.MeanOfCorners()(1), 1);
  EXPECT_EQ(shape.MeanOfCorners()(2), 1);
  EXPECT_DOUBLE_EQ(shape.AreaOfCorners(), 4);
}

}  // namespace
}  // namespace orv
