#include "analysis/level_line_data.h"

#include <cmath>

#include "analysis/run_fixture.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

using testing::RunFixture;

class LevelLineDataTest : public RunFixture {
 protected:
  void Compute(const std::string& primitive, double plot = 13, const std::string& options = "L 2") {
    text.primitives[1] = "silver\t" + primitive;
    LoadAndRun(plot, options);
  }
  std::optional<LevelLineInput> Find() { return FindLevelLineData(run, message_); }
  static std::vector<double> ValuesOf(const LevelAxis& axis) { return axis.values(); }
  static void ExpectNear(const LevelAxis& axis, const std::vector<double>& expected, double tolerance = 1e-12) {
    ASSERT_EQ(axis.values().size(), expected.size());
    EXPECT_EQ(axis.bounds(0).lower, 1);
    for (std::size_t k = 0; k < expected.size(); ++k) EXPECT_NEAR(axis.values()[k], expected[k], tolerance) << k;
  }
  void Put(int p, int q, const std::vector<double>& values) {
    std::size_t next = 0;
    for (int i = 1; i <= run.cells.CountI(p); ++i) {
      for (int j = 1; j <= run.cells.CountJ(p); ++j) run.cells.CellData(p, i, j, q) = values[next++ % values.size()];
    }
  }

  std::string message_ = "before";
};

TEST_F(LevelLineDataTest, TakesTheGridOfAPlate) {
  Compute("Plate_1 rectfree size -1 2 -2 2 cells 3 4 R X 180 T 0 0 2");
  const auto input = Find();
  ASSERT_TRUE(input);
  EXPECT_EQ(message_, "");
  EXPECT_EQ(run.plot.ListPrimitive, 2);
  ExpectNear(input->X, {1.5, 0.5, -0.5});  // from the high end
  ExpectNear(input->Y, {-1.5, -0.5, 0.5, 1.5});
  EXPECT_EQ(input->Title, "Density (m-3)");
  EXPECT_EQ(input->LabelFormat, " #.# m-3");
  EXPECT_EQ(input->XLabel, " X ");
  EXPECT_EQ(input->YLabel, " Y ");
  EXPECT_EQ(input->LevelCount, 10);
  EXPECT_EQ(input->LowFactor, 1);
  EXPECT_EQ(input->HighFactor, 1);
  EXPECT_EQ(input->Swap, 0);
  EXPECT_EQ(input->AxisText, "#0.0##");
  EXPECT_EQ(input->LogScale, 0);
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 4; ++j) EXPECT_EQ(input->Z(i, j), Data(2, i, j, 13));
  }
  EXPECT_GT(input->Z(1, 1), 0);
}

TEST_F(LevelLineDataTest, NothingIsAskedForWithoutTheOption) {
  EXPECT_FALSE(Find());  // before any run
  EXPECT_EQ(message_, "");
  for (const char* options : {"", "G", "C 15", "L", "L nothing", "L 0", "F 2"}) {
    SCOPED_TRACE(options);
    LoadAndRun(13, options);
    EXPECT_FALSE(Find());
    EXPECT_EQ(message_, "");
  }
}

TEST_F(LevelLineDataTest, ReadsTheOptionInAnyCase) {
  for (const char* options : {"l3", "L3", "L   3 ", "L 2.6"}) {
    SCOPED_TRACE(options);
    LoadAndRun(13, options);
    EXPECT_TRUE(Find());
    EXPECT_EQ(CInt(run.plot.ListPrimitive), 3);
  }
}

TEST_F(LevelLineDataTest, TellsOfAPrimitiveThatIsNotThere) {
  for (const char* options : {"L 4", "L -1", "L 1e12"}) {
    SCOPED_TRACE(options);
    LoadAndRun(13, options);
    EXPECT_FALSE(Find());
    EXPECT_TRUE(StartsWith(message_, "Level lines: there is no primitive ")) << message_;
    EXPECT_TRUE(message_.ends_with(", the primitives are 1 to 3")) << message_;
  }
}

TEST_F(LevelLineDataTest, AReplotTakesItsOwnTextAndQuantity) {
  Compute("Plate_1 rect size 1 1 cells 4 4 R X 180 T 0 0 2");
  ASSERT_TRUE(Find());
  run.plot.PlotOptionText = "L 3";
  ASSERT_TRUE(Replot(8));
  const auto input = Find();
  ASSERT_TRUE(input);
  EXPECT_EQ(run.plot.ListPrimitive, 3);
  EXPECT_EQ(input->Title, "DistanceThrToElem (m)");
  EXPECT_EQ(input->LabelFormat, " #.# m");
  EXPECT_EQ(input->Z(2, 3), Data(3, 2, 3, 8));
  run.plot.PlotOptionText = "";
  EXPECT_FALSE(Find());
  EXPECT_EQ(run.plot.ListPrimitive, 0);
}

TEST_F(LevelLineDataTest, RoundPrimitivesRunAlongAngleAndHeight) {
  Compute("Tube cyl size 0.5 2 1 cells 8 4 T 0 0 3");
  const auto input = Find();
  ASSERT_TRUE(input);
  ExpectNear(input->X, {22.5, 67.5, 112.5, 157.5, 202.5, 247.5, 292.5, 337.5}, 1e-9);
  const double first = Data(2, 0, 0, 7);
  const double step = Data(2, 0, 0, 5);
  EXPECT_NE(step, 0);
  ExpectNear(input->Y, {first, first + step, first + 2 * step, first + 3 * step});
}

