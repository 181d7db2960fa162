#include "analysis/sputter_tables.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/report_fixture.h"
#include "analysis/result_labels.h"

namespace orv::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// --- sputter rotation table ------------------------------------------------------------------------------------------

class SputterTableTest : public ReportFixture {
 protected:
  std::string Name() const { return Folder() + "OrvSputtAutoTableTest model 20310405 060708_.xls"; }
  // A turning wing of n x m stored cells; the value of slot q at cell (i, j) of step s is made of these digits.
  void Turn(int steps, int n, int m) {
    text.primitives.push_back(kTurningWing);
    Compute(19);
    ASSERT_EQ(run.plot.SputterRotationActive, 4);
    PagedArray<float, 4>& store = run.stores.RotationCellStore;
    store.Size({Bounds{0, 36}, Bounds{0, 72}, Bounds{0, 72}, Bounds{0, 120}});
    store(0, 0, 0, 1) = static_cast<float>(n);
    store(0, 0, 0, 2) = static_cast<float>(m);
    store(0, 0, 0, 3) = static_cast<float>(steps);
    for (int s = 1; s <= steps; ++s) {
      store(s, 0, 0, 0) = static_cast<float>(7.5 * (s - 1));
      for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= m; ++j) {
          for (int q = 0; q <= 120; ++q)
            store(s, i, j, q) = static_cast<float>(1000 * s + 100 * i + 10 * j + q / 100.0);
        }
      }
    }
  }
};

TEST_F(SputterTableTest, HeadsAndCellsOfEachStep) {
  Turn(2, 2, 3);
  ASSERT_TRUE(WriteSputterRotationTable(run));
  const std::vector<std::string> lines = LinesOf(Name());
  EXPECT_EQ(lines[0], std::string(64, '='));
  EXPECT_EQ(lines[4], std::string(32, '='));
  const std::vector<int> slots = {1, 2, 3, 4, 5, 6, 7, 9, 10, 15, 16, 20, 61};
  for (int s = 1; s <= 2; ++s) {
    const std::size_t at = 5 + 7 * static_cast<std::size_t>(s - 1);
    const std::vector<std::string> heads = ColumnsOf(lines[at]);
    ASSERT_THAT(heads, SizeIs(3 + 13 + 2));
    EXPECT_EQ(heads[0], "I");
    EXPECT_EQ(heads[1], "J");
    EXPECT_EQ(heads[2], Hard("Sputtering (m/s)"));
    for (std::size_t k = 0; k < slots.size(); ++k) EXPECT_EQ(heads[k + 3], Hard(LabelOf(run.ResultLabels, slots[k])));
    EXPECT_EQ(heads[16], "AngleAutoRotationDeg");
    EXPECT_EQ(heads[17], s == 1 ? "0" : "7.5");
    for (int i = 1; i <= 2; ++i) {
      for (int j = 1; j <= 3; ++j) {
        const auto row = ColumnsOf(lines[at + static_cast<std::size_t>(3 * (i - 1) + j)]);
        ASSERT_THAT(row, SizeIs(16));
        EXPECT_EQ(row[0], std::to_string(i));
        EXPECT_EQ(row[1], std::to_string(j));
        const int place = 1000 * s + 100 * i + 10 * j;
        EXPECT_EQ(row[2], std::to_string(place) + ".");
        for (std::size_t k = 3; k < row.size(); ++k)
          EXPECT_DOUBLE_EQ(std::atof(row[k].c_str()), place + (k == 15 ? 1 : 0));
      }
    }
  }
  EXPECT_THAT(lines[19], HasSubstr("Model Summary"));
  EXPECT_THAT(run.record.files, ElementsAre(Name()));
}

TEST_F(SputterTableTest, EndsWithTheModelUnderOtherKeywords) {
  Turn(1, 1, 1);
  ASSERT_TRUE(WriteSputterRotationTable(run));
  const std::vector<std::string> lines = LinesOf(Name());
  const std::size_t at = LineWith(lines, "Model Summary");
  ASSERT_LT(at + 3, lines.size());
  EXPECT_EQ(lines[at], "Model Summary               This ouput filename " + Hard(Name()));
  EXPECT_EQ(lines[at + 1],
            "                   Note: Autorotation Average values (over one complete turn) on n°4    Wing");
  EXPECT_EQ(lines[at + 2], "");
  EXPECT_EQ(lines[at + 3], Hard("Orv_data Test model") + "\t" + Hard(" si "));
  const std::size_t database = LineWith(lines, "Database_OrvValis", at);
  ASSERT_LT(database + 2, lines.size());
  EXPECT_EQ(lines[database], "Database_OrvValis");
  EXPECT_EQ(lines[database + 1], Hard(" LinesDataBase_used"));
  EXPECT_THAT(lines[database + 2], HasSubstr(Hard("Table      1")));
  for (const std::string& line : lines) {
    EXPECT_THAT(UpperCase(line), Not(HasSubstr("ORVDATA")));
    EXPECT_THAT(UpperCase(line), Not(HasSubstr("DATABASEORVVALIS")));
  }
  EXPECT_EQ(lines.back(), std::string(64, '='));
}

