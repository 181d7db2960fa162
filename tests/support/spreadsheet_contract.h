#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "model/workbook_contents.h"
#include "model/worksheet.h"
#include "numerics/failure.h"
#include "support/workbook_writer.h"

// The same expectations on every store behind Spreadsheet: a test program instantiates SpreadsheetContract with its
// own.
namespace orv::testing {

// What a cell reads as in a store with the locale.
inline std::string ShownValue(const TestCell& cell, const Locale& locale) {
  if (cell.kind != CellKind::Number) return cell.value;
  double value = 0;
  EXPECT_TRUE(ReadPlainNumber(cell.value, value)) << cell.value;
  return WorkbookBuilder("", locale).NumberText(value);
}

struct Store {
  std::string name;
  bool keepsFormulas = true;
  bool keepsViews = true;
  std::function<std::unique_ptr<Spreadsheet>(const TestBook&, const Locale&, const TemporaryFolder&)> make;
};

inline void PrintTo(const Store& store, std::ostream* out) {
  *out << store.name;
}

inline TestCell Constant(int row, int column, const std::string& text) {
  return {{row, column}, CellKind::Text, text, "", ""};
}
inline TestCell Number(int row, int column, const std::string& digits) {
  return {{row, column}, CellKind::Number, digits, "", ""};
}

class SpreadsheetContract : public ::testing::TestWithParam<Store> {
 protected:
  Spreadsheet& Open(const TestBook& book, const Locale& locale = {}) {
    store_ = GetParam().make(book, locale, folder_);
    store_->Attach();
    return *store_;
  }
  Spreadsheet& Open(const std::vector<TestCell>& cells, CellPosition active = {}, const Locale& locale = {}) {
    return Open(TestBook{{{"Sheet1", cells, active}}, 0}, locale);
  }

  TemporaryFolder folder_;
  std::unique_ptr<Spreadsheet> store_;
};

inline FailureNumber NumberOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return failure.number();
  }
  return FailureNumber{0};
}

TEST_P(SpreadsheetContract, GivesTheNamesOfBookAndSheet) {
  Spreadsheet& sheet = Open({Constant(1, 1, "x")});
  EXPECT_EQ(sheet.SheetName(), "Sheet1");
  ASSERT_GE(sheet.WindowCount(), 1);
  EXPECT_FALSE(sheet.WindowCaption(sheet.WindowCount()).empty());
  EXPECT_EQ(NumberOf([&] { sheet.WindowCaption(sheet.WindowCount() + 1); }), FailureNumber::SubscriptOutOfRange);
  EXPECT_EQ(NumberOf([&] { sheet.WindowCaption(0); }), FailureNumber::SubscriptOutOfRange);
  const std::string path = sheet.WorkbookPath();
  ASSERT_FALSE(path.empty());
  EXPECT_EQ(path.front(), '/');
  EXPECT_NE(path.back(), '/');
}

TEST_P(SpreadsheetContract, GivesTheActiveSheetWithItsActiveCell) {
  TestBook book;
  book.sheets = {{"First", {Constant(1, 1, "one")}, {9, 9}},
                 {"Sheet Two & é", {Constant(2, 3, "two")}, {40, 703}},
                 {"Third", {Constant(1, 1, "three")}, {1, 1}}};
  book.active = 1;
  Spreadsheet& sheet = Open(book);
  EXPECT_EQ(sheet.SheetName(), "Sheet Two & é");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{40, 703}));
  EXPECT_EQ(sheet.Value({2, 3}), "two");
  EXPECT_EQ(sheet.Value({1, 1}), "");
}

TEST_P(SpreadsheetContract, GivesTextsAsTheyWereTyped) {
  const std::vector<std::string> texts = {"Orvdata",     "Table      1",    " blanks  around ",
                                          "é Ω 中 😀",    "hard\u00A0blank", "<a & \"b\">",
                                          "tab\tinside", "two\nlines",      "007",
                                          "1,5",         "'quoted'"};
  std::vector<TestCell> cells;
  for (std::size_t k = 0; k < texts.size(); ++k) cells.push_back(Constant(static_cast<int>(k) + 1, 2, texts[k]));
  Spreadsheet& sheet = Open(cells);
  for (std::size_t k = 0; k < texts.size(); ++k) {
    EXPECT_EQ(sheet.Value({static_cast<int>(k) + 1, 2}), texts[k]);
    EXPECT_EQ(sheet.Formula({static_cast<int>(k) + 1, 2}), texts[k]);
    EXPECT_EQ(sheet.Value({static_cast<int>(k) + 1, 1}), "");
  }
}

