#include "analysis/running_tables.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/report_fixture.h"
#include "analysis/result_file.h"
#include "analysis/result_labels.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr std::size_t kColumns = 36;  // index, name, material, 33 values

// --- running table ---------------------------------------------------------------------------------------------------

class RunningTableTest : public ReportFixture {
 protected:
  std::string Name() const { return Folder() + "OrvforTables_.xls"; }
  // A run of the model with known values, and its table.
  std::vector<std::string> Table() {
    Compute();
    return Write();
  }
  std::vector<std::string> Write() {
    for (int q : {19, 22, 39, 48, 81}) FillCells(2, q, q);
    EXPECT_TRUE(WriteRunningTable(run));
    return LinesOf(Name());
  }
  void SetDay(int year, int month, int day) { clock = FixedClock({year, month, day, 6, 7, 8}); }
};

TEST_F(RunningTableTest, HeadsAndRows) {
  const std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_THAT(lines[0], StartsWith(" N°  Name Material"));
  EXPECT_THAT(ColumnsOf(lines[0]),
              ElementsAre("N°", "Name", "Material", Hard("MAXSputtering (m/s)"), Hard("MAXDensity (m-3)"),
                          Hard("MAXHeatflux (W/m2)"), Hard("Fx_WC1 (N)"), Hard("Fx_WC2 (N)"), Hard("Fy_WC1 (N)"),
                          Hard("Fy_WC2 (N)"), Hard("Fz_WC1 (N)"), Hard("Fz_WC2 (N)"), Hard("MxT_WC1 (N.m)"),
                          Hard("MxT_WC2 (N.m)"), Hard("MyT_WC1 (N.m)"), Hard("MyT_WC2 (N.m)"), Hard("MzT_WC1 (N.m)"),
                          Hard("MzT_WC2 (N.m)"), Hard("Fx_min (N)"), Hard("Fx_max (N)"), Hard("Fy_min (N)"),
                          Hard("Fy_max (N)"), Hard("Fz_min (N)"), Hard("Fz_max (N)"), Hard("MxTmin (N.m)"),
                          Hard("MxTmax (N.m)"), Hard("MyTmin (N.m)"), Hard("MyTmax (N.m)"), Hard("MzTmin (N.m)"),
                          Hard("MzTmax (N.m)"), Hard("MxTneg (N.m)"), Hard("MxTpos (N.m)"), Hard("MyTneg (N.m)"),
                          Hard("MyTpos (N.m)"), Hard("MzTneg (N.m)"), Hard("MzTpos (N.m)")));
  const std::vector<std::string> row = ColumnsOf(lines[1]);
  ASSERT_EQ(row.size(), kColumns + 1);  // behind the values the case line
  EXPECT_EQ(row[0], "2");
  EXPECT_EQ(row[1], "Plate_1");
  EXPECT_EQ(row[2], "silver");
  EXPECT_EQ(row[3], "190.E-1");  // three places in front of the point
  EXPECT_THAT(row[4], HasSubstr("E+12"));
  EXPECT_EQ(row[5], "220.E-1");
  EXPECT_EQ(row[6], "624.E+0");  // 16 cells of 39
  EXPECT_EQ(row[7], "768.E+0");
  EXPECT_EQ(row[8], "0.E+0");
  EXPECT_EQ(row[35], "129.6E+1");
  EXPECT_EQ(row[36], Hard(run.record.CaseLine));
  EXPECT_EQ(lines[1][0], ' ');
  EXPECT_EQ(ColumnsOf(lines[2])[0], "3");
}

TEST_F(RunningTableTest, EveryValueStandsUnderItsHead) {
  Compute();
  const std::vector<int> columns = {19, 13, 22, 39, 48, 40, 49, 41, 50, 45, 54, 46, 55, 47, 56, 64, 67,
                                    65, 68, 66, 69, 70, 73, 71, 74, 72, 75, 76, 79, 77, 80, 78, 81};
  for (const int q : columns) {
    for (int i = 1; i <= 4; ++i) {
      for (int j = 1; j <= 4; ++j) run.cells.CellData(2, i, j, q) = i == 2 && j == 3 ? -1000.0 - q : 0;
    }
  }
  ASSERT_TRUE(WriteRunningTable(run));
  const std::vector<std::string> lines = LinesOf(Name());
  const std::vector<std::string> heads = ColumnsOf(lines[0]);
  const std::vector<std::string> row = ColumnsOf(lines[1]);
  ASSERT_EQ(heads.size(), kColumns);
  for (std::size_t k = 0; k < columns.size(); ++k) {
    SCOPED_TRACE(heads[k + 3]);
    EXPECT_THAT(heads[k + 3], HasSubstr(Hard(LabelOf(run.ResultLabels, columns[k]))));
    // Of the first three the largest value, 0 here; of the others the sum.
    EXPECT_DOUBLE_EQ(std::atof(row[k + 3].c_str()), k < 3 ? 0.0 : -1000.0 - columns[k]);
  }
  // The field of a head and that of a value are equally wide.
  EXPECT_EQ(CharacterCount(lines[0]), CharacterCount(" N°  Name Material ") + 33 * 32);
}

