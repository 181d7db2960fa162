#include "analysis/report_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/report_fixture.h"
#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "numerics/number_format.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kRule = std::string(32, '=');
const std::string kCommonHeads = " n°Name Material min/Cell Max/Cell Area_(m²)";

class ReportTablesTest : public ReportFixture {
 protected:
  // Primitives of n x m cells of 0.5 m2 each, named as given, all of silver, with labels.
  void Build(const std::vector<std::string>& names, int n = 2, int m = 2) {
    const int count = static_cast<int>(names.size());
    run.model.NumberOfPrimitives = count;
    run.model.ModelCells.Size({Bounds{0, count + 10}, Bounds{1, kModelColumns}});
    run.PrimitiveNames.assign(static_cast<std::size_t>(count) + 11, "");
    run.cells.CellData.Size(count + 10, 5, 5, kQuantities);
    run.cells.CellCorners.Size(count + 10, 5, 5, kQuantities);
    run.cells.numberPrimWithVolumic = count;
    for (int p = 1; p <= count; ++p) {
      run.PrimitiveNames[static_cast<std::size_t>(p)] = names[static_cast<std::size_t>(p - 1)];
      run.model.ModelCells(p, 1) = "silver";
      run.model.ModelCells(p, 2) = names[static_cast<std::size_t>(p - 1)] + " Rect size 1 1 cells 2 2";
      SetCounts(p, n, m);
    }
    FillResultLabels({"0"}, run.ResultLabels, prompt);
  }
  void SetCounts(int p, int n, int m) {
    run.cells.CellData(p, 0, 0, 1) = n;
    run.cells.CellData(p, 0, 0, 2) = m;
    FillCells(p, 4, -0.5);
  }
  // Values of a primitive's cells, row by row.
  void SetCells(int p, int q, const std::vector<double>& values) {
    std::size_t k = 0;
    for (int i = 1; i <= run.cells.CountI(p); ++i) {
      for (int j = 1; j <= run.cells.CountJ(p); ++j) run.cells.CellData(p, i, j, q) = values.at(k++);
    }
  }
  void UseMaterials(const std::vector<std::string>& names) {
    run.materials.MaterialsUsed = {std::to_string(names.size())};
    run.materials.MaterialsUsed.insert(run.materials.MaterialsUsed.end(), names.begin(), names.end());
    run.materials.NumberOfMaterialsUsed = static_cast<int>(names.size());
    FillResultLabels(run.materials.MaterialsUsed, run.ResultLabels, prompt);
  }
  // Steps of the rotation, 120 degrees apart.
  void UseSteps(int rotating, int steps = 3) {
    run.plot.SputterRotationActive = rotating;
    run.rotation.RotatingPrimitive = rotating;
    run.rotation.tables.RotationSteps = steps;
    run.stores.SputterRotationList.Size({Bounds{-1, steps}, Bounds{1, 2}});
    run.stores.RedepositionExtrema.Size({Bounds{-1, steps}, Bounds{1, 2}, Bounds{0, 15}, Bounds{0, 40}});
    for (int s = 1; s <= steps; ++s) {
      run.rotation.tables.RotPercentTable(s, 1) = 120.0 * (s - 1);
      run.stores.SputterRotationList(s, 1) = s * 1e-12;
      run.stores.SputterRotationList(s, 2) = s * 2e-12;
    }
  }
  ReportTables Tables() {
    return {run, [this](const std::string& line) { lines.push_back(line); }};
  }
  // One table of all primitives.
  std::vector<std::string> Summary(int q, SummaryForm form = SummaryForm::Full) {
    lines.clear();
    Tables().Summary(q, form, run.cells.numberPrimWithVolumic);
    return lines;
  }

  std::vector<std::string> lines;
};

TEST_F(ReportTablesTest, AnOrdinaryQuantityHasFiveColumns) {
  Build({"Front", "Back"});
  SetCells(1, 13, {3e12, 5e12, 4.5e12, 7.1256e12});
  SetCells(2, 13, {1e10, 1e10, 2e10, 1e10});
  Summary(13);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], Hard("Density (m-3)") + " Summary_parameters  " + kRule);
  EXPECT_EQ(lines[1], kCommonHeads);
  EXPECT_THAT(ColumnsOf(lines[2]), ElementsAre("1Front", "silver", "3.E+12", "7.13E+12", "2."));
  EXPECT_THAT(ColumnsOf(lines[3]), ElementsAre("2Back", "silver", "10.E+09", "20.E+09", "2."));
  EXPECT_EQ(lines[2][0], ' ');
}

