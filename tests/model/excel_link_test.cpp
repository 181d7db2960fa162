#include "model/excel_link.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/failure_in.h"
#include "support/fake_excel.h"

// What the contract of all stores does not say of a running Excel.
namespace orv {
namespace {

using testing::FailureIn;
using testing::FakeCell;
using testing::FakeExcel;

class ExcelLinkTest : public ::testing::Test {
 protected:
  FakeExcel excel;
  ExcelLink link{Locale{}, excel.Source()};
};

TEST_F(ExcelLinkTest, AttachesToARunningExcelAlone) {
  excel.running = false;
  EXPECT_EQ(FailureIn([&] { link.Attach(); }), 429);
  EXPECT_EQ(FailureIn([&] { link.SheetName(); }), 91);
  excel.running = true;
  link.Attach();
  EXPECT_EQ(link.SheetName(), "Sheet1");
  // It went away: no trace of the attachment before.
  excel.running = false;
  EXPECT_EQ(FailureIn([&] { link.Attach(); }), 429);
  EXPECT_EQ(FailureIn([&] { link.SheetName(); }), 91);
}

TEST_F(ExcelLinkTest, NeedsAnOpenWorkbook) {
  excel.bookOpen = false;
  link.Attach();
  for (const std::function<void()>& operation : std::vector<std::function<void()>>{
           [&] { link.WorkbookPath(); }, [&] { link.WindowCount(); }, [&] { link.SheetName(); },
           [&] {
             link.Value({1, 1});
           },
           [&] { link.Find("a"); }, [&] { link.RangeText("A1"); },
           [&] {
             link.PrintsDecimalComma({1, 1});
           }}) {
    EXPECT_EQ(FailureIn(operation), 91);
  }
}

TEST_F(ExcelLinkTest, GivesFolderAndCaptionsOfAllWindows) {
  excel.path = "C:\\models\\";
  excel.captions = {"Other.xlsx", "Model.xlsx:1"};
  link.Attach();
  EXPECT_EQ(link.WorkbookPath(), "C:\\models");
  EXPECT_EQ(link.WindowCount(), 2);
  EXPECT_EQ(link.WindowCaption(2), "Model.xlsx:1");
  EXPECT_EQ(FailureIn([&] { link.WindowCaption(3); }), 9);
}

TEST_F(ExcelLinkTest, TakesTheSeparatorThatExcelPrints) {
  excel.separator = ",";
  excel.At({1, 1}).value = 0.5;
  link.Attach();
  EXPECT_EQ(link.Value({1, 1}), "0,5");
  EXPECT_EQ(link.RangeText("A1"), "0,5\r\n");
  ExcelLink french(Locale{",", "."}, excel.Source());
  excel.tellsSeparator = false;
  french.Attach();
  EXPECT_EQ(french.Value({1, 1}), "0,5");
  link.Attach();
  EXPECT_EQ(link.Value({1, 1}), "0.5");
}

TEST_F(ExcelLinkTest, ABusyExcelRefusesEveryOperationForAWhile) {
  excel.At({1, 1}).value = std::string("x");
  link.Attach();
  excel.busyOperations = 2;
  EXPECT_EQ(FailureIn([&] { link.Value({1, 1}); }), 50290);
  EXPECT_EQ(FailureIn([&] { link.Formula({1, 1}); }), 50290);
  EXPECT_EQ(link.Value({1, 1}), "x");
  link.Release();
  excel.busyOperations = 1;
  link.Attach();  // attached all the same
  EXPECT_EQ(link.Value({1, 1}), "x");
}

TEST_F(ExcelLinkTest, AnExcelThatEndedIsToldFromABusyOne) {
  link.Attach();
  excel.everyResult = static_cast<std::int32_t>(0x800706BA);
  EXPECT_EQ(FailureIn([&] { link.SheetName(); }), -2147023170);
  excel.everyResult = static_cast<std::int32_t>(0x80010108);
  EXPECT_EQ(FailureIn([&] { link.ActiveCell(); }), -2147417848);
}

TEST_F(ExcelLinkTest, ShowsTheWatchWhatIsInFront) {
  excel.captions = {"Model.xlsx:2", "Other.xlsx"};
  excel.sheet().name = "Orbit";
  excel.sheet().active = {7, 3};
  excel.At({7, 3}) = {1.0, "=MAX(A2:C60)", false, false};
  const SheetSnapshot snapshot = link.Snapshot();  // attaches by itself
  EXPECT_EQ(snapshot.applicationName, "Microsoft Excel");
  EXPECT_EQ(snapshot.workbookName, "Model.xlsx");
  EXPECT_EQ(snapshot.windowCount, 2);
  EXPECT_EQ(snapshot.windowCaption, "Model.xlsx:2");
  EXPECT_EQ(snapshot.sheetName, "Orbit");
  EXPECT_EQ(snapshot.activeCell, (CellPosition{7, 3}));
  EXPECT_EQ(snapshot.formula, "=MAX(A2:C60)");
  excel.busyOperations = 1000;
  EXPECT_EQ(FailureIn([&] { link.Snapshot(); }), 50290);
  excel.running = false;
  EXPECT_EQ(FailureIn([&] { link.Snapshot(); }), 429);
}

TEST_F(ExcelLinkTest, ReadsALargeRectangleInFewCalls) {
  excel.At({1, 1}).value = std::string("top");
  excel.At({70000, 20}).value = 1.5;
  link.Attach();
  const int before = excel.operations;
  const std::string text = link.RangeText("A1:T70000");
  EXPECT_LT(excel.operations - before, 10);
  EXPECT_EQ(excel.ranges, (std::vector<std::string>{"A1:T52428", "A52429:T70000"}));
  EXPECT_EQ(text.substr(0, 5), "top\t\t");
  EXPECT_TRUE(text.ends_with("\t1.5\r\n"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 70000);
}

TEST_F(ExcelLinkTest, TestsTheDecimalCommaAndPutsTheCellsBack) {
  for (const char* separator : {".", ","}) {
    excel.separator = separator;
    excel.written.clear();
    link.Attach();
    excel.At({8, 2}).value = std::string("below");
    const auto before = excel.sheet().cells;
    EXPECT_EQ(link.PrintsDecimalComma({7, 2}), excel.separator == ",");
    EXPECT_EQ(excel.sheet().cells, before);
    EXPECT_TRUE(excel.saved);
    EXPECT_EQ(excel.written,
              (std::vector<std::string>{"B7 FormulaR1C1 =1/10", "B8 FormulaR1C1 =ISERR(SEARCH(\",\",+R[-1]C))",
                                        "B8 Value2 below", "B7 ClearContents"}));
  }
  excel.saved = false;
  link.PrintsDecimalComma({7, 2});
  EXPECT_FALSE(excel.saved);
}

TEST_F(ExcelLinkTest, PutsBackWhateverStoodInTheScratchCells) {
  const std::vector<FakeCell> contents = {
      {0.1 + 0.2, "", false, false},            // more digits than a formula text has
      {42.0, "=SUM(A1:B2)*7", false, false},    // a formula
      {std::string("007"), "", true, false},    // a text that looks like a number
      {std::string("=not"), "", true, false},   // or like a formula
      {std::string("it's"), "", false, false},  // a plain text
      {true, "", false, false},                 // a logical value
      {AutomationError{static_cast<std::int32_t>(0x800A07FA)}, "", false, false},  // an error typed in
  };
  link.Attach();
  for (const FakeCell& content : contents) {
    excel.At({3, 3}) = content;
    excel.At({4, 3}) = content;
    const auto before = excel.sheet().cells;
    EXPECT_FALSE(link.PrintsDecimalComma({3, 3}));
    EXPECT_EQ(excel.sheet().cells, before) << ValueText(content.value, ".");
  }
  // A text that looks like a number without a prefix, as imports leave it: it stays that text.
  excel.At({3, 3}) = {std::string("007"), "", false, false};
  link.PrintsDecimalComma({3, 3});
  EXPECT_EQ(excel.At({3, 3}).value, AutomationValue(std::string("007")));
}

TEST_F(ExcelLinkTest, AsksTheSettingWhereCellsCannotTell) {
  excel.separator = ",";
  link.Attach();
  excel.readOnly = true;
  EXPECT_TRUE(link.PrintsDecimalComma({3, 3}));
  EXPECT_TRUE(excel.saved);
  EXPECT_TRUE(link.PrintsDecimalComma({1048576, 1}));  // no cell below
  excel.readOnly = false;
  excel.At({3, 3}).textFormat = true;
  excel.At({3, 3}).value = std::string("kept");
  EXPECT_TRUE(link.PrintsDecimalComma({3, 3}));
  EXPECT_EQ(excel.At({3, 3}).value, AutomationValue(std::string("kept")));
}

// A user who starts to type in the midst of the test: at whatever step that happens, nothing is left behind.
TEST_F(ExcelLinkTest, ABusyExcelLeavesNoScratchBehind) {
  link.Attach();
  excel.At({3, 3}).value = std::string("upper");
  excel.At({4, 3}).value = 0.25;
  const auto before = excel.sheet().cells;
  int failures = 0;
  const int start = excel.operations;
  link.PrintsDecimalComma({3, 3});
  const int steps = excel.operations - start;
  for (int step = 0; step < steps; ++step) {
    excel.busyFrom = excel.operations + step;
    const int failure = FailureIn([&] { link.PrintsDecimalComma({3, 3}); });
    EXPECT_TRUE(failure == 0 || failure == 50290) << failure;
    failures += failure == 0 ? 0 : 1;
    excel.busyOperations = 0;
    EXPECT_EQ(excel.sheet().cells, before) << "step " << step;
    EXPECT_TRUE(excel.saved) << "step " << step;
  }
  EXPECT_GT(failures, 10);
  EXPECT_LT(failures, steps);
}

TEST_F(ExcelLinkTest, FindsTextsThatHoldWildcards) {
  excel.At({2, 2}).value = std::string("what? 2*3 ~ 6");
  excel.At({3, 2}).value = std::string("whatever 2 by 3");
  link.Attach();
  link.Find("2*3 ~");
  EXPECT_EQ(link.ActiveCell(), (CellPosition{2, 2}));
  EXPECT_EQ(FailureIn([&] { link.Find("by*3"); }), 91);
  EXPECT_EQ(FailureIn([&] { link.Find(""); }), 91);
}

TEST_F(ExcelLinkTest, ShowsAndEndsExcel) {
  EXPECT_EQ(FailureIn([&] { link.Visible(); }), 91);
  EXPECT_EQ(FailureIn([&] { link.Quit(); }), 91);
  excel.visible = false;
  link.Attach();
  EXPECT_FALSE(link.Visible());
  link.SetVisible(true);
  EXPECT_TRUE(link.Visible());
  link.Quit();
  EXPECT_EQ(excel.quits, 1);
  EXPECT_EQ(FailureIn([&] { link.SheetName(); }), 91);
  EXPECT_EQ(FailureIn([&] { link.Attach(); }), 429);
}

}  // namespace
}  // namespace orv
