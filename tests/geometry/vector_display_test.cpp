#include "geometry/vector_display.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "geometry/display_model.h"

namespace orv::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FloatEq;
using ::testing::FloatNear;
using ::testing::IsEmpty;

class VectorDisplayTest : public ::testing::Test {
 protected:
  VectorDisplayTest() : labels(121) {
    labels[13] = "Density (m-3)";
    labels[15] = "JcurrentDensity(R) ( A/m² )";
    labels[19] = "Sputtering (m/s)";
  }

  // Shows the values as quantity 13 of one primitive in a row.
  std::vector<float> Show(const std::vector<double>& values, double logScale = 0, int firstExcluded = 0,
                          int excluded = 0) {
    model = std::make_unique<DisplayModel>(std::vector<DisplayModel::Size>{{1, static_cast<int>(values.size())}});
    model->SetValues(13, values);
    input.NumberOfPrimitives = 1;
    input.LogScale = logScale;
    input.firstExcluded = firstExcluded;
    input.excludedCount = excluded;
    Run();
    return Row();
  }
  void Run() {
    model->lists.rotation = rotation;
    title = start;
    a_SpaceVECTOROpenGL(input, model->cells, labels, title, model->lists, model->prompt);
  }
  std::vector<float> Row() const {
    const auto row = model->lists.PointList.row(0);
    return {row.begin(), row.begin() + model->lists.NumberPoints + 1};
  }
  const LegendRange& Legend() const { return model->lists.legend; }
  const AutoRotation& Frames() const { return model->lists.rotation; }
  void ExpectScale(double min, double max) const {
    EXPECT_NEAR(Legend().LegendMin, min, 1e-6 * std::max(1.0, std::abs(min)));
    EXPECT_NEAR(Legend().LegendMax, max, 1e-6 * std::max(1.0, std::abs(max)));
    EXPECT_EQ(Legend().ScaleMin, Legend().LegendMin);
    EXPECT_EQ(Legend().ScaleMax, Legend().LegendMax);
  }

  std::vector<std::string> labels;
  std::unique_ptr<DisplayModel> model;
  VectorDisplayInput input;
  AutoRotation rotation;  // before the display
  std::string start = "Title";
  std::string title;
};

// --- linear ----------------------------------------------------------------------------------------------------------

TEST_F(VectorDisplayTest, ValuesRunFromZeroToOne) {
  EXPECT_THAT(Show({2, 4, 10, 3}), ElementsAre(0, 0.25F, 1, 0.125F));
  ExpectScale(2, 10);
  EXPECT_EQ(Legend().LogScale, 0);
  EXPECT_EQ(Legend().HasNonPositive, 0);
  EXPECT_EQ(Legend().unit, "m-3");
}

TEST_F(VectorDisplayTest, NegativeValuesHaveTheirPlace) {
  EXPECT_THAT(Show({-3, 0, 1}), ElementsAre(0, 0.75F, 1));
  ExpectScale(-3, 1);
  EXPECT_EQ(Legend().HasNonPositive, 0) << "only a logarithm has trouble with them";
}

TEST_F(VectorDisplayTest, AConstantColumnKeepsItsValues) {
  EXPECT_THAT(Show({7, 7, 7}), Each(7));
  ExpectScale(7, 7);
  EXPECT_EQ(title, "Title M  Density (m-3) Scale  7.  ->  7. ");
}

TEST_F(VectorDisplayTest, ColumnZeroIsTheDensity) {
  model = std::make_unique<DisplayModel>(std::vector<DisplayModel::Size>{{1, 2}, {2, 1}});
  model->SetValues(13, {1, 2, 3, 5});
  model->SetValues(15, {8, 4, 4, 0});
  input.NumberOfPrimitives = 2;
  Run();
  EXPECT_THAT(Row(), ElementsAre(0, 0.25F, 0.5F, 1));
  input.column = 15;
  Run();
  EXPECT_THAT(Row(), ElementsAre(1, 0.5F, 0.5F, 0));
  EXPECT_EQ(Legend().unit, "A/m²");
}

TEST_F(VectorDisplayTest, PrimitivesFollowEachOtherWithTheSecondIndexInside) {
  model = std::make_unique<DisplayModel>(std::vector<DisplayModel::Size>{{2, 2}, {1, 1}});
  double value = 0;
  model->ForEachCell([&](int k, int i, int j) { model->cells.CellData(k, i, j, 13) = value++; });
  model->lists.NumberPoints = 4;
  input.NumberOfPrimitives = 2;
  Run();
  EXPECT_THAT(Row(), ElementsAre(0, 0.25F, 0.5F, 0.75F, 1));
}