TEST_F(ReportTablesTest, TheHeatFluxHasSumIntegralAndCorner) {
  Build({"Front"});
  SetCells(1, 22, {100, 200, 300, 400});
  run.stores.HeatFluxMaxTable(1) = 444;
  Summary(22);
  EXPECT_EQ(lines[1], kCommonHeads + " Sum(Cells) Sum(Cell*CellArea)_(#*m²)  Max/CellCorner");
  EXPECT_THAT(ColumnsOf(lines[2]), ElementsAre("1Front", "silver", "100.", "400.", "2.", "1000.", "500.", "444."));
}

// Each force quantity and the sums of its row: the value k of quantity q is q itself here.
TEST_F(ReportTablesTest, ForceTablesReadTheSumsOfTheSilentSummaries) {
  Build({"Front"}, 1, 1);
  for (int q = 23; q <= 81; ++q) run.cells.CellData(1, 1, 1, q) = q;
  ReportTables tables = Tables();
  for (int q = 39; q <= 81; ++q) tables.Summary(q, SummaryForm::Silent, 1);
  EXPECT_THAT(lines, IsEmpty());
  struct Row {
    int q;
    std::string heads;
    std::vector<std::string> behindArea;
  };
  const std::vector<Row> rows = {
      {23, " Sum(Cells)  WC1  WC2  Fmin     Fmax", {"23.", "39.", "48.", "64.", "67."}},
      {24, " Sum(Cells)  WC1  WC2  Fmin     Fmax", {"24.", "40.", "49.", "65.", "68."}},
      {25, " Sum(Cells)  WC1  WC2  Fmin     Fmax", {"25.", "41.", "50.", "66.", "69."}},
      {26, " Sum(Cells)  WC1  WC2 ", {"26.", "42.", "51."}},
      {27, " Sum(Cells)  WC1  WC2 ", {"27.", "43.", "52."}},
      {28, " Sum(Cells)  WC1  WC2 ", {"28.", "44.", "53."}},
      {36, " Sum(Cells)  WC1  WC2  Min Max  Neg  Pos  ", {"36.", "45.", "54.", "70.", "73.", "76.", "79."}},
      {37, " Sum(Cells)  WC1  WC2  Min Max  Neg  Pos  ", {"37.", "46.", "55.", "71.", "74.", "77.", "80."}},
      {38, " Sum(Cells)  WC1  WC2  Min Max  Neg  Pos  ", {"38.", "47.", "56.", "72.", "75.", "78.", "81."}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.q);
    lines.clear();
    tables.Summary(row.q, SummaryForm::Full, 1);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], kCommonHeads + row.heads);
    std::vector<std::string> columns = ColumnsOf(lines[2]);
    EXPECT_EQ(columns.size(), ColumnsOf(lines[1]).size());
    const std::string value = std::to_string(row.q) + ".";
    ASSERT_GE(columns.size(), 5U);
    EXPECT_THAT(std::vector<std::string>(columns.begin(), columns.begin() + 5),
                ElementsAre("1Front", "silver", value, value, "0.5"));
    EXPECT_EQ(std::vector<std::string>(columns.begin() + 5, columns.end()), row.behindArea);
  }
}

TEST_F(ReportTablesTest, EveryTableHasOneHeadAColumn) {
  Build({"Front panel"});
  for (int q = 1; q <= 104; ++q) {
    if (LabelOf(run.ResultLabels, q).empty()) continue;
    FillCells(1, q, -1.2345e-7 * q);
    Summary(q);
    ASSERT_EQ(lines.size(), 3U) << q;
    EXPECT_EQ(ColumnsOf(lines[1]).size(), ColumnsOf(lines[2]).size()) << q;
  }
}

