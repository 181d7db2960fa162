#include "model/formula_text.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

std::string ShiftFormula(const std::string& formula, CellPosition from, CellPosition to) {
  return SharedFormula(formula, from).At(to);
}

TEST(SharedFormula, MovesRelativeReferencesOnly) {
  const CellPosition from{2, 2};
  const CellPosition to{5, 3};
  EXPECT_EQ(ShiftFormula("A1+$A1+A$1+$A$1", from, to), "B4+$A4+B$1+$A$1");
  EXPECT_EQ(ShiftFormula("SUM(A2:B7)", from, to), "SUM(B5:C10)");
  EXPECT_EQ(ShiftFormula("Sheet1!A1*'My B2'!A1", from, to), "Sheet1!B4*'My B2'!B4");
  EXPECT_EQ(ShiftFormula("SUM(A:$B,2:$3)", from, to), "SUM(B:$B,5:$3)");
  EXPECT_EQ(ShiftFormula("[1]Data!A1", from, to), "[1]Data!B4");
}

TEST(SharedFormula, LeavesWhatIsNoReference) {
  const CellPosition from{1, 1};
  const CellPosition to{3, 3};
  for (const char* text : {"LOG10(5)", "\"A1 and \"\"B2\"\"\"", "Table1[[#This Row],[A1]]", "my_A1", "A1B", "1.5E5",
                           "#REF!", "AB12!$A$1", "TRUE", "XFE1", "A1048577", "Rate", "X"}) {
    EXPECT_EQ(ShiftFormula(text, from, to), text);
  }
}

TEST(SharedFormula, LosesAReferenceThatLeavesTheSheet) {
  EXPECT_EQ(ShiftFormula("A1+B5", {5, 2}, {1, 1}), "#REF!+A1");
  EXPECT_EQ(ShiftFormula("XFD1", {1, 1}, {1, 2}), "#REF!");
  EXPECT_EQ(ShiftFormula("A1048576", {1, 1}, {2, 1}), "#REF!");
}

TEST(FormulaFromXlsx, DropsThePrefixesOfNewerFunctions) {
  EXPECT_EQ(FormulaFromXlsx("SUM(A1,2)"), "=SUM(A1,2)");
  EXPECT_EQ(FormulaFromXlsx("=A1"), "=A1");
  EXPECT_EQ(FormulaFromXlsx("_xlfn.XOR(A1,_xlfn._xlws.FILTER(B1:B2,1))"), "=XOR(A1,FILTER(B1:B2,1))");
  EXPECT_EQ(FormulaFromXlsx("\"_xlfn.\"&A1"), "=\"_xlfn.\"&A1");
  EXPECT_EQ(FormulaFromXlsx("SUM(A1~B2)"), "=SUM(A1,B2)");
}

TEST(FormulaFromXlsx, PutsARowOfSheetsIntoOnePairOfQuotes) {
  EXPECT_EQ(FormulaFromXlsx("SUM('Sheet 1':Last!A1:B2)"), "=SUM('Sheet 1:Last'!A1:B2)");
  EXPECT_EQ(FormulaFromXlsx("SUM(First:'It''s'!A1)"), "=SUM('First:It''s'!A1)");
  EXPECT_EQ(FormulaFromXlsx("SUM('Sheet 1:Last'!A1)"), "=SUM('Sheet 1:Last'!A1)");
  EXPECT_EQ(FormulaFromXlsx("SUM(A1:'Sheet 1'!B2)"), "=SUM(A1:'Sheet 1'!B2)");
  EXPECT_EQ(FormulaFromXlsx("'a':"), "='a':");
}

