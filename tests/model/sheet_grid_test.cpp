#include "model/sheet_grid.h"

#include <gtest/gtest.h>

#include "numerics/failure.h"

namespace orv {
namespace {

TEST(ColumnLetters, RunFromAToXfd) {
  EXPECT_EQ(ColumnLetters(1), "A");
  EXPECT_EQ(ColumnLetters(26), "Z");
  EXPECT_EQ(ColumnLetters(27), "AA");
  EXPECT_EQ(ColumnLetters(52), "AZ");
  EXPECT_EQ(ColumnLetters(702), "ZZ");
  EXPECT_EQ(ColumnLetters(703), "AAA");
  EXPECT_EQ(ColumnLetters(16384), "XFD");
  for (int column = 1; column <= kSheetColumns; ++column) {
    ASSERT_EQ(ColumnFromLetters(ColumnLetters(column)), column);
  }
  EXPECT_THROW(ColumnLetters(0), RuntimeFailure);
  EXPECT_THROW(ColumnLetters(16385), RuntimeFailure);
}

TEST(ParseA1Cell, ReadsNamesWithDollarsAndInAnyCase) {
  EXPECT_EQ(ParseA1Cell("B7"), (CellPosition{7, 2}));
  EXPECT_EQ(ParseA1Cell("$b$7"), (CellPosition{7, 2}));
  EXPECT_EQ(ParseA1Cell("xfd1048576"), (CellPosition{1048576, 16384}));
  for (const char* text : {"", "$", "B", "7", "B0", "$$B7", "B7$", "B 7", "XFE1", "A1048577", "A12345678", "A1:B2"}) {
    EXPECT_FALSE(ParseA1Cell(text).has_value()) << text;
  }
  EXPECT_EQ(CellName({7, 2}), "B7");
  EXPECT_THROW(CellName({0, 2}), RuntimeFailure);
}

TEST(ParseA1Range, PutsTheCornersInOrder) {
  EXPECT_EQ(ParseA1Range("D7:B2"), (CellRange{{2, 2}, {7, 4}}));
  EXPECT_EQ(ParseA1Range("B7:$D2"), (CellRange{{2, 2}, {7, 4}}));
  EXPECT_EQ(ParseA1Range("C3"), (CellRange{{3, 3}, {3, 3}}));
  EXPECT_THROW(ParseA1Range("B:C"), RuntimeFailure);
}

TEST(SheetGrid, ForgetsACellThatIsEmptied) {
  SheetGrid grid;
  EXPECT_EQ(grid.LastRow(), 0);
  EXPECT_EQ(grid.LastColumn(), 0);
  grid.Set({7, 3}, "x");
  grid.SetFormula({2, 9}, "=1/0", "");
  EXPECT_EQ(grid.CellCount(), 2U);
  EXPECT_EQ(grid.LastRow(), 7);
  EXPECT_EQ(grid.LastColumn(), 9);
  EXPECT_EQ(grid.Formula({2, 9}), "=1/0");
  EXPECT_EQ(grid.Value({2, 9}), "");
  grid.Set({2, 9}, "");
  EXPECT_EQ(grid.CellCount(), 1U);
  EXPECT_EQ(grid.LastColumn(), 3);
  grid.Set({7, 3}, "y");
  EXPECT_EQ(grid.Value({7, 3}), "y");
  EXPECT_EQ(grid.Formula({7, 3}), "y");
}

TEST(SheetGrid, FindsNothingForAnEmptyPart) {
  SheetGrid grid;
  grid.Set({1, 1}, "x");
  EXPECT_THROW(grid.Find("", {1, 1}), RuntimeFailure);
  EXPECT_THROW(grid.Find("x", {0, 1}), RuntimeFailure);
}

TEST(SheetGrid, FindSeesTheLastCellOfTheSheet) {
  SheetGrid grid;
  grid.Set({kSheetRows, kSheetColumns}, "end");
  EXPECT_EQ(grid.Find("END", {1, 1}), (CellPosition{kSheetRows, kSheetColumns}));
  EXPECT_EQ(grid.Find("END", {kSheetRows, kSheetColumns}), (CellPosition{kSheetRows, kSheetColumns}));
}

TEST(SheetGrid, TurnsLineBreaksInACellIntoOneBlankEach) {
  SheetGrid grid;
  grid.Set({1, 1}, "a\r\nb\nc\rd\te");
  EXPECT_EQ(grid.RangeText("A1"), "a b c d e\r\n");
}

TEST(SheetGrid, CopiesAThousandRowsInFullWhenAskedFor) {
  SheetGrid grid;
  grid.Set({1, 1}, "x");
  const std::string text = grid.RangeText("A1:A1000");
  EXPECT_EQ(text.size(), 1U + 2 * 1000);
}

// Few cells beside the rectangle are walked over, many are jumped.
TEST(SheetGrid, CopiesAPartOfRowsOfAnyWidth) {
  for (const int width : {5, 15, 40, 300}) {
    SheetGrid grid;
    for (int row = 1; row <= 9; ++row) {
      for (int column = row % 3; column <= width; ++column) {
        if (column > 0 && row % 4 != 0) grid.Set({row, column}, std::to_string(1000 * row + column));
      }
    }
    for (const int first : {1, 2, width - 1}) {
      std::string expected;
      for (int row = 2; row <= 11; ++row) {
        expected += grid.Value({row, first}) + "\t" + grid.Value({row, first + 1}) + "\r\n";
      }
      EXPECT_EQ(grid.RangeText(CellName({2, first}) + ":" + CellName({11, first + 1})), expected)
          << width << ", " << first;
    }
  }
}

TEST(SheetGrid, RefusesARectangleInUseThatIsTooLarge) {
  SheetGrid grid;
  grid.Set({1, 1}, "x");
  grid.Set({kSheetRows, kSheetColumns}, "y");
  EXPECT_THROW(grid.RangeText("A1:XFD1048576"), RuntimeFailure);
}

}  // namespace
}  // namespace orv
