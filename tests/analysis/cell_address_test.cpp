#include "analysis/cell_address.h"

#include <gtest/gtest.h>

#include "analysis/effect_phases.h"
#include "analysis/run_fixture.h"

namespace orv::testing {
namespace {

class QuietPhases : public EffectPhases {
 public:
  void WriteReports(RunContext&) override {}
};

class CellAddressTest : public RunFixture {
 protected:
  CellAddressTest() {
    text.primitives[2] = "gold\tPlate_2 rect size 2 2 cells 3 5 R X 180 T 0 0 2.9";
    text.AddAllYields();
  }
  void Compute(double plot, double logScale = 0) {
    Load();
    selection.choices = {{plot, "", logScale}};
    ASSERT_TRUE(a_SpaceApplication(run, selection, effects));
    FillDisplayListsIfEmpty();
  }
  void FillDisplayListsIfEmpty() { ASSERT_GT(run.lists.NumberPoints, 0); }

  QuietPhases effects;
};

TEST_F(CellAddressTest, EveryEntryNamesItsCell) {
  Compute(13);
  int entry = 0;
  const int cells[4][2] = {{0, 0}, {1, 1}, {4, 4}, {3, 5}};
  const char* const names[] = {"", "Thruster", "Plate_1", "Plate_2"};
  for (int p = 1; p <= 3; ++p) {
    for (int i = 1; i <= cells[p][0]; ++i) {
      for (int j = 1; j <= cells[p][1]; ++j, ++entry) {
        const CellAddress cell = AddressOfEntry(run, entry);
        ASSERT_TRUE(cell.Found()) << entry;
        EXPECT_EQ(cell.primitive, p) << entry;
        EXPECT_EQ(cell.name, names[p]);
        EXPECT_EQ(cell.i, i) << entry;
        EXPECT_EQ(cell.j, j) << entry;
        EXPECT_EQ(cell.quantity, 13);
        EXPECT_EQ(cell.value, Data(p, i, j, 13));
        EXPECT_FALSE(cell.mean);
      }
    }
  }
  EXPECT_EQ(run.lists.NumberPoints, entry + 59) << "behind them the axes of the thruster";
  for (const int other : {-1, entry, entry + 59, entry + 60, kListEntries, 2147483647, -2147483647}) {
    EXPECT_FALSE(AddressOfEntry(run, other).Found()) << other;
    EXPECT_EQ(AddressOfEntry(run, other).StatusText(), "");
    EXPECT_EQ(AddressOfEntry(run, other).TipText(), "");
  }
}

TEST_F(CellAddressTest, TheTextsTellQuantityValueAndUnit) {
  Compute(8);
  const int entry = 1 + 4 * 1 + 2;
  run.cells.CellData(2, 2, 3, 8) = 2.0371;
  run.ResultLabels[8] = "Distance to thruster (m)";
  const CellAddress cell = AddressOfEntry(run, entry);
  EXPECT_EQ(cell.label, "Distance to thruster");
  EXPECT_EQ(cell.unit, "m");
  EXPECT_EQ(cell.StatusText(), "Primitive 2 Plate_1, i = 2, j = 3: Distance to thruster = 2.0371 m");
  EXPECT_EQ(cell.TipText(), "Primitive 2 Plate_1\nCell i = 2, j = 3\nDistance to thruster: 2.0371 m");
  run.ResultLabels[8] = "Share (-)";
  EXPECT_EQ(AddressOfEntry(run, entry).StatusText(), "Primitive 2 Plate_1, i = 2, j = 3: Share = 2.0371");
  run.ResultLabels[8] = "";
  run.PrimitiveNames.clear();
  EXPECT_EQ(AddressOfEntry(run, entry).StatusText(), "Primitive 2, i = 2, j = 3: Plot 8 = 2.0371");
  run.ResultLabels[8] = "(m) at first";
  EXPECT_EQ(AddressOfEntry(run, entry).label, "(m) at first");
}

TEST_F(CellAddressTest, ALogarithmicPlotTellsThePlainValue) {
  Compute(13, 1);
  ASSERT_EQ(run.lists.legend.LogScale, 1);
  const double value = Data(3, 2, 4, 13);
  ASSERT_GT(value, 1e6);
  EXPECT_EQ(AddressOfEntry(run, 1 + 16 + 5 + 3).value, value);
}

TEST_F(CellAddressTest, TheRotatingPrimitiveOfATurnTellsItsMean) {
  Compute(13);
  run.lists.rotation.hasValues = true;
  run.lists.rotation.AutoRotPrimitive = 2;
  EXPECT_FALSE(AddressOfEntry(run, 0).mean);
  EXPECT_TRUE(AddressOfEntry(run, 1).mean);
  EXPECT_TRUE(AddressOfEntry(run, 1).StatusText().ends_with(" (mean of the turn)"));
}

TEST_F(CellAddressTest, OtherPlotsHaveNoCells) {
  EXPECT_FALSE(AddressOfEntry(run, 0).Found()) << "nothing was computed";
  Compute(13);
  ASSERT_TRUE(AddressOfEntry(run, 0).Found());
  run.lists.IndexPlot = 0;
  EXPECT_FALSE(AddressOfEntry(run, 0).Found());
  run.lists.IndexPlot = 500;
  EXPECT_FALSE(AddressOfEntry(run, 0).Found()) << "a quantity that does not exist";
  run.lists.IndexPlot = 13;
  run.lists.PenUpMode = 0;
  EXPECT_FALSE(AddressOfEntry(run, 0).Found());
}

TEST_F(CellAddressTest, AModelThatShrankIsNotRead) {
  Compute(13);
  run.cells.numberPrimWithVolumic = 1;  // of a run that has begun anew
  EXPECT_TRUE(AddressOfEntry(run, 0).Found());
  EXPECT_FALSE(AddressOfEntry(run, 5).Found());
  run.cells = Cells{};
  EXPECT_FALSE(AddressOfEntry(run, 0).Found());
}

}  // namespace
}  // namespace orv::testing