TEST_F(ReportTablesTest, TheCompactFormHasOnlyTheLabelAndTheRows) {
  Build({"Front"});
  FillCells(1, 13, 2);
  FillCells(1, 39, 3);
  FillCells(1, 75, 4);
  FillCells(1, 22, 5);
  Summary(13, SummaryForm::Compact);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], Hard("Density (m-3)") + " Summary_parameters ");
  EXPECT_THAT(ColumnsOf(lines[1]), ElementsAre("1Front", "silver", "2.", "2.", "2."));
  EXPECT_THAT(ColumnsOf(Summary(39, SummaryForm::Compact)[1]),
              ElementsAre("1Front", "silver", "3.", "3.", "2.", "12."));
  EXPECT_THAT(ColumnsOf(Summary(75, SummaryForm::Compact)[1]),
              ElementsAre("1Front", "silver", "4.", "4.", "2.", "16."));
  EXPECT_THAT(ColumnsOf(Summary(22, SummaryForm::Compact)[1]), ElementsAre("1Front", "silver", "5.", "5.", "2."));
}

TEST_F(ReportTablesTest, APrimitiveWithoutWeightHasNoRow) {
  Build({"Zero", "Full", "Cancelling"});
  FillCells(2, 13, 7);
  SetCells(3, 13, {1, -1, 2, -2});
  Summary(13);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_THAT(lines[2], HasSubstr("2Full"));
  EXPECT_EQ(Summary(13, SummaryForm::Compact).size(), 2U);
}

TEST_F(ReportTablesTest, AQuantityWithoutLabelPrintsNothing) {
  Build({"Front"});
  for (const int q : {0, 32, 58, 82, 89, 110}) {
    FillCells(1, q, 1);
    EXPECT_THAT(Summary(q), IsEmpty()) << q;
    EXPECT_THAT(Summary(q, SummaryForm::Compact), IsEmpty()) << q;
  }
}

TEST_F(ReportTablesTest, TheCountOfPrimitivesIsTheCallers) {
  Build({"Front", "Plume"});
  FillCells(1, 13, 1);
  FillCells(2, 13, 1);
  Tables().Summary(13, SummaryForm::Full, 1);
  EXPECT_EQ(lines.size(), 3U);
  lines.clear();
  Tables().Summary(13, SummaryForm::Full, 100);
  EXPECT_EQ(lines.size(), 4U);
}

TEST_F(ReportTablesTest, NamesAndMaterialsStayInOneCell) {
  Build({"Solar array"});
  run.model.ModelCells(1, 1) = "solar cell | back" + std::string(kHardBlank) + "side\t2";
  FillCells(1, 13, 1);
  EXPECT_THAT(ColumnsOf(Summary(13)[2]),
              ElementsAre(Hard("1Solar array"), Hard("solar cell | back side 2"), "1.", "1.", "2."));
  run.model.ModelCells(1, 1) = "";
  run.PrimitiveNames[1] = "";
  EXPECT_THAT(ColumnsOf(Summary(13)[2]), ElementsAre("1", kHardBlank, "1.", "1.", "2."));
}

TEST_F(ReportTablesTest, ShellsOfAVolumeHaveTheMaterialOfTheLastRow) {
  Build({"Front", "Plume"});
  run.model.ModelCells(2, 1) = "vacuum";
  run.PrimitiveNames[3] = "Plume_2";
  run.cells.numberPrimWithVolumic = 3;
  SetCounts(3, 2, 2);
  FillCells(3, 13, 1);
  EXPECT_THAT(ColumnsOf(Summary(13)[2]), ElementsAre("3Plume_2", "vacuum", "1.", "1.", "2."));
}

TEST_F(ReportTablesTest, HeatFluxOfManyPrimitives) {
  std::vector<std::string> names(102, "P");
  Build(names, 1, 1);
  run.stores.HeatFluxMaxTable(100) = 9;
  for (int p = 1; p <= 102; ++p) FillCells(p, 22, 1);
  Summary(22);
  ASSERT_EQ(lines.size(), 104U);
  EXPECT_EQ(ColumnsOf(lines[101]).back(), "9.");
  EXPECT_EQ(ColumnsOf(lines[102]).back(), "0.");
}