TEST_F(RunningTableTest, ASecondRunOfTheDayGoesToTheHead) {
  const std::vector<std::string> first = Table();
  run.record.CaseText = "second";
  const std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(ColumnsOf(lines[0])[1], "Plate_1");
  EXPECT_THAT(lines[0], HasSubstr("second"));
  EXPECT_EQ(ColumnsOf(lines[1])[1], "Plate_2");
  for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(lines[k + 2], first[k]);
}

TEST_F(RunningTableTest, ARunOnTheNextDayBeginsAnew) {
  Table();
  SetDay(2031, 4, 6);
  std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_THAT(lines[0], HasSubstr("N°"));
  EXPECT_THAT(lines[1], HasSubstr("2031/04/06"));
  // The new table is of that day.
  EXPECT_EQ(Table().size(), 5U);
  SetDay(2032, 1, 1);
  EXPECT_EQ(Table().size(), 3U);
}

TEST_F(RunningTableTest, DaysAreThoseOfTheCalendar) {
  clock = FixedClock({2031, 4, 5, 23, 59, 59});
  Table();
  clock = FixedClock({2031, 4, 6, 0, 0, 0});
  EXPECT_EQ(Table().size(), 3U);
  clock = FixedClock({2031, 4, 6, 23, 59, 59});
  EXPECT_EQ(Table().size(), 5U);
  // A file of a later day, as a clock set back leaves it, goes on.
  SetDay(2031, 1, 1);
  EXPECT_EQ(Table().size(), 7U);
}

TEST_F(RunningTableTest, AnEmptyFileBeginsAnew) {
  WriteBytes(Name(), "");
  SetFileTime(Name(), clock.Local());
  EXPECT_THAT(Table()[0], HasSubstr("N°"));
}

TEST_F(RunningTableTest, OldLinesAreKeptAsTheyAreUpToTheLimit) {
  std::string old = "caf\xE9 \x80\n";  // without CR, and with characters of the code page
  for (std::size_t k = 2; k <= kRunningTableLines + 3; ++k) old += "old " + std::to_string(k) + "\r\n";
  WriteBytes(Name(), old);
  SetFileTime(Name(), clock.Local());
  const std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 2 + kRunningTableLines);
  EXPECT_EQ(lines[2], "café €");
  EXPECT_EQ(lines.back(), "old 15000");
}

TEST_F(RunningTableTest, OnlyTheNamedPrimitivesHaveRows) {
  text.directives = "Table 3 7";
  std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_THAT(lines[0], HasSubstr("N°"));
  EXPECT_EQ(ColumnsOf(lines[1])[1], "Plate_2");
  EXPECT_EQ(Table().size(), 3U);
}

TEST_F(RunningTableTest, TheHeadsStandInTheThrustersPlace) {
  std::swap(text.primitives[0], text.primitives[1]);
  const std::vector<std::string> lines = Table();
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(ColumnsOf(lines[0])[0], "1");
  EXPECT_EQ(ColumnsOf(lines[1])[0], "N°");
  EXPECT_EQ(ColumnsOf(lines[2])[0], "3");
}

TEST_F(RunningTableTest, ATextBeyondTheCodePageMakesTheFileUtf8) {
  text.primitives[2] = "złoto\tPlate_2 rect size 2 2 cells 4 4 R X 180 T 0 0 2.9";
  text.database[17] = "złoto\t19300\t196.97";
  std::vector<std::string> lines = Table();
  EXPECT_EQ(Bytes(Name()).substr(0, 3), "\xEF\xBB\xBF");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_THAT(lines[0], HasSubstr("N°"));
  EXPECT_EQ(ColumnsOf(lines[2])[2], "złoto");
  // Read again as what it is.
  lines = Table();
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(ColumnsOf(lines[4])[2], "złoto");
}

TEST_F(RunningTableTest, AnotherFileInTheMakingIsInTheWay) {
  Compute();
  WriteBytes(Name(), "old\r\n");
  SetFileTime(Name(), clock.Local());
  std::filesystem::create_directory(Name() + "New");
  EXPECT_FALSE(WriteRunningTable(run));
  EXPECT_EQ(Bytes(Name()), "old\r\n");
  ASSERT_THAT(run.record.filesSkipped, SizeIs(1));
  EXPECT_THAT(run.record.filesSkipped[0], StartsWith(Name() + " was not written: "));
  EXPECT_THAT(dialogs.log, ElementsAre(run.record.filesSkipped[0]));
  EXPECT_THAT(run.record.files, IsEmpty());
}

TEST_F(RunningTableTest, NothingIsLeftOfTheMaking) {
  Table();
  EXPECT_THAT(FilesIn(), ElementsAre("OrvTraceResults.txt", "OrvforTables_.xls"));
  EXPECT_THAT(run.record.files, ElementsAre(Name()));
}