TEST_F(VectorDisplayTest, TheExcludedStretchIsFullAndOffTheScale) {
  EXPECT_THAT(Show({100, -50, 2, 4, 3}, 0, 0, 2), ElementsAre(1, 1, 0, 1, 0.5F));
  ExpectScale(2, 4);
  EXPECT_THAT(Show({2, 100, 4, 3}, 0, 1, 1), ElementsAre(0, 1, 1, 0.5F));
  EXPECT_THAT(Show({6, 6, 9}, 0, 2, 5), ElementsAre(6, 6, 1)) << "a stretch that runs over the end";
  EXPECT_THAT(Show({2, 3}, 0, 0, 2), ElementsAre(1, 1)) << "nothing is left for a scale";
  ExpectScale(0, 0);
}

TEST_F(VectorDisplayTest, WithoutCellsThereIsATitle) {
  Show({});
  ExpectScale(0, 0);
  EXPECT_EQ(title, "Title M  Density (m-3) Scale  0.  ->  0. ");
}

// --- title -----------------------------------------------------------------------------------------------------------

TEST_F(VectorDisplayTest, TheTitleTellsRunScaleAndQuantity) {
  input.runNumber = 3;
  input.prefix = "Mean ";
  Show({1000, 20000});
  EXPECT_EQ(title, "Title M3  Mean Density (m-3) Scale  1000.  ->  20000. ");
  Show({1, 1000}, 1);
  EXPECT_EQ(title, "Title M3 Log Mean Density (m-3) Scale  0.  ->  3. ");
  Show({1, 1000}, 2);
  EXPECT_EQ(title, "Title M3 Log Mean Density (m-3) Scale  0.  ->  3. ");
}

TEST_F(VectorDisplayTest, TheUnitStandsInTheLastParentheses) {
  EXPECT_EQ(UnitOfLabel("JcurrentDensity(R) ( A/m² )"), "A/m²");
  EXPECT_EQ(UnitOfLabel("NormalizedIonCurrentDensity (A.m-²/A)"), "A.m-²/A");
  EXPECT_EQ(UnitOfLabel("Hidden ()"), "");
  EXPECT_EQ(UnitOfLabel("RelCurrent (-)"), "");
  EXPECT_EQ(UnitOfLabel("MAJORIndex"), "");
  EXPECT_EQ(UnitOfLabel("half ) open"), "");
  EXPECT_EQ(UnitOfLabel(""), "");
}

// --- logarithms ------------------------------------------------------------------------------------------------------

TEST_F(VectorDisplayTest, LogarithmsRunFromZeroToOne) {
  for (const double logScale : {1.0, 2.0}) {
    EXPECT_THAT(Show({10, 1e6, 1000, 1e5}, logScale), ElementsAre(0, 1, FloatEq(0.4F), FloatEq(0.8F)));
    ExpectScale(1, 6);
    EXPECT_EQ(Legend().LogScale, logScale);
    EXPECT_EQ(Legend().HasNonPositive, 0);
  }
}

TEST_F(VectorDisplayTest, ZerosStandAMarginBelowTheLeastPositiveValue) {
  const std::vector<float> row = Show({0, 1, 1e4, -5}, 1);
  // floor = 0 - (4 - 0) / 32
  ExpectScale(-0.125, 4);
  EXPECT_EQ(Legend().HasNonPositive, 1);
  EXPECT_THAT(row, ElementsAre(0, FloatEq(0.125F / 4.125F), 1, 0));
}

TEST_F(VectorDisplayTest, WithoutMarginsZerosStandAtTheLeastPositiveValue) {
  EXPECT_THAT(Show({0, 1, 1e4, -5}, 2), ElementsAre(0, 0, 1, 0));
  ExpectScale(0, 4);
  EXPECT_EQ(Legend().HasNonPositive, 1);
}

TEST_F(VectorDisplayTest, OnlyZerosGiveAFloorOfZero) {
  for (const double logScale : {1.0, 2.0}) {
    EXPECT_THAT(Show({0, 0, 0}, logScale), Each(0));
    ExpectScale(0, 0);
    EXPECT_EQ(Legend().HasNonPositive, 1);
    EXPECT_THAT(Show({-1, 0, -7}, logScale), Each(0));
    ExpectScale(0, 0);
  }
}

TEST_F(VectorDisplayTest, OnePositiveValueAmongZerosLeavesNoScale) {
  EXPECT_THAT(Show({0, 100, 0}, 1), Each(2)) << "the margin is a share of an empty scale";
  ExpectScale(2, 2);
}

TEST_F(VectorDisplayTest, TheExcludedStretchHasNoLogarithm) {
  EXPECT_THAT(Show({0, 10, 1000}, 1, 0, 1), ElementsAre(1, 0, 1));
  ExpectScale(1, 3);
  EXPECT_EQ(Legend().HasNonPositive, 0);
}

// --- frames of a turn ------------------------------------------------------------------------------------------------

class VectorDisplayTurn : public VectorDisplayTest {
 protected:
  VectorDisplayTurn() {
    rotation.present = true;
    rotation.hasValues = true;
    rotation.frames = 2;
  }
};

