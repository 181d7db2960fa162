#include "plume/surface_cells.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(SurfaceCells, RowLimitsByTypeCode) {
  struct Case {
    double typeCode;
    int last;
  };
  const Case cases[] = {{0, 20},   {1, 20},  {2, 20},  {3, 20},    {3.5, 20}, {4, 20},    {5, 20},  {7, 20},
                        {7.9, 20}, {8, 18},  {9, 18},  {10, 18},   {11, 18},  {11.5, 20}, {12, 17}, {12.5, 20},
                        {13, 17},  {14, 16}, {15, 20}, {15.5, 20}, {16, 20},  {17, 20}};
  for (const Case& c : cases) EXPECT_EQ(LastRowOfEffects(c.typeCode, 20), c.last) << c.typeCode;
}

TEST(SurfaceCells, TypesAboveSixteenHaveNoEffects) {
  EXPECT_TRUE(HasEffects(0));
  EXPECT_TRUE(HasEffects(15.5));
  EXPECT_TRUE(HasEffects(16));
  EXPECT_FALSE(HasEffects(16.5));
  EXPECT_FALSE(HasEffects(17));
}

TEST(SurfaceCells, SecondFaceBeginsBehindTheHalf) {
  EXPECT_FALSE(OnSecondFace(15, 5, 10));
  EXPECT_TRUE(OnSecondFace(15, 6, 10));
  EXPECT_TRUE(OnSecondFace(15.5, 6, 10));
  EXPECT_FALSE(OnSecondFace(15.5, 1, 2));
  EXPECT_FALSE(OnSecondFace(16, 6, 10));
  EXPECT_FALSE(OnSecondFace(14.9, 6, 10));
  EXPECT_FALSE(OnSecondFace(1, 6, 10));
  // With an odd count the middle column lies behind the half.
  EXPECT_FALSE(OnSecondFace(15, 3, 7));
  EXPECT_TRUE(OnSecondFace(15, 4, 7));
}

class SurfaceCellsModel : public ::testing::Test {
 protected:
  SurfaceCellsModel() {
    cells.CellData.Size(3, 4, 5, 120);
    cells.CellData(2, 0, 0, 1) = 3;
    cells.CellData(2, 0, 0, 2) = 4;
    cells.CellData(3, 0, 0, 1) = 9;
    cells.CellData(3, 0, 0, 2) = 99;
  }
  Cells cells;
};

TEST_F(SurfaceCellsModel, RangeIsCutAtTheArrays) {
  EXPECT_EQ(RangeOf(cells, 2).countI, 3);
  EXPECT_EQ(RangeOf(cells, 2).countJ, 4);
  EXPECT_EQ(RangeOf(cells, 3).countI, 4);
  EXPECT_EQ(RangeOf(cells, 3).countJ, 5);
  cells.CellData(3, 4, 5, 19) = 7;
  EXPECT_EQ(cells.CellData.plane(19, 3)[RangeOf(cells, 3).at(4, 5)], 7);
}

TEST_F(SurfaceCellsModel, ClearsOneQuantityOfOnePrimitive) {
  for (int p = 2; p <= 3; ++p) {
    for (int i = 0; i <= 4; ++i) {
      for (int j = 0; j <= 5; ++j) cells.CellData(p, i, j, 19) = cells.CellData(p, i, j, 20) = 1;
    }
  }
  ClearQuantity(cells, 2, 19);
  for (int i = 0; i <= 4; ++i) {
    for (int j = 0; j <= 5; ++j) {
      const bool cell = i >= 1 && i <= 3 && j >= 1 && j <= 4;
      EXPECT_EQ(cells.CellData(2, i, j, 19), cell ? 0 : 1) << i << " " << j;
      EXPECT_EQ(cells.CellData(2, i, j, 20), 1);
      EXPECT_EQ(cells.CellData(3, i, j, 19), 1);
    }
  }
}

}  // namespace
}  // namespace orv
