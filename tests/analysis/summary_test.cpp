#include "analysis/summary.h"

#include <gtest/gtest.h>

#include "analysis/run_fixture.h"

namespace orv::testing {
namespace {

constexpr int kQuantity = 13;

class SummaryTest : public RunFixture {
 protected:
  // One primitive of n x m cells with areas and values given row by row.
  void Fill(int n, int m, const std::vector<double>& areas, const std::vector<double>& values, int cellsJ = 10) {
    run.cells.CellData.Size(3, 10, cellsJ, 120);
    run.cells.numberPrimWithVolumic = 1;
    run.cells.CellData(1, 0, 0, 1) = n;
    run.cells.CellData(1, 0, 0, 2) = m;
    std::size_t k = 0;
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j, ++k) {
        run.cells.CellData(1, i, j, 4) = areas[k];
        run.cells.CellData(1, i, j, kQuantity) = values[k];
      }
    }
  }
  double Stored(int j) const { return run.cells.CellData(1, 0, j, kQuantity); }
};

TEST_F(SummaryTest, ExtremesSumAndIntegral) {
  Fill(2, 3, {1, 2, -3, 0.5, 0.25, 4}, {5, -1, 2, 8, 0, 3});
  const QuantitySummary s = SummariseQuantity(run, 1, kQuantity);
  EXPECT_EQ(s.Min, -1);
  EXPECT_EQ(s.Max, 8);
  EXPECT_EQ(s.Sum, 17);
  EXPECT_EQ(s.Integral, 5 - 2 + 6 + 4 + 0 + 12);
  EXPECT_FALSE(s.twoSided);
  EXPECT_EQ(Stored(1), -1);
  EXPECT_EQ(Stored(2), 8);
  EXPECT_EQ(Stored(3), 17);
  EXPECT_EQ(Stored(4), 25);
  EXPECT_EQ(PrimitiveArea(run, 1), 10.75);
}

TEST_F(SummaryTest, ExtremesStartFromTheFirstCell) {
  Fill(1, 2, {1, 1}, {4, 7});
  EXPECT_EQ(SummariseQuantity(run, 1, kQuantity).Min, 4);
  Fill(1, 2, {1, 1}, {-4, -7});
  const QuantitySummary s = SummariseQuantity(run, 1, kQuantity);
  EXPECT_EQ(s.Max, -4);
  EXPECT_EQ(s.Min, -7);
}

TEST_F(SummaryTest, ATwoSidedPrimitiveHasTwoHalves) {
  // The first cell lies between the extremes of both halves.
  Fill(2, 4, {1, 1, 1, 1, 1, 1, 1, 1}, {5, 2, 9, 4, 7, 6, 1, 8});
  run.cells.CellData(1, 0, 0, 10) = 15;
  const QuantitySummary s = SummariseQuantity(run, 1, kQuantity);
  EXPECT_TRUE(s.twoSided);
  EXPECT_EQ(s.Min, 1);
  EXPECT_EQ(s.Max, 9);
  EXPECT_EQ(s.MinFirst, 2);
  EXPECT_EQ(s.MaxFirst, 7);
  EXPECT_EQ(s.MinSecond, 1);
  EXPECT_EQ(s.MaxSecond, 9);
  const double stored[8] = {1, 9, 42, 42, 2, 7, 1, 9};
  for (int j = 1; j <= 8; ++j) EXPECT_EQ(Stored(j), stored[j - 1]) << j;
}

TEST_F(SummaryTest, OnlyCode15IsTwoSided) {
  for (const double code : {0.0, 1.0, 14.0, 16.0}) {
    Fill(1, 2, {1, 1}, {4, 7});
    run.cells.CellData(1, 0, 0, 10) = code;
    EXPECT_FALSE(SummariseQuantity(run, 1, kQuantity).twoSided) << code;
    EXPECT_EQ(Stored(5), 0);
  }
}

