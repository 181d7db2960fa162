#include "model/rotation_table.h"

#include <gtest/gtest.h>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

class RotationTable : public ::testing::Test {
 protected:
  RotationTable() : prompt(dialogs), reader(prompt, Locale{}) { cells.Size({Bounds{0, 15}, Bounds{1, 11}}); }

  void Read(int rotating = 2) { ReadRotPercentTable(cells, 5, rotating, column, table, reader); }

  // n equal weights, angles in steps of `step`.
  static std::string Uniform(int n, const std::string& weight, int step) {
    std::string text = "Rot% ";
    for (int k = 0; k < n; ++k) text += std::to_string(k * step) + " " + weight + " | ";
    return text;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  CellText reader;
  TextTable cells;
  Array<double, 2> table;
  int column = 3;
};

TEST_F(RotationTable, ReadsShiftAnglesAndWeights) {
  cells(2, 3) = "Shift 5 Rot% 0 0.25 | 90 0.5; 270 0.25";
  Read();
  EXPECT_EQ(column, 3);
  EXPECT_EQ(table(-1, 1), 5);
  EXPECT_EQ(table(-1, 2), 3);
  EXPECT_EQ(table(1, 1), 0);
  EXPECT_EQ(table(2, 1), 90);
  EXPECT_EQ(table(3, 1), 270);
  EXPECT_EQ(table(2, 2), 0.5);
  EXPECT_EQ(table(0, 2), 1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RotationTable, KeywordsInAnyCaseAndTheFirstRowWins) {
  cells(3, 4) = "rot% 0 0.5 180 0.5";
  cells(4, 3) = "Rot% 0 1";
  Read();
  EXPECT_EQ(table(-1, 2), 2);
  EXPECT_EQ(column, 3) << "the text moved to the first empty column";
  EXPECT_EQ(cells(3, 3), "rot% 0 0.5 180 0.5");
  EXPECT_EQ(cells(3, 4), "");
}

TEST_F(RotationTable, WeightsOf095PassThoseOf085AreTold) {
  cells(2, 3) = "Rot% 0 0.5 | 180 0.45";
  Read();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(table(2, 2), 0.45);
  cells(2, 3) = "Rot% 0 0.5 | 180 0.35";
  Read();
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Error integral Rot%   that should be equal to unity  (100%). Please check that data in the model.");
  EXPECT_EQ(dialogs.log.front(), "Error integral Rot%  ");
  EXPECT_EQ(table(2, 2), 0.35) << "the table stays as typed";
}

TEST_F(RotationTable, EqualWeightsBecomeExactShares) {
  cells(2, 3) = Uniform(36, "0.03", 10);
  Read();
  for (int k = 1; k <= 36; ++k) EXPECT_EQ(table(k, 2), 1.0 / 36);
}

TEST_F(RotationTable, WithoutATextTheTableIsUniformAndShownInTheModel) {
  cells(2, 3) = "something else";
  Read();
  EXPECT_EQ(table(-1, 2), 36);
  EXPECT_EQ(table(36, 1), 350);
  EXPECT_EQ(table(36, 2), 1.0 / 36);
  EXPECT_EQ(column, 4);
  EXPECT_EQ(cells(2, 4).substr(0, 42), "Shift 0 Rot% 0. 0.0278 | 10. 0.0278 | 20. ");
}

TEST_F(RotationTable, TheDefaultTextReadsBackAsTheSameTable) {
  Read();
  Array<double, 2> again;
  int place = 3;
  ReadRotPercentTable(cells, 5, 2, place, again, reader);
  EXPECT_EQ(again(-1, 2), 36);
  for (int k = 1; k <= 36; ++k) {
    EXPECT_EQ(again(k, 1), table(k, 1));
    EXPECT_EQ(again(k, 2), table(k, 2));
  }
}

// The locale reads what the user has typed; the program's own table has points everywhere.
TEST_F(RotationTable, TheDefaultTextReadsBackWhereTheDotSeparatesThousands) {
  CellText german(prompt, Locale{",", "."});
  ReadRotPercentTable(cells, 5, 2, column, table, german);
  cells(2, 3) = " " + Trim(cells(2, 3));
  Array<double, 2> again;
  int place = 3;
  ReadRotPercentTable(cells, 5, 2, place, again, german);
  EXPECT_EQ(again(-1, 2), 36);
  EXPECT_EQ(again(2, 1), 10);
  EXPECT_EQ(again(36, 2), 1.0 / 36);
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
  cells(2, 3) = "Shift 2,5 Rot% 0 0,25 | 22.5 0,5; 270 0,25";
  ReadRotPercentTable(cells, 5, 2, place, again, german);
  EXPECT_EQ(again(-1, 1), 2.5);
  EXPECT_EQ(again(2, 1), 225);
}

TEST_F(RotationTable, NoRotatingPrimitiveLeavesTheDefaultInForceAndTheModelAlone) {
  Read(0);
  EXPECT_EQ(table(-1, 2), 36);
  for (int row = 1; row <= 5; ++row) {
    for (int c = 3; c <= 11; ++c) EXPECT_EQ(cells(row, c), "");
  }
}

TEST_F(RotationTable, MoreThan360RowsFail) {
  cells(2, 3) = Uniform(361, "0.002", 1);
  EXPECT_THROW(Read(), RuntimeFailure);
}

}  // namespace
}  // namespace orv::testing