TEST_F(SputterTableTest, LimitsBeyondTheStoreAreCut) {
  Turn(1, 1, 1);
  PagedArray<float, 4>& store = run.stores.RotationCellStore;
  store.Size({Bounds{0, 1}, Bounds{0, 2}, Bounds{0, 2}, Bounds{0, 120}});
  for (int slot = 1; slot <= 3; ++slot) store(0, 0, 0, slot) = 80;
  ASSERT_TRUE(WriteSputterRotationTable(run));
  const std::vector<std::string> lines = LinesOf(Name());
  EXPECT_THAT(lines[10], HasSubstr("Model Summary"));
}

TEST_F(SputterTableTest, WithoutAStoreThereAreNoSteps) {
  Turn(1, 1, 1);
  run.stores.RotationCellStore = {};
  ASSERT_TRUE(WriteSputterRotationTable(run));
  EXPECT_THAT(LinesOf(Name())[5], HasSubstr("Model Summary"));
}

// --- spectrum --------------------------------------------------------------------------------------------------------

class SpectrumTest : public ReportFixture {
 protected:
  std::string Name() const { return Folder() + "OrvSpectrumTest model 20310405 060708_.xls"; }
};

TEST_F(SpectrumTest, OneLineABandUnderTheHeads) {
  Compute();
  SpectrumTable table;
  ASSERT_TRUE(table.Open(run));
  table.Line(1, 2.5, 0, 1.23456e-12, "  (Average/Rotations  R 0 to 1 ) ");
  table.Line(18, 87.5, -3, 4, "");
  EXPECT_FALSE(std::filesystem::exists(Name()));
  ASSERT_TRUE(table.Close());
  const std::vector<std::string> lines = LinesOf(Name());
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_THAT(ColumnsOf(lines[0]), ElementsAre("Band", "Angle_(deg)", "Min_(m/s)", "Max_(m/s)", "Summary"));
  EXPECT_THAT(ColumnsOf(lines[1]), ElementsAre("1", "2.5", "0.", "1.235E-12", Hard("(Average/Rotations  R 0 to 1 )")));
  EXPECT_THAT(ColumnsOf(lines[2]), ElementsAre("18", "87.5", "-3.", "4.", kHardBlank));
  EXPECT_THAT(run.record.files, ElementsAre(Name()));
  EXPECT_FALSE(table.Close());
}

TEST_F(SpectrumTest, SilentModeWritesNothing) {
  text.directives = "Silent";
  Compute();
  SpectrumTable table;
  EXPECT_FALSE(table.Open(run));
  table.Line(1, 2.5, 0, 1, "");
  EXPECT_FALSE(table.Close());
  EXPECT_THAT(FilesIn(), ElementsAre("OrvTraceResults.txt"));
  EXPECT_THAT(run.record.filesSkipped, IsEmpty());
}

TEST_F(SpectrumTest, AnUnclosedTableLeavesNothing) {
  Compute();
  {
    SpectrumTable table;
    ASSERT_TRUE(table.Open(run));
    table.Line(1, 2.5, 0, 1, "");
  }
  EXPECT_THAT(FilesIn(), ElementsAre("OrvTraceResults.txt"));
}

TEST_F(SpectrumTest, AFileHeldElsewhereIsSkipped) {
  Compute();
  WriteBytes(Lock("OrvSpectrumTest model 20310405 060708_.xls"), "");
  SpectrumTable table;
  EXPECT_FALSE(table.Open(run));
  EXPECT_EQ(dialogs.Count("seems to be open"), 1);
  table.Line(1, 2.5, 0, 1, "");
  EXPECT_FALSE(table.Close());
  EXPECT_THAT(run.record.filesSkipped, SizeIs(1));
}

TEST_F(SpectrumTest, ItsTitleHasThirtySixCharacters) {
  text.title = std::string(60, 'y');
  Compute();
  SpectrumTable table;
  ASSERT_TRUE(table.Open(run));
  ASSERT_TRUE(table.Close());
  EXPECT_EQ(run.record.files[0], Folder() + "OrvSpectrum" + std::string(36, 'y') + " 20310405 060708_.xls");
}

}  // namespace
}  // namespace orv::testing