TEST_F(SummaryTest, TheThrusterCountsWithItsFirstCell) {
  Fill(2, 2, {2, 1, 1, 1}, {3, 10, -10, 5});
  run.thruster.ThrusterPrimitive = 1;
  const QuantitySummary s = SummariseQuantity(run, 1, kQuantity);
  EXPECT_EQ(s.Min, 3);
  EXPECT_EQ(s.Max, 3);
  EXPECT_EQ(s.Sum, 3);
  EXPECT_EQ(s.Integral, 6);
}

TEST_F(SummaryTest, ZerosStayZeros) {
  Fill(2, 2, {1, 1, 1, 1}, {0, 0, 0, 0});
  const QuantitySummary s = SummariseQuantity(run, 1, kQuantity);
  EXPECT_TRUE(s.AllZero());
  for (int j = 1; j <= 8; ++j) EXPECT_EQ(Stored(j), 0);
}

TEST_F(SummaryTest, ASecondSummaryTellsThePresentValues) {
  Fill(2, 2, {1, 1, 1, 1}, {1, 2, 3, 4});
  SummariseQuantity(run, 1, kQuantity);
  EXPECT_EQ(Stored(3), 10);
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 2; ++j) run.cells.CellData(1, i, j, kQuantity) = 0;
  }
  EXPECT_TRUE(SummariseQuantity(run, 1, kQuantity).AllZero());
  for (int j = 1; j <= 4; ++j) EXPECT_EQ(Stored(j), 0) << j;
}

TEST_F(SummaryTest, CountsBeyondTheArraysAreCut) {
  Fill(1, 2, {1, 1}, {4, 7}, 5);
  run.cells.CellData(1, 0, 0, 1) = 1e9;
  run.cells.CellData(1, 0, 0, 2) = 1e9;
  EXPECT_EQ(SummariseQuantity(run, 1, kQuantity).Sum, 11);
  EXPECT_EQ(PrimitiveArea(run, 1), 2);
}

TEST_F(SummaryTest, NoCellsNoSummary) {
  Fill(1, 1, {1}, {4});
  run.cells.CellData(1, 0, 0, 2) = 0;
  EXPECT_TRUE(SummariseQuantity(run, 1, kQuantity).AllZero());
  EXPECT_EQ(PrimitiveArea(run, 1), 0);
}

TEST_F(SummaryTest, ARunIsCountedCellByCell) {
  Fill(1, 6, {1, 1, 1, 1, 1, 1}, {3e12, 0, 7e13, 9e14, 1e15, 5e9});
  const double flags[6] = {0, 0, 0, 0.5, 3.002, 1.001};
  for (int j = 1; j <= 6; ++j) run.cells.CellData(1, 1, j, 20) = flags[j - 1];
  const RunSummary s = SummariseRun(run);
  EXPECT_EQ(s.primitives, 1);
  EXPECT_EQ(s.cells, 6);
  EXPECT_EQ(s.lit, 3);
  EXPECT_EQ(s.outside, 1);
  EXPECT_EQ(s.shadowed, 2);
  EXPECT_EQ(s.densityMin, 3e12);
  EXPECT_EQ(s.densityMax, 7e13);
}

TEST_F(SummaryTest, OfAWholeRun) {
  LoadAndRun();
  const RunSummary s = SummariseRun(run);
  EXPECT_EQ(s.primitives, 3);
  EXPECT_EQ(s.cells, 32);
  EXPECT_EQ(s.lit + s.shadowed + s.outside, 32);
  // Plate 1 hides the four inner cells of plate 2.
  EXPECT_EQ(s.outside, 0);
  EXPECT_EQ(s.shadowed, 4);
  EXPECT_NEAR(PrimitiveArea(run, 3), 4, 1e-12);
  const QuantitySummary plate = SummariseQuantity(run, 2, 13);
  EXPECT_GT(plate.Min, 0);
  EXPECT_GT(plate.Max, plate.Min);
  EXPECT_NEAR(plate.Integral, plate.Sum / 16, 1e-9 * plate.Integral);
}

}  // namespace
}  // namespace orv::testing