TEST(FormulaFromOds, TurnsReferencesIntoA1Notation) {
  EXPECT_EQ(FormulaFromOds("of:=SUM([.$B$1:.C1])"), "=SUM($B$1:C1)");
  EXPECT_EQ(FormulaFromOds("of:=[.A1]+[.B2]*2"), "=A1+B2*2");
  EXPECT_EQ(FormulaFromOds("of:=[Sheet2.A1]+[$Sheet2.$B$2]"), "=Sheet2!A1+Sheet2!$B$2");
  EXPECT_EQ(FormulaFromOds("of:=SUM([$'Sheet Two'.A1:.B2])"), "=SUM('Sheet Two'!A1:B2)");
  EXPECT_EQ(FormulaFromOds("of:=[$'It''s; [x].y'.A1]"), "='It''s; [x].y'!A1");
  EXPECT_EQ(FormulaFromOds("of:=SUM([S1.A1:S3.B2])"), "=SUM('S1:S3'!A1:B2)");
  EXPECT_EQ(FormulaFromOds("of:=SUM([First.A1:Third.B2])"), "=SUM(First:Third!A1:B2)");
  EXPECT_EQ(FormulaFromOds("of:=SUM([.A:.B])+SUM([.2:.3])"), "=SUM(A:B)+SUM(2:3)");
  EXPECT_EQ(FormulaFromOds("of:=[.#REF!]+[#REF!.A1]"), "=#REF!+#REF!");
  EXPECT_EQ(FormulaFromOds("of:=['file:///data/other.ods'#$Sheet1.A1]"), "='[other.ods]Sheet1'!A1");
}

TEST(FormulaFromOds, TurnsSeparatorsAndOperators) {
  EXPECT_EQ(FormulaFromOds("of:=IF([.A1]>0;\"yes; [.A1]\";\"no \"\"q\"\"\")"),
            "=IF(A1>0,\"yes; [.A1]\",\"no \"\"q\"\"\")");
  EXPECT_EQ(FormulaFromOds("of:=SUM({1;2|3;4})"), "=SUM({1,2;3,4})");
  EXPECT_EQ(FormulaFromOds("of:=SUM([.A1]~[.B1])"), "=SUM(A1,B1)");
  EXPECT_EQ(FormulaFromOds("of:=[.A1:.B3]![.B1:.C9]"), "=A1:B3 B1:C9");
  EXPECT_EQ(FormulaFromOds("of:=#DIV/0!+#N/A"), "=#DIV/0!+#N/A");
  EXPECT_EQ(FormulaFromOds("of:=COM.MICROSOFT.XLOOKUP(1;[.A1];[.B1])"), "=XLOOKUP(1,A1,B1)");
  EXPECT_EQ(FormulaFromOds("of:=LEGACY.CHIDIST(3;2)"), "=CHIDIST(3,2)");
}

TEST(FormulaFromOds, KnowsOtherNotations) {
  EXPECT_EQ(FormulaFromOds("msoxl:=SUM(A1,B2)"), "=SUM(A1,B2)");
  EXPECT_EQ(FormulaFromOds("oooc:=SUM([.A1];[.B2])"), "=SUM(A1,B2)");
  EXPECT_EQ(FormulaFromOds("=[.A1]"), "=A1");
  EXPECT_EQ(FormulaFromOds(""), "=");
}

TEST(FormulaTexts, SurviveTextsThatAreNoFormulas) {
  for (const char* text :
       {"[", "'",  "\"", "[.",  "['",    "['a'#", "[']",      "{",       "}|",        "#",       "$",
        ":", "A:", ":A", "[:]", "[.A1:", "a''",   "\xFF\xFE", "of:=[']", "of:=[''#]", "of:=[$]", "of:=[$.]"}) {
    EXPECT_EQ(FormulaFromOds(text).front(), '=') << text;
    EXPECT_EQ(FormulaFromXlsx(text).front(), '=') << text;
    EXPECT_LT(ShiftFormula(text, {1, 1}, {2, 2}).size(), 20U) << text;
  }
}

TEST(QuotedSheetName, QuotesWhereNeeded) {
  EXPECT_EQ(QuotedSheetName("Sheet1"), "Sheet1");
  EXPECT_EQ(QuotedSheetName("Données"), "Données");
  EXPECT_EQ(QuotedSheetName("My Sheet"), "'My Sheet'");
  EXPECT_EQ(QuotedSheetName("It's"), "'It''s'");
  EXPECT_EQ(QuotedSheetName("2024"), "'2024'");
  EXPECT_EQ(QuotedSheetName("AB12"), "'AB12'");
}

}  // namespace
}  // namespace orv