TEST_P(SpreadsheetContract, GivesNumbersWithFifteenDigits) {
  const std::vector<std::pair<std::string, std::string>> numbers = {{"0.1", "0.1"},
                                                                    {"0", "0"},
                                                                    {"-12.5", "-12.5"},
                                                                    {"1.0000000000000001E-5", "1E-05"},
                                                                    {"1.5E+20", "1.5E+20"},
                                                                    {"0.30000000000000004", "0.3"},
                                                                    {"3.1415926535897931", "3.14159265358979"},
                                                                    {"45322.520833333336", "45322.5208333333"},
                                                                    {"123456789012345678", "1.23456789012346E+17"},
                                                                    {"1E-300", "1E-300"}};
  std::vector<TestCell> cells;
  for (std::size_t k = 0; k < numbers.size(); ++k)
    cells.push_back(Number(3, static_cast<int>(k) + 1, numbers[k].first));
  Spreadsheet& sheet = Open(cells);
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    EXPECT_EQ(sheet.Value({3, static_cast<int>(k) + 1}), numbers[k].second);
    EXPECT_EQ(sheet.Formula({3, static_cast<int>(k) + 1}), numbers[k].second);
  }
}

TEST_P(SpreadsheetContract, PrintsNumbersWithTheSeparatorOfTheLocale) {
  const std::vector<TestCell> cells = {Number(1, 1, "0.1"), Number(1, 2, "1.5E+20"), Constant(1, 3, "0.1 m")};
  Spreadsheet& comma = Open(cells, {}, Locale{",", "."});
  EXPECT_TRUE(comma.PrintsDecimalComma({2, 1}));
  EXPECT_EQ(comma.Value({1, 1}), "0,1");
  EXPECT_EQ(comma.Formula({1, 1}), "0,1");
  EXPECT_EQ(comma.RangeText("A1:C1"), "0,1\t1,5E+20\t0.1 m\r\n");
  Spreadsheet& point = Open(cells, {}, Locale{".", ""});
  EXPECT_FALSE(point.PrintsDecimalComma({2, 1}));
  EXPECT_EQ(point.Value({1, 1}), "0.1");
}

TEST_P(SpreadsheetContract, GivesFormulasAndTheirResults) {
  const std::vector<TestCell> cells = {
      {{1, 1}, CellKind::Number, "6.5", "SUM($B$10:C12)*2", "SUM([.$B$10:.C12])*2"},
      {{1, 2}, CellKind::Text, "yes; no", "IF(A1>0,\"yes; no\",Other!B2)", "IF([.A1]>0;\"yes; no\";[$Other.B2])"},
      {{1, 3}, CellKind::Logical, "TRUE", "A1=6.5", "[.A1]=6.5"},
      {{1, 4}, CellKind::Error, "#DIV/0!", "1/0", "1/0"},
      {{1, 5}, CellKind::Text, "", "\"\"", "\"\""},
      {{2, 1}, CellKind::Logical, "FALSE", "", ""},
      {{2, 2}, CellKind::Error, "#N/A", "", ""},
      {{2, 3}, CellKind::Number, "2", "'Sheet Two'!A1", "[$'Sheet Two'.A1]"},
      Number(10, 2, "3.25"),
  };
  Spreadsheet& sheet =
      Open(TestBook{{{"Sheet1", cells, {}}, {"Other", {}, {}}, {"Sheet Two", {Number(1, 1, "2")}, {}}}, 0});
  for (const TestCell& cell : cells) {
    EXPECT_EQ(sheet.Value(cell.position), cell.value);
    const bool formula = GetParam().keepsFormulas && !cell.formula.empty();
    EXPECT_EQ(sheet.Formula(cell.position), formula ? "=" + cell.formula : cell.value);
  }
  EXPECT_EQ(sheet.RangeText("A1:E2"), "6.5\tyes; no\tTRUE\t#DIV/0!\t\r\nFALSE\t#N/A\t2\t\t\r\n");
}