TEST_F(LevelLineDataTest, AOneSidedPlateHasCellsThatGrow) {
  Compute("Wing rect2sides size 0 6 0 7 2 2 0 cells 4 3 T 0 0 2");
  const auto input = Find();
  ASSERT_TRUE(input);
  ExpectNear(input->X, {5.5, 4, 2, 0.5}, 1e-6);  // widths 1 2 2 1 from the high end
  ExpectNear(input->Y, {0.5, 2, 5}, 1e-6);       // heights 1 2 4
  EXPECT_EQ(input->Z.bounds(1).upper, 3);
}

TEST_F(LevelLineDataTest, ATwoSidedPlateShowsItsRectoFaceOrTheVersoWhenOnlyThatCounts) {
  for (const char* gap : {"0.1", "-0.1"}) {
    Compute(std::string("Wing rect2sides size 0 6 0 3 2 2 ") + gap + " cells 4 4 T 0 0 2");
    Put(2, 13, {1, 2, 3, 4});
    const auto recto = Find();
    ASSERT_TRUE(recto);
    ExpectNear(recto->X, {5.5, 4, 2, 0.5}, 1e-6);
    ExpectNear(recto->Y, {0.5, 2}, 1e-6);
    EXPECT_EQ(recto->Z.bounds(1).upper, 2);
    EXPECT_EQ(recto->Z(3, 1), 1);
    EXPECT_EQ(recto->Z(3, 2), 2);

    run.model.directives.RectoOnly = 2;
    const auto verso = Find();
    ASSERT_TRUE(verso);
    EXPECT_EQ(ValuesOf(verso->X), ValuesOf(recto->X));
    EXPECT_EQ(ValuesOf(verso->Y), ValuesOf(recto->Y));
    EXPECT_EQ(verso->Z(3, 1), 3);
    EXPECT_EQ(verso->Z(3, 2), 4);
    run.model.directives.RectoOnly = 1;
    EXPECT_EQ(Find()->Z(3, 1), 1);
  }
}

TEST_F(LevelLineDataTest, WithoutAHeaderTheWayAlongTheCellsCounts) {
  Compute("Plate_1 rect size 3 4 cells 3 2 R X 30 T 1 2 3");
  for (int column = 4; column <= 7; ++column) run.cells.CellData(2, 0, 0, column) = 0;
  const auto input = Find();
  ASSERT_TRUE(input);
  ExpectNear(input->X, {0, 1, 2}, 1e-9);
  ExpectNear(input->Y, {0, 2}, 1e-9);
}

TEST_F(LevelLineDataTest, TheThrusterHasOneCell) {
  LoadAndRun(13, "L 1");
  const auto input = Find();
  ASSERT_TRUE(input);
  EXPECT_EQ(ValuesOf(input->X), (std::vector<double>{0}));
  EXPECT_EQ(ValuesOf(input->Y), (std::vector<double>{0}));
}

TEST_F(LevelLineDataTest, LogarithmsStandOnTheFloorOfThePrimitive) {
  Compute("Plate_1 rect size 1 1 cells 2 2 R X 180 T 0 0 2");
  Put(2, 13, {100, 0, 1e4, -5});
  run.plot.LogScale = 2;
  const auto plain = Find();
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->LogScale, 2);
  EXPECT_EQ(plain->Z.values(), (std::vector<double>{2, 2, 4, 2}));
  // With a margin of a colour step for what has no logarithm.
  run.plot.LogScale = 1;
  EXPECT_EQ(Find()->Z.values(), (std::vector<double>{2, 2 - 2.0 / 32, 4, 2 - 2.0 / 32}));
  // Another primitive does not move the floor.
  Put(3, 13, {1e-6});
  EXPECT_EQ(Find()->Z(1, 1), 2);
  EXPECT_EQ(Find()->Z(1, 2), 2 - 2.0 / 32);
  // No margin where every value has a logarithm.
  Put(2, 13, {100, 10, 1e4, 1});
  EXPECT_EQ(Find()->Z.values(), (std::vector<double>{2, 1, 4, 0}));
  // Only zeros: the floor is 0.
  Put(2, 13, {0});
  EXPECT_EQ(Find()->Z.values(), (std::vector<double>{0, 0, 0, 0}));
}

TEST_F(LevelLineDataTest, TheColoursOfTheViewDoNotMatter) {
  Compute("Plate_1 rect size 1 1 cells 3 3 R X 180 T 0 0 2");
  const std::vector<double> values = Find()->Z.values();
  EXPECT_GT(values[0], 1e6);  // per cubic metre, not a share of a scale
  run.lists.Clear();
  EXPECT_EQ(Find()->Z.values(), values);
}

TEST_F(LevelLineDataTest, UnitsAreWhatStandsInTheLastParentheses) {
  EXPECT_EQ(LevelUnit("Density (m-3)"), "m-3");
  EXPECT_EQ(LevelUnit("JcurrentDensity(R) ( A/m² )"), " A/m² ");
  EXPECT_EQ(LevelUnit("RelCurrent (-)"), "-");
  EXPECT_EQ(LevelUnit("MAJORIndex"), "");
  EXPECT_EQ(LevelUnit("Hidden ()"), "");
  EXPECT_EQ(LevelUnit(")("), "");
}

}  // namespace
}  // namespace orv