TEST_F(ReportTablesTest, NumbersThatAreNoneKeepTheirColumn) {
  Build({"Front"}, 1, 1);
  run.cells.CellData(1, 1, 1, 13) = std::numeric_limits<double>::infinity();
  EXPECT_THAT(ColumnsOf(Summary(13)[2]), ElementsAre("1Front", "silver", "INF", "INF", "0.5"));
}

// --- rotation steps --------------------------------------------------------------------------------------------------

TEST_F(ReportTablesTest, ErosionIsListedStepByStep) {
  Build({"Body", "Wing", "Dish"});
  for (int p = 1; p <= 3; ++p) FillCells(p, 19, 1e-12);
  UseSteps(2);
  Summary(19);
  ASSERT_EQ(lines.size(), 11U);
  EXPECT_THAT(lines[2], HasSubstr("1Body"));
  EXPECT_THAT(lines[3], HasSubstr("2Wing"));
  EXPECT_EQ(lines[4], " True Average MiniMaxi list of Sputtering for all rotation steps");
  EXPECT_EQ(lines[5], "for the true Average/Rotations.");
  EXPECT_THAT(ColumnsOf(lines[6]), ElementsAre("0", "1.E-12", "2.E-12"));
  EXPECT_THAT(ColumnsOf(lines[7]), ElementsAre("120", "2.E-12", "4.E-12"));
  EXPECT_THAT(ColumnsOf(lines[8]), ElementsAre("240", "3.E-12", "6.E-12"));
  EXPECT_EQ(lines[9],
            "NOTE: The sum of the true Maxi is higher than the one given by Average/Rotations because the cells where "
            "the Maxi occurs can be different.");
  EXPECT_THAT(lines[10], HasSubstr("3Dish"));
}

TEST_F(ReportTablesTest, NoStepsWithoutRotationOrInTheCompactForm) {
  Build({"Body", "Wing"});
  FillCells(2, 19, 1e-12);
  EXPECT_EQ(Summary(19).size(), 3U);
  UseSteps(2);
  EXPECT_EQ(Summary(19, SummaryForm::Compact).size(), 2U);
  FillCells(2, 13, 1);
  EXPECT_EQ(Summary(13).size(), 3U);
  run.plot.SputterRotationActive = 0;
  EXPECT_EQ(Summary(19).size(), 3U);
}

TEST_F(ReportTablesTest, RedepositionIsListedByMaterialAndKind) {
  Build({"Body", "Wing"});
  UseMaterials({"silver", "goldTbl"});
  UseSteps(2);
  for (const auto& [q, slot] : {std::pair{90, 1}, {91, 2}, {95, 6}, {96, 7}, {100, 11}, {101, 12}}) {
    SCOPED_TRACE(q);
    FillCells(2, q, 1e-14);
    run.stores.RedepositionExtrema(2, 1, slot, 2) = static_cast<float>(slot);
    run.stores.RedepositionExtrema(2, 2, slot, 2) = static_cast<float>(10 * slot);
    Summary(q);
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[3],
              "for the true AverageDeposition/Rotations. True Average MiniMaxi list for all rotation steps of the "
              "rotating primitive: ");
    EXPECT_THAT(ColumnsOf(lines[4]), ElementsAre("0", "0.", "0."));
    EXPECT_THAT(ColumnsOf(lines[5]),
                ElementsAre("120", std::to_string(slot) + ".", Trim(SignificantText(10 * slot, 3))));
    EXPECT_EQ(lines[7],
              " NOTE: The sum of the True Average Maxi is higher than the one given by the True Average/Rotations "
              "because the cells where the Maxi occurs may be not always the same.");
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ReportTablesTest, AMaterialThatIsInNoLabelIsTold) {
  Build({"Body", "Wing"});
  UseMaterials({"silver"});
  UseSteps(2);
  FillCells(2, 90, 1e-14);
  run.materials.MaterialsUsed[1] = "copper";
  EXPECT_EQ(Summary(90).size(), 3U);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Wrong thing in Synthetic table Redeposition silver(m/s)");
  EXPECT_EQ(dialogs.boxes[0].title, "Error see Hallam");
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Summary(90), ProgramEnd);
}