TEST_P(SpreadsheetContract, ActivatesACell) {
  Spreadsheet& sheet = Open({Constant(2, 2, "x")}, {3, 4});
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{3, 4}));
  sheet.Activate({1048576, 16384});
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{1048576, 16384}));
  EXPECT_EQ(NumberOf([&] { sheet.Activate({0, 1}); }), FailureNumber::ApplicationDefined);
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{1048576, 16384}));
}

TEST_P(SpreadsheetContract, RefusesPositionsOutsideTheSheet) {
  Spreadsheet& sheet = Open({Constant(2, 2, "x")});
  for (const CellPosition cell : {CellPosition{0, 1}, {1, 0}, {-1, 5}, {1048577, 1}, {1, 16385}}) {
    EXPECT_EQ(NumberOf([&] { sheet.Value(cell); }), FailureNumber::ApplicationDefined);
    EXPECT_EQ(NumberOf([&] { sheet.Formula(cell); }), FailureNumber::ApplicationDefined);
    EXPECT_EQ(NumberOf([&] { sheet.Activate(cell); }), FailureNumber::ApplicationDefined);
  }
  EXPECT_EQ(sheet.Value({1048576, 16384}), "");
}

TEST_P(SpreadsheetContract, FindsAPartIgnoringCase) {
  Spreadsheet& sheet = Open({Constant(3, 5, "My ORVDATA model"), Constant(7, 1, "Élan")}, {1, 1});
  sheet.Find("Orvdata");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{3, 5}));
  sheet.Find("élan");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{7, 1}));
}

TEST_P(SpreadsheetContract, FindsRowByRowFromBehindTheActiveCellAndRound) {
  Spreadsheet& sheet = Open(
      {Constant(2, 1, "key 1"), Constant(2, 9, "key 2"), Constant(3, 1, "key 3"), Constant(9, 2, "other")}, {2, 1});
  std::vector<CellPosition> found;
  for (int k = 0; k < 4; ++k) {
    sheet.Find("key");
    found.push_back(sheet.ActiveCell());
  }
  const std::vector<CellPosition> expected = {{2, 9}, {3, 1}, {2, 1}, {2, 9}};
  EXPECT_EQ(found, expected);
}

TEST_P(SpreadsheetContract, FindsTheActiveCellLast) {
  Spreadsheet& sheet = Open({Constant(4, 4, "only one")}, {4, 4});
  sheet.Find("only");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{4, 4}));
}

TEST_P(SpreadsheetContract, FailsWhenNothingIsFoundAndStays) {
  Spreadsheet& sheet = Open({Constant(4, 4, "x")}, {5, 6});
  EXPECT_EQ(NumberOf([&] { sheet.Find("Orvdata"); }), FailureNumber::ObjectVariableNotSet);
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{5, 6}));
}

TEST_P(SpreadsheetContract, SearchesTheFormulaTextsNotTheResults) {
  Spreadsheet& sheet = Open({{{2, 2}, CellKind::Text, "RESULT", "UPPER(\"sour\"&\"ce\")", "UPPER(\"sour\"&\"ce\")"}});
  if (GetParam().keepsFormulas) {
    sheet.Find("upper(");
    EXPECT_EQ(sheet.ActiveCell(), (CellPosition{2, 2}));
    EXPECT_EQ(NumberOf([&] { sheet.Find("RESULT"); }), FailureNumber::ObjectVariableNotSet);
  } else {
    sheet.Find("result");
    EXPECT_EQ(sheet.ActiveCell(), (CellPosition{2, 2}));
  }
}

TEST_P(SpreadsheetContract, CopiesARectangleAsText) {
  Spreadsheet& sheet = Open({Constant(2, 2, "a"), Number(2, 4, "0.5"), Constant(2, 703, "far"),
                             Constant(3, 3, "two\nlines\tand tab"), Constant(5, 2, "below")});
  const std::string expected = "a\t\t0.5\r\n\ttwo lines and tab\t\r\n\t\t\r\n";
  EXPECT_EQ(sheet.RangeText("B2:D4"), expected);
  EXPECT_EQ(sheet.RangeText("$B$2:$D$4"), expected);
  EXPECT_EQ(sheet.RangeText("d4:b2"), expected);
  EXPECT_EQ(sheet.RangeText("B5"), "below\r\n");
  EXPECT_EQ(sheet.RangeText("AAA2:AAA2"), "far\r\n");
  EXPECT_EQ(sheet.RangeText("B2:B5"), "a\r\n\r\n\r\nbelow\r\n");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{1, 1}));
}

