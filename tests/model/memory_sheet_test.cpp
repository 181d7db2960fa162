#include "model/memory_sheet.h"

#include <gtest/gtest.h>

#include "numerics/failure.h"

namespace orv {
namespace {

template <class Operation>
int FailureOf(Operation operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

TEST(MemorySheet, IsFilledFromATabSeparatedText) {
  MemorySheet sheet;
  sheet.SetText({2, 3}, "a\t\tc\r\n\nd\t \n");
  sheet.Attach();
  EXPECT_EQ(sheet.RangeText("C2:E4"), "a\t\tc\r\n\t\t\r\nd\t \t\r\n");
  EXPECT_EQ(sheet.grid().CellCount(), 4U);
}

TEST(MemorySheet, KeepsSeveralSheets) {
  MemorySheet sheet;
  sheet.Set({1, 1}, "first");
  sheet.UseSheet("Other");
  sheet.Set({1, 1}, "second");
  sheet.Attach();
  EXPECT_EQ(sheet.SheetName(), "Other");
  sheet.Activate({5, 5});
  sheet.UseSheet("Sheet1");
  EXPECT_EQ(sheet.Value({1, 1}), "first");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{1, 1}));
  sheet.UseSheet("Other");
  EXPECT_EQ(sheet.Value({1, 1}), "second");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{5, 5}));
}

TEST(MemorySheet, CanBeWithoutAProgram) {
  MemorySheet sheet;
  sheet.applicationRunning = false;
  EXPECT_EQ(FailureOf([&] { sheet.Attach(); }), 429);
  EXPECT_EQ(FailureOf([&] { sheet.Attach(); }), 429);
  EXPECT_EQ(FailureOf([&] { sheet.Value({1, 1}); }), 91);
  sheet.applicationRunning = true;
  sheet.Attach();
  EXPECT_EQ(FailureOf([&] { sheet.Value({1, 1}); }), 0);
  EXPECT_EQ(sheet.attachCount, 3);
}

TEST(MemorySheet, CanBeWithoutAWorkbook) {
  MemorySheet sheet;
  sheet.windowCaptions.clear();
  sheet.Attach();
  EXPECT_EQ(FailureOf([&] { sheet.WindowCount(); }), 91);
}

TEST(MemorySheet, IsBusyForAWhile) {
  MemorySheet sheet;
  sheet.Attach();
  sheet.Set({1, 1}, "x");
  sheet.busyOperations = 2;
  EXPECT_EQ(FailureOf([&] { sheet.Value({1, 1}); }), 50290);
  EXPECT_EQ(FailureOf([&] { sheet.Activate({9, 9}); }), 50290);
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{1, 1}));
  EXPECT_EQ(sheet.Value({1, 1}), "x");
}

TEST(MemorySheet, GivesAnEmptyCopyOnce) {
  MemorySheet sheet;
  sheet.Attach();
  sheet.Set({1, 1}, "x");
  sheet.emptyCopies = 1;
  EXPECT_EQ(sheet.RangeText("A1:A2"), "");
  EXPECT_EQ(sheet.RangeText("A1:A2"), "x\r\n\r\n");
  EXPECT_EQ(sheet.copies, (std::vector<std::string>{"A1:A2", "A1:A2"}));
}

TEST(MemorySheet, HasTheWindowsThatItIsGiven) {
  MemorySheet sheet;
  sheet.windowCaptions = {"Model.xlsx:1", "Model.xlsx:2"};
  sheet.path = "";
  sheet.Attach();
  EXPECT_EQ(sheet.WindowCount(), 2);
  EXPECT_EQ(sheet.WindowCaption(2), "Model.xlsx:2");
  EXPECT_EQ(sheet.WorkbookPath(), "");
}

TEST(MemorySheet, CountsReleasesAndEventBreaks) {
  MemorySheet sheet;
  sheet.Attach();
  sheet.LetEventsThrough();
  sheet.Release();
  EXPECT_EQ(sheet.eventBreaks, 1);
  EXPECT_EQ(sheet.releaseCount, 1);
  EXPECT_EQ(FailureOf([&] { sheet.SheetName(); }), 91);
}

}  // namespace
}  // namespace orv