TEST_F(VectorDisplayTurn, FramesTakeTheScaleOfTheCells) {
  rotation.values = {{2, 4}, {2, 8}, {0, 4}};
  EXPECT_THAT(Show({2, 4, 10}), ElementsAre(0.2F, 0.4F, 1));
  ExpectScale(0, 10);
  EXPECT_THAT(Frames().values[0], ElementsAre(0.2F, 0.4F));
  EXPECT_THAT(Frames().values[1], ElementsAre(0.2F, 0.8F));
  EXPECT_THAT(Frames().values[2], ElementsAre(0, 0.4F));
  EXPECT_THAT(Frames().minimum, ElementsAre(0.2F, 0.2F, 0));
  EXPECT_THAT(Frames().maximum, ElementsAre(0.4F, 0.8F, 0.4F));
}

TEST_F(VectorDisplayTurn, FramesWidenTheScale) {
  rotation.values = {{2, 4}, {-6, 8}, {1, 14}};
  EXPECT_THAT(Show({2, 4, 10}), ElementsAre(0.4F, 0.5F, 0.8F));
  ExpectScale(-6, 14);
  EXPECT_EQ(title, "Title M  Density (m-3) Scale  -6.  ->  14. ");
}

// The extremes of a linear frame start from 1000 and 0.
TEST_F(VectorDisplayTurn, TheExtremesOfAFrameHaveTheirStarts) {
  rotation.values = {{2000, 3000}, {2000, 3000}, {-4, -2}};
  Show({2000, 3000});
  ExpectScale(-4, 3000);
  EXPECT_THAT(Frames().minimum, ElementsAre(FloatEq(1004.F / 3004), FloatEq(1004.F / 3004), 0));
  EXPECT_THAT(Frames().maximum, ElementsAre(1, 1, FloatEq(4.F / 3004)));
}

TEST_F(VectorDisplayTurn, ALogarithmicFrameStartsFromItsFirstValue) {
  rotation.values = {{1e4, 1e5}, {1e4, 1e6}, {1e3, 1e5}};
  EXPECT_THAT(Show({1e4, 1e5}, 1), ElementsAre(FloatEq(1.F / 3), FloatEq(2.F / 3)));
  ExpectScale(3, 6);
  EXPECT_THAT(Frames().values[1], ElementsAre(FloatEq(1.F / 3), 1));
  EXPECT_THAT(Frames().minimum, ElementsAre(FloatEq(1.F / 3), FloatEq(1.F / 3), 0));
  EXPECT_THAT(Frames().maximum, ElementsAre(FloatEq(2.F / 3), 1, FloatEq(2.F / 3)));
  EXPECT_EQ(Legend().HasNonPositive, 0);
}

// Cells and frames have one floor, so that a zero never looks like more than a small value of a step.
TEST_F(VectorDisplayTurn, ZerosStandBelowTheLeastValueOfAnyFrame) {
  rotation.values = {{0, 1e4}, {0, 1}, {1e2, 0}};
  const std::vector<float> row = Show({0, 1e4}, 1);
  ExpectScale(-0.125, 4);
  EXPECT_THAT(row, ElementsAre(0, 1));
  EXPECT_THAT(Frames().values[1], ElementsAre(0, FloatEq(0.125F / 4.125F)));
  EXPECT_THAT(Frames().values[2], ElementsAre(FloatEq(2.125F / 4.125F), 0));
  EXPECT_EQ(Legend().HasNonPositive, 1);
}

TEST_F(VectorDisplayTurn, ATurnWithoutValuesChangesNothing) {
  rotation.hasValues = false;
  rotation.values = {{2, 4}, {-6, 80}, {1, 14}};
  EXPECT_THAT(Show({2, 4, 10}), ElementsAre(0, 0.25F, 1));
  EXPECT_THAT(Frames().values[1], ElementsAre(-6, 80));
  EXPECT_THAT(Frames().minimum, IsEmpty());
}

// --- failures --------------------------------------------------------------------------------------------------------

TEST_F(VectorDisplayTest, AValueBeyondSinglePrecisionIsToldOnceAndReadsZero) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(Show({1e300, nan, -1e39, 4, 2}), ElementsAre(0, 0, 0, 1, 0.5F));
  EXPECT_EQ(model->dialogs.Count("Overflow"), 1);
  EXPECT_EQ(model->dialogs.boxes[0].title, "Error fautea_SpaceVECTOROpenGL");
}

TEST_F(VectorDisplayTest, AQuantityThatDoesNotExistIsTold) {
  for (const double column : {121.0, -1.0, 1e12}) {
    input.column = column;
    EXPECT_THAT(Show({1, 2}), Each(0)) << column;
    EXPECT_EQ(model->dialogs.boxes.back().title, "Error fautea_SpaceVECTOROpenGL");
  }
}

}  // namespace
}  // namespace orv::testing