// --- forces and moments ----------------------------------------------------------------------------------------------

class ForcesAndMomentsTest : public ReportFixture {
 protected:
  std::string Name() const { return Folder() + "OrvForcesAndMoments_.xls"; }
  // `steps` steps of the wing; the sum of quantity q at step s is q + s / 100.
  void Turn(int steps) {
    text.primitives.push_back(kTurningWing);
    Compute(22);
    ASSERT_EQ(run.plot.AutomaticRotationActive, 4);
    Array<double, 2>& sums = run.stores.RotationSums;
    sums.Size({Bounds{0, 36}, Bounds{0, 120}});
    sums(0, 0) = steps;
    for (int s = 1; s <= steps; ++s) {
      sums(s, 0) = 10.0 * (s - 1);
      for (int q = 1; q <= 120; ++q) sums(s, q) = q + s / 100.0;
    }
  }
};

TEST_F(ForcesAndMomentsTest, OneLineAStepUnderTheHeads) {
  Turn(3);
  ASSERT_TRUE(WriteForcesAndMoments(run));
  const std::vector<std::string> lines = LinesOf(Name());
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0],
            "NO TIME ratio PONDERATION FOR FORCE and MOMENT TABLES (it was active only for OrvValis Release 53 to 55). "
            " AutoRotation on Wing n°: 4");
  const std::vector<int> columns = {39, 48, 40, 49, 41, 50, 64, 67, 65, 68, 66, 69, 45, 54, 46, 55,
                                    47, 56, 70, 73, 71, 74, 72, 75, 76, 79, 77, 80, 78, 81, 22, 57,
                                    23, 24, 25, 36, 37, 38, 26, 27, 28, 42, 51, 43, 52, 44, 53};
  const std::vector<std::string> heads = ColumnsOf(lines[1]);
  ASSERT_EQ(heads.size(), columns.size() + 1);
  EXPECT_EQ(heads[0], "AngleAutoRotationDeg");
  for (std::size_t s = 1; s <= 3; ++s) {
    const std::vector<std::string> row = ColumnsOf(lines[s + 1]);
    ASSERT_EQ(row.size(), heads.size());
    EXPECT_DOUBLE_EQ(std::atof(row[0].c_str()), 10.0 * static_cast<double>(s - 1));
    for (std::size_t k = 0; k < columns.size(); ++k) {
      const std::string label = Hard(LabelOf(run.ResultLabels, columns[k]));
      // A label as wide as the field is cut to it.
      EXPECT_THAT(heads[k + 1], StartsWith(LeftCharacters(label, 26)));
      EXPECT_DOUBLE_EQ(std::atof(row[k + 1].c_str()), columns[k] + static_cast<double>(s) / 100);
    }
  }
  EXPECT_EQ(heads[31], Hard("Heatflux (W/m2) MAX"));
  EXPECT_EQ(heads[32], "HeatFlowMaxCellCorner(W/m²");
  const auto blanks = [](std::size_t count) { return std::string(count, ' '); };
  EXPECT_EQ(lines[2].substr(0, 55), blanks(14) + "0." + blanks(13) + blanks(7) + "39.01" + blanks(14));
  EXPECT_EQ(lines[2].size(), 29U + 47U * 26U);
}

TEST_F(ForcesAndMomentsTest, SmallForcesHaveEightDecimals) {
  Turn(1);
  run.stores.RotationSums(1, 39) = -0.000001234567;
  ASSERT_TRUE(WriteForcesAndMoments(run));
  EXPECT_EQ(ColumnsOf(LinesOf(Name())[2])[1], "-0.00000123");
}

TEST_F(ForcesAndMomentsTest, NoStepsNoFile) {
  Turn(0);
  EXPECT_TRUE(WriteForcesAndMoments(run));
  run.stores.RotationSums = {};
  EXPECT_TRUE(WriteForcesAndMoments(run));
  run.stores.RotationSums.Size({Bounds{0, 1}, Bounds{0, 1}});
  run.stores.RotationSums(0, 0) = 1;
  EXPECT_TRUE(WriteForcesAndMoments(run));
  EXPECT_FALSE(std::filesystem::exists(Name()));
  EXPECT_THAT(run.record.files, IsEmpty());
}

TEST_F(ForcesAndMomentsTest, NewestFirstWithoutLimit) {
  std::string old;
  for (std::size_t k = 1; k <= 20000; ++k) old += "old " + std::to_string(k) + "\r\n";
  WriteBytes(Name(), old);
  Turn(2);
  ASSERT_TRUE(WriteForcesAndMoments(run));
  const std::vector<std::string> lines = LinesOf(Name());
  ASSERT_EQ(lines.size(), 20004U);
  EXPECT_THAT(lines[0], StartsWith("NO TIME"));
  EXPECT_EQ(lines[4], "old 1");
  EXPECT_EQ(lines.back(), "old 20000");
}

}  // namespace
}  // namespace orv::testing