TEST_F(ReportTablesTest, OneNameWithinAnotherIsNotMixedUp) {
  UseMaterials({"gold", "gold foil"});
  EXPECT_EQ(RedepositionSlot(run, 90), 1);
  EXPECT_EQ(RedepositionSlot(run, 91), 2);
  EXPECT_EQ(RedepositionSlot(run, 96), 7);
  EXPECT_EQ(RedepositionSlot(run, 102), 0);
  EXPECT_EQ(RedepositionSlot(run, 19), 0);
}

TEST_F(ReportTablesTest, NamesThatDifferByTblKeepTheirPlaces) {
  UseMaterials({"gold", "goldTbl"});
  EXPECT_EQ(LabelOf(run.ResultLabels, 90), LabelOf(run.ResultLabels, 91));
  for (int q : {90, 91, 95, 96, 100, 101}) EXPECT_EQ(RedepositionSlot(run, q), q - 89) << q;
  EXPECT_EQ(RedepositionSlot(run, 92), 0);
}

// The sixth material takes the label of the next kind: its redeposition has no slot in the stores.
TEST_F(ReportTablesTest, TheSixthMaterialHasNoSlot) {
  UseMaterials({"a", "b", "c", "d", "e", "f"});
  EXPECT_EQ(LabelOf(run.ResultLabels, 95), "Redeposition f(m/s)");
  EXPECT_EQ(RedepositionSlot(run, 95), 0);
  EXPECT_EQ(RedepositionSlot(run, 94), 5);
}

TEST_F(ReportTablesTest, StepsBeyondTheStoresAreLeftOut) {
  Build({"Wing"});
  UseSteps(1);
  FillCells(1, 19, 1e-12);
  run.rotation.tables.RotationSteps = 36;
  EXPECT_EQ(Summary(19).size(), 3U + 2U + 3U + 1U);
}

// --- corners ---------------------------------------------------------------------------------------------------------

TEST_F(ReportTablesTest, CornersComeFromTheCornerCells) {
  Build({"Thruster", "Plate one"}, 3, 2);
  run.model.ModelCells(1, 2) = "Thruster thr size 0.1 0.1";
  run.thruster.ThrusterPrimitive = 1;
  run.thruster.frame.ThrusterPosition = Vector3(0.5, -1, 2);
  run.thruster.frame.axiT = Vector3(0, 0.6, -0.8);
  // Corner c of cell (i, j) on axis a: c, i, j and a as digits.
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      for (int c = 1; c <= 4; ++c) {
        for (int a = 1; a <= 3; ++a) {
          run.cells.CellCorners(2, i, j, 3 * (c - 1) + a) = 1000 * c + 100 * i + 10 * j + a;
        }
      }
    }
  }
  Tables().Corners();
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[0],
            "Table of locations of the 4 corners for each primitives (note: those are not the centre of the corner "
            "cells, but really the corners). For Cone this give the summit location.");
  EXPECT_THAT(ColumnsOf(lines[1]), ElementsAre("1_1", "Thruster", "thr", "0.5", "-1.", "2."));
  EXPECT_THAT(ColumnsOf(lines[2]), ElementsAre("1_2", "Thruster", "thr", "0.5", "-0.4", "1.2"));
  EXPECT_THAT(ColumnsOf(lines[3]), ElementsAre("2_1", Hard("Plate one"), "one", "1311.", "1312.", "1313."));
  EXPECT_THAT(ColumnsOf(lines[4]), ElementsAre("2_2", Hard("Plate one"), "one", "2111.", "2112.", "2113."));
  EXPECT_THAT(ColumnsOf(lines[5]), ElementsAre("2_3", Hard("Plate one"), "one", "3121.", "3122.", "3123."));
  EXPECT_THAT(ColumnsOf(lines[6]), ElementsAre("2_4", Hard("Plate one"), "one", "4321.", "4322.", "4323."));
  EXPECT_EQ(lines[7],
            "Note : for the thruster, only two points are given: the source point and at 1 m on the plume axis. This "
            "allows the check of the plume orientation.");
}

TEST_F(ReportTablesTest, APrimitiveWithoutCellsHasNoCorners) {
  Build({"Plate"}, 0, 2);
  Tables().Corners();
  EXPECT_EQ(lines.size(), 2U);
}

}  // namespace
}  // namespace orv::testing