TEST_P(SpreadsheetContract, RefusesATextThatIsNoRange) {
  Spreadsheet& sheet = Open({Constant(1, 1, "a")});
  for (const char* text : {"", "A", "1", "A0", "A1048577", "XFE1", "AAAA1", "A1:", ":A1", "A1:B2:C3", "A1 ", "@7:B8",
                           "A-1", "A1:B99999999999", "$A$$1", "Sheet1!A1"}) {
    EXPECT_EQ(NumberOf([&] { sheet.RangeText(text); }), FailureNumber::ApplicationDefined) << text;
  }
}

TEST_P(SpreadsheetContract, CutsAHugeRectangleToThePartInUse) {
  Spreadsheet& sheet = Open({Constant(1, 2, "a"), Constant(3, 1, "b")});
  EXPECT_EQ(sheet.RangeText("A1:XFD1048576"), "\ta\r\n\t\r\nb\t\r\n");
  EXPECT_EQ(sheet.RangeText("C5:XFD1048576"), "\r\n");
}

TEST_P(SpreadsheetContract, NeedsAnAttachedProgram) {
  Spreadsheet& sheet = Open({Constant(1, 1, "a")}, {2, 2});
  sheet.Release();
  const std::vector<std::function<void()>> operations = {[&] { sheet.WorkbookPath(); },
                                                         [&] { sheet.WindowCount(); },
                                                         [&] { sheet.WindowCaption(1); },
                                                         [&] { sheet.SheetName(); },
                                                         [&] { sheet.ActiveCell(); },
                                                         [&] {
                                                           sheet.Activate({1, 1});
                                                         },
                                                         [&] {
                                                           sheet.Formula({1, 1});
                                                         },
                                                         [&] {
                                                           sheet.Value({1, 1});
                                                         },
                                                         [&] { sheet.Find("a"); },
                                                         [&] { sheet.RangeText("A1"); },
                                                         [&] {
                                                           sheet.PrintsDecimalComma({1, 1});
                                                         }};
  for (std::size_t k = 0; k < operations.size(); ++k) {
    EXPECT_EQ(NumberOf(operations[k]), FailureNumber::ObjectVariableNotSet) << "operation " << k;
  }
  sheet.Attach();
  sheet.LetEventsThrough();
  EXPECT_EQ(sheet.Value({1, 1}), "a");
  EXPECT_EQ(sheet.ActiveCell(), (CellPosition{2, 2}));
}

TEST_P(SpreadsheetContract, ShowsWhatIsInFrontInOneLook) {
  Spreadsheet& sheet = Open({Constant(2, 2, "not this"), Number(3, 3, "0.5")}, {3, 3});
  const SheetSnapshot look = sheet.Snapshot();
  EXPECT_EQ(look.sheetName, "Sheet1");
  EXPECT_EQ(look.activeCell, (CellPosition{3, 3}));
  EXPECT_EQ(look.formula, "0.5");
  EXPECT_EQ(look.windowCount, sheet.WindowCount());
  EXPECT_EQ(look.windowCaption, sheet.WindowCaption(1));
  EXPECT_FALSE(look.workbookName.empty());
  sheet.Release();
  EXPECT_EQ(sheet.Snapshot(), look);
}

TEST_P(SpreadsheetContract, HoldsAnEmptySheet) {
  TestBook book;
  book.sheets[0].cells = {Constant(1, 1, "x")};
  book.sheets.push_back({"Empty", {}, {1, 1}});
  book.active = 1;
  Spreadsheet& sheet = Open(book);
  EXPECT_EQ(sheet.SheetName(), "Empty");
  EXPECT_EQ(sheet.Value({1, 1}), "");
  EXPECT_EQ(sheet.RangeText("A1:B2"), "\t\r\n\t\r\n");
}

}  // namespace orv::testing
