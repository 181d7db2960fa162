#include "model/excel_values.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "support/failure_in.h"

namespace orv {
namespace {

class NoObject : public AutomationObject {
 public:
  AutomationValue Get(const std::string&, const AutomationList&) override { return {}; }
  void Put(const std::string&, const AutomationValue&) override {}
  AutomationValue Call(const std::string&, const AutomationList&) override { return {}; }
};

using testing::FailureIn;

TEST(ExcelValues, NumbersHaveFifteenDigitsAndTheSeparator) {
  EXPECT_EQ(ValueText(0.1, "."), "0.1");
  EXPECT_EQ(ValueText(0.1, ","), "0,1");
  EXPECT_EQ(ValueText(-1234.5, ","), "-1234,5");
  EXPECT_EQ(ValueText(1.0 / 3, "."), "0.333333333333333");
  EXPECT_EQ(ValueText(1.5e20, ","), "1,5E+20");
  EXPECT_EQ(ValueText(1e-5, "."), "1E-05");
  EXPECT_EQ(ValueText(45000.0, "."), "45000");
}

TEST(ExcelValues, LogicalValuesTextsAndNothing) {
  EXPECT_EQ(ValueText(true, "."), "TRUE");
  EXPECT_EQ(ValueText(false, "."), "FALSE");
  EXPECT_EQ(ValueText(std::string("0.5 m"), ","), "0.5 m");
  EXPECT_EQ(ValueText({}, "."), "");
  EXPECT_EQ(ValueText(AutomationReference(std::make_shared<NoObject>()), "."), "");
}

TEST(ExcelValues, ErrorsAreGivenAsTheSheetShowsThem) {
  const std::vector<std::pair<int, std::string>> errors = {{2000, "#NULL!"}, {2007, "#DIV/0!"}, {2015, "#VALUE!"},
                                                           {2023, "#REF!"},  {2029, "#NAME?"},  {2036, "#NUM!"},
                                                           {2042, "#N/A"},   {2045, "#SPILL!"}, {2050, "#CALC!"}};
  for (const auto& [code, text] : errors) {
    EXPECT_EQ(ValueText(AutomationError{code}, "."), text);
    // With the facility in its upper half, as a cell gives it.
    EXPECT_EQ(ValueText(AutomationError{static_cast<std::int32_t>(0x800A0000U + static_cast<unsigned>(code))}, "."),
              text);
  }
  EXPECT_EQ(ValueText(AutomationError{2999}, "."), "#VALUE!");
}

TEST(ExcelValues, RectanglesAreRowsOfCellsBetweenTabs) {
  AutomationTable table;
  table.rows = 2;
  table.columns = 3;
  table.values = {std::string("a\tb"), 0.5, {}, std::string("one\r\ntwo\nthree\rfour"), AutomationError{2042}, true};
  std::string text = "before ";
  AppendRangeText(text, std::make_shared<const AutomationTable>(table), ",");
  EXPECT_EQ(text, "before a b\t0,5\t\r\none two three four\t#N/A\tTRUE\r\n");
}

TEST(ExcelValues, OneCellIsARectangleToo) {
  std::string text;
  AppendRangeText(text, std::string("x\ty"), ".");
  AppendRangeText(text, {}, ".");
  AppendRangeText(text, 2.5, ".");
  EXPECT_EQ(text, "x y\r\n\r\n2.5\r\n");
}

TEST(ExcelValues, AnswersOfAnotherKindFail) {
  EXPECT_EQ(AnswerNumber(2.5), 2.5);
  EXPECT_EQ(AnswerCount(1048576.0), 1048576);
  EXPECT_EQ(AnswerText(std::string("a")), "a");
  EXPECT_EQ(FailureIn([] { AnswerNumber(std::string("1")); }), 13);
  EXPECT_EQ(FailureIn([] { AnswerText({}); }), 13);
  EXPECT_EQ(FailureIn([] { AnswerCount(1e12); }), 6);
  EXPECT_EQ(FailureIn([] { AnswerCount(std::numeric_limits<double>::quiet_NaN()); }), 6);
  EXPECT_EQ(FailureIn([] { AnswerObject({}); }), 91);
  EXPECT_EQ(FailureIn([] { AnswerObject(1.0); }), 424);
  const AutomationReference object = std::make_shared<NoObject>();
  EXPECT_EQ(AnswerObject(object), object);
}

TEST(ExcelValues, SearchesForWildcardsThemselves) {
  EXPECT_EQ(SearchPattern("Table      1"), "Table      1");
  EXPECT_EQ(SearchPattern("a*b?c~d"), "a~*b~?c~~d");
  EXPECT_EQ(SearchPattern(""), "");
}

int NumberFor(std::uint32_t result, std::uint32_t source = 0) {
  return static_cast<int>(FailureOfCall(static_cast<std::int32_t>(result), static_cast<std::int32_t>(source)).number());
}

TEST(ExcelValues, ResultsOfCallsBecomeTheClassicNumbers) {
  EXPECT_EQ(NumberFor(0x800401E3), 429);    // not running
  EXPECT_EQ(NumberFor(0x800401F3), 429);    // not installed
  EXPECT_EQ(NumberFor(0x80040154), 429);    // not registered
  EXPECT_EQ(NumberFor(0x80010001), 50290);  // call rejected
  EXPECT_EQ(NumberFor(0x8001010A), 50290);  // retry later
  EXPECT_EQ(NumberFor(0x800AC472), 50290);  // a user types in a cell
  EXPECT_EQ(NumberFor(0x800A03EC), 1004);
  EXPECT_EQ(NumberFor(0x800A01A8), 424);
  EXPECT_EQ(NumberFor(0x8002000B), 9);
  EXPECT_EQ(NumberFor(0x80020005), 13);
  EXPECT_EQ(NumberFor(0x80020004), 448);
  EXPECT_EQ(NumberFor(0x80020006), 438);
  EXPECT_EQ(NumberFor(0x80070005), 70);
  EXPECT_EQ(NumberFor(0x80004003), 91);
}

TEST(ExcelValues, AProgramThatWentAwayKeepsItsNumber) {
  EXPECT_EQ(NumberFor(0x80010108), -2147417848);
  EXPECT_EQ(NumberFor(0x80010007), -2147417848);
  EXPECT_EQ(NumberFor(0x800706BE), -2147023170);
  EXPECT_EQ(NumberFor(0x800706BA), -2147023170);
  EXPECT_EQ(NumberFor(0x80081234), static_cast<std::int32_t>(0x80081234));
}

TEST(ExcelValues, WhatTheProgramTellsOfAFailureWins) {
  EXPECT_EQ(NumberFor(0x80020009, 0x800A03EC), 1004);
  EXPECT_EQ(NumberFor(0x80020009, 0x800AC472), 50290);
  EXPECT_EQ(NumberFor(0x80020009, 9), 9);  // its short form
  EXPECT_EQ(NumberFor(0x80020009, 0x80010108), -2147417848);
  EXPECT_EQ(NumberFor(0x80020009), 440);
  const std::int32_t failed = static_cast<std::int32_t>(0x80020009);
  EXPECT_EQ(FailureOfCall(failed, 1004, "No cells were found.").description(), "No cells were found.");
  EXPECT_EQ(FailureOfCall(failed, 9).description(), "Subscript out of range");
  EXPECT_EQ(FailureOfCall(failed).description(), "Automation error");
  EXPECT_EQ(FailureOfCall(static_cast<std::int32_t>(0x800401E3)).description(),
            "ActiveX component can't create object");
}

}  // namespace
}  // namespace orv
