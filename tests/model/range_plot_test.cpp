#include "model/range_plot.h"

#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

using testing::ScriptedDialogs;

struct Parsed {
  bool valid = false;
  double scale = -1;
  std::string options = "left over";
  RangeTexts ranges;
};

Parsed Parse(const std::string& spec, const Locale& locale = {}, const std::string& keyword = "MAX") {
  ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  Parsed parsed;
  parsed.ranges.fill("left over");
  parsed.valid = ParseSpecification(spec, parsed.scale, parsed.options, parsed.ranges, reader, keyword);
  return parsed;
}

PlotRanges RangesOf(const std::string& spec, bool wideEnough = true) {
  PlotRanges ranges;
  EXPECT_EQ(FindPlotRanges(Parse(spec).ranges, ranges), wideEnough) << spec;
  return ranges;
}

std::vector<std::string> TextsOf(const PlotRanges& ranges) {
  std::vector<std::string> texts;
  for (const RangeBounds& range : ranges.range) texts.push_back(RangeText(range));
  return texts;
}

using Texts = std::vector<std::string>;

TEST(ParseSpecification, ReadsOneRange) {
  const Parsed parsed = Parse("=MAX(A2:C60)");
  EXPECT_TRUE(parsed.valid);
  EXPECT_EQ(parsed.scale, 1);
  EXPECT_EQ(parsed.options, "ValisExcelPro");
  EXPECT_EQ(parsed.ranges, (RangeTexts{"A2:C60", "", "", "", "", ""}));
}

TEST(ParseSpecification, ReadsSixRangesScaleAndOptions) {
  const Parsed parsed =
      Parse("=0.001*MAX(A2:C60)+MAX(D2:D60)+MAX(E2:F9)+MAX(G2:K60)+MAX(L2:M60)+MAX(N2:O60) \"moon ESA\"");
  EXPECT_TRUE(parsed.valid);
  EXPECT_EQ(parsed.scale, 0.001);
  EXPECT_EQ(parsed.options, "moon ESA");
  EXPECT_EQ(parsed.ranges, (RangeTexts{"A2:C60", "D2:D60", "E2:F9", "G2:K60", "L2:M60", "N2:O60"}));
}

TEST(ParseSpecification, TakesNoMoreThanSixRanges) {
  const Parsed parsed = Parse("=MAX(A1:C2)+MAX(B1:C2)+MAX(C1:C2)+MAX(D1:D2)+MAX(E1:F2)+MAX(F1:F2)+MAX(G1:H2)");
  EXPECT_EQ(parsed.ranges[5], "F1:F2");
}

struct ScaleRow {
  const char* spec;
  double scale;
};

TEST(ParseSpecification, ReadsTheScale) {
  for (const ScaleRow& row :
       {ScaleRow{"=0*MAX(A2:C60)", 1}, ScaleRow{"=MAX(A2:C60)", 1}, ScaleRow{"=2MAX(A2:C60)", 2},
        ScaleRow{" = 1.5 * MAX(A2:C60)", 1.5}, ScaleRow{"=-2*MAX(A2:C60)", -2}, ScaleRow{"=+MAX(A2:C60)", 1},
        ScaleRow{"=1E-3*MAX(A2:C60)", 0.001}, ScaleRow{"=1,25*MAX(A2:C60)", 1.25}, ScaleRow{"3*MAX(A2:C60)", 3},
        ScaleRow{"=abc*MAX(A2:C60)", 1}, ScaleRow{"=1/1000*MAX(A2:C60)", 1}, ScaleRow{"=MAX(A2:C60)*5", 1}}) {
    SCOPED_TRACE(row.spec);
    EXPECT_DOUBLE_EQ(Parse(row.spec).scale, row.scale);
  }
}

TEST(ParseSpecification, KeepsThePointOfAFormulaUnderALocaleThatGroupsWithPoints) {
  EXPECT_EQ(Parse("=0.001*MAX(A2:C60)", {",", "."}).scale, 0.001);
  EXPECT_EQ(Parse("=0,001*MAX(A2:C60)", {",", "."}).scale, 0.001);
}

TEST(ParseSpecification, TakesAScaleThatIsTooLargeForNone) {
  EXPECT_EQ(Parse("=1e999*MAX(A2:C60)").scale, 1);
}

struct OptionsRow {
  const char* spec;
  const char* options;
};

TEST(ParseSpecification, FindsTheOptionsBetweenQuotes) {
  for (const OptionsRow& row :
       {OptionsRow{"=MAX(A2:C60)", "ValisExcelPro"}, OptionsRow{"=MAX(A2:C60)\"PENUP\"", "PENUP"},
        OptionsRow{"=MAX(A2:C60)&\"PENUP valx\"", "PENUP valx"}, OptionsRow{"=MAX(A2:C60) \"\"", ""},
        OptionsRow{"=MAX(A2:C60)&\"\"PENUP\"\"", "PENUP"}, OptionsRow{"=MAX(A2:C60) \"\"\"PENUP\"\"\"", "PENUP"},
        OptionsRow{"=MAX(A2:C60) \"\"PENUP", ""}, OptionsRow{"=MAX(A2:C60) \"PENUP", "PENUP"},
        OptionsRow{"=MAX(A2:C60) \"", ""}, OptionsRow{"=MAX(A2:C60) \"\"\"", ""},
        OptionsRow{"\"moon\" =MAX(A2:C60)", "moon"}}) {
    SCOPED_TRACE(row.spec);
    const Parsed parsed = Parse(row.spec);
    EXPECT_EQ(parsed.options, row.options);
    EXPECT_TRUE(parsed.valid);
    EXPECT_EQ(parsed.ranges[0], "A2:C60");
  }
}

TEST(ParseSpecification, TakesNoRangeFromTheOptions) {
  const Parsed parsed = Parse("=MAX(A2:C60)&\"MAX(D2:D60)\"");
  EXPECT_EQ(parsed.ranges[1], "");
}

TEST(ParseSpecification, TakesNoOtherFunctionForARange) {
  for (const char* spec :
       {"=SUM(A2:C60)", "=XMAX(A2:C60)", "=MAXA(A2:C60)", "=MAX", "", "MAX(", "=A2:C60", "=MAX(A2)"}) {
    SCOPED_TRACE(spec);
    const Parsed parsed = Parse(spec);
    EXPECT_FALSE(parsed.valid);
    EXPECT_EQ(parsed.scale, 1);
  }
  EXPECT_EQ(Parse("=SUM(D2:D60)+MAX(A2:C60)").ranges, (RangeTexts{"A2:C60", "", "", "", "", ""}));
}

TEST(ParseSpecification, DropsDollarsAndBlanksAndLooksAtNoCase) {
  EXPECT_EQ(Parse("= max ( $A$2 : $C$60 )").ranges[0], "A2:C60");
  EXPECT_EQ(Parse("=MAX(\xC2\xA0"
                  "A2:C60)")
                .ranges[0],
            "A2:C60");
}

TEST(ParseSpecification, TakesAnotherKeywordInsteadOfMax) {
  EXPECT_EQ(Parse("=2*SUM(A2:C60)+MAX(D2:D9)", {}, "SUM").ranges, (RangeTexts{"A2:C60", "", "", "", "", ""}));
  EXPECT_FALSE(Parse("=MAX(A2:C60)", {}, "SUM").valid);
  EXPECT_FALSE(Parse("=MAX(A2:C60)", {}, "").valid);
}

TEST(ParseSpecification, TakesTheRestForAMissingParenthesis) {
  EXPECT_EQ(Parse("=MAX(A2:C60").ranges[0], "A2:C60");
}

TEST(ParseRange, CountsColumnsByLetters) {
  EXPECT_EQ(ParseRange("A2:C60"), (RangeBounds{1, 3, 2, 60}));
  EXPECT_EQ(ParseRange("Z1:AA9"), (RangeBounds{26, 27, 1, 9}));
  EXPECT_EQ(ParseRange("ab10:zz1048576"), (RangeBounds{28, 702, 10, 1048576}));
  EXPECT_EQ(ParseRange("$A$2:$C$60"), (RangeBounds{1, 3, 2, 60}));
  EXPECT_EQ(ParseRange("C60:A2"), (RangeBounds{3, 1, 60, 2}));
}

TEST(ParseRange, LeavesNothingOfOtherTexts) {
  for (const char* text :
       {"", "A2", "A:C", "2:60", "A2:C", "A:C60", "A2C60", "ABC2:ABD3", "A0:C5", "A2:C1048577",
        "A2:C99999999999999999999", "A2:C60x", "A2:C60:D4", "Sheet1!A2:C60", "A2:C60,D2:D60", "-A2:C3", "A-2:C3",
        "\xC3\x89"
        "2:C3",
        ":"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(ParseRange(text), RangeBounds{});
  }
}

TEST(ParseRange, AcceptsAHundredCharacters) {
  const std::string fits = "A" + std::string(94, '0') + "2:C60";
  ASSERT_EQ(fits.size(), 100U);
  EXPECT_EQ(ParseRange(fits), (RangeBounds{1, 3, 2, 60}));
  EXPECT_EQ(ParseRange("A0" + fits.substr(1)), RangeBounds{});
}

TEST(RangeText, IsTheTextThatParses) {
  for (const char* text : {"A2:C60", "Z1:AA9", "AB10:ZZ1048576"}) EXPECT_EQ(RangeText(ParseRange(text)), text);
  EXPECT_EQ(RangeText({703, 704, 1, 2}), "AAA1:AAB2");
  EXPECT_EQ(RangeText({}), "");
}

TEST(FindPlotRanges, SplitsAWideFirstRange) {
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)")), (Texts{"A2:C60", "", "", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:D60)")), (Texts{"A2:C60", "D2:D60", "", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:F60)")), (Texts{"A2:C60", "D2:D60", "E2:F60", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(B2:L60)")), (Texts{"B2:D60", "E2:E60", "F2:G60", "H2:L60", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:M60)")), (Texts{"A2:C60", "D2:D60", "E2:F60", "G2:K60", "L2:M60", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:O60)")), (Texts{"A2:C60", "D2:D60", "E2:F60", "G2:K60", "L2:M60", "N2:O60"}));
}

TEST(FindPlotRanges, SplitsNoOtherWidth) {
  for (const char* last : {"E", "G", "H", "I", "J", "L", "N", "P"}) {
    const std::string text = std::string("A2:") + last + "60";
    const PlotRanges ranges = RangesOf("=MAX(" + text + ")");
    EXPECT_EQ(TextsOf(ranges), (Texts{text, "", "", "", "", ""}));
    EXPECT_EQ(RangeText(ranges.Taken(0)), "A2:C60");
    EXPECT_TRUE(ranges.FirstAlone());
  }
}

TEST(FindPlotRanges, MovesTheOtherRangesBehindTheSplitOnes) {
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:D60)+MAX(H2:I9)+MAX(J2:N9)")),
            (Texts{"A2:C60", "D2:D60", "H2:I9", "J2:N9", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:O60)+MAX(R2:S9)")),
            (Texts{"A2:C60", "D2:D60", "E2:F60", "G2:K60", "L2:M60", "N2:O60"}));
}

TEST(FindPlotRanges, ClampsTheRanges) {
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:Z60)")), (Texts{"A2:P60", "", "", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)")),
            (Texts{"A2:C60", "D2:G60", "D2:F60", "D2:H60", "D2:E60", "D2:E60"}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A60:C2)+MAX(F9:D3)")), (Texts{"A60:C60", "F9:F9", "", "", "", ""}));
}

TEST(FindPlotRanges, TakesTheColumnsOfEachPlace) {
  const PlotRanges ranges = RangesOf("=MAX(A2:C60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)+MAX(D2:J60)");
  std::vector<int> columns;
  for (std::size_t k = 0; k < kPlotRanges; ++k) columns.push_back(ranges.Taken(k).columns());
  EXPECT_EQ(columns, (std::vector<int>{3, 1, 2, 5, 2, 2}));
  EXPECT_FALSE(ranges.FirstAlone());
}

TEST(FindPlotRanges, RefusesANarrowFirstRange) {
  RangesOf("=MAX(A2:B60)", false);
  RangesOf("=MAX(C2:A60)", false);
  RangesOf("=MAX(A2)", false);
  RangesOf("", false);
}

TEST(FindPlotRanges, ExtendsASingleCellOfValues) {
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX(E5)")), (Texts{"A2:C60", "E5:E63", "", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX($E$5)")), (Texts{"A2:C60", "E5:E63", "", "", "", ""}));
  EXPECT_EQ(RangesOf("=MAX(A2:C60)+MAX(E1048570)").range[1], (RangeBounds{5, 5, 1048570, 1048576}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX(5)")), (Texts{"A2:C60", "", "", "", "", ""}));
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX(D2:D9)+MAX(E5)")), (Texts{"A2:C60", "D2:D9", "", "", "", ""}));
}

TEST(FindPlotRanges, KeepsThePlaceBehindAnEmptyRange) {
  EXPECT_EQ(TextsOf(RangesOf("=MAX(A2:C60)+MAX()+MAX(E2:F9)")), (Texts{"A2:C60", "", "E2:F9", "", "", ""}));
}

TEST(PlotRanges, HaveTheLinesOfTheLongestRange) {
  EXPECT_EQ(RangesOf("=MAX(A2:C60)+MAX(D2:D90)").LineCount(), 89);
  EXPECT_EQ(PlotRanges().LineCount(), 0);
  EXPECT_FALSE(PlotRanges().FirstAlone());
}

struct RemoveRow {
  const char* word;
  const char* text;
  const char* left;
};

TEST(RemoveWord, JoinsBothSidesWithABlank) {
  for (const RemoveRow& row : {RemoveRow{"PENUP", "PENUP", ""}, RemoveRow{"PENUP", "penUp valz", "  valz"},
                               RemoveRow{"valz", "PENUP valz", "PENUP "}, RemoveRow{"moon", "a moon b", "a   b"},
                               RemoveRow{"moon", "moonmoon", " moon"}, RemoveRow{"xyzw", "axyzwb", "a b"}}) {
    SCOPED_TRACE(row.text);
    std::string text = row.text;
    EXPECT_TRUE(RemoveWord(row.word, text));
    EXPECT_EQ(text, row.left);
  }
}

TEST(RemoveWord, LeavesATextWithoutTheWord) {
  for (const char* original : {"", "moo n", "PEN UP"}) {
    std::string text = original;
    EXPECT_FALSE(RemoveWord("moon", text));
    EXPECT_EQ(text, original);
  }
  std::string text = "abc";
  EXPECT_FALSE(RemoveWord("", text));
}

PlotSwitches Switches(std::string options) {
  return ReadPlotOptions(options);
}

TEST(ReadPlotOptions, KnowsEachWordInAnyCase) {
  EXPECT_TRUE(Switches("penup").PenUpMode);
  EXPECT_EQ(Switches("VALX").ValueColumn, 1);
  EXPECT_EQ(Switches("valy").ValueColumn, 2);
  EXPECT_EQ(Switches("ValZ").ValueColumn, 3);
  EXPECT_EQ(Switches("Maravo").MaravoFactor, 0.5);
  EXPECT_TRUE(Switches("XYZW").TraceOrderWFirst);
  EXPECT_TRUE(Switches("Moon").MoonView);
  EXPECT_TRUE(Switches("LUNE").MoonView);
}

TEST(ReadPlotOptions, TakesEsaInCapitalsAlone) {
  EXPECT_TRUE(Switches("ESA").TraceOrderWFirst);
  EXPECT_FALSE(Switches("esa").TraceOrderWFirst);
  EXPECT_FALSE(Switches("Esa").TraceOrderWFirst);
}

TEST(ReadPlotOptions, PrefersZToYToX) {
  EXPECT_EQ(Switches("valx valz").ValueColumn, 3);
  EXPECT_EQ(Switches("valx valy").ValueColumn, 2);
}

TEST(ReadPlotOptions, SwitchesNothingByDefault) {
  for (const char* options : {"", "ValisExcelPro"}) {
    const PlotSwitches switches = Switches(options);
    EXPECT_FALSE(switches.PenUpMode || switches.TraceOrderWFirst || switches.MoonView);
    EXPECT_EQ(switches.ValueColumn, 0);
    EXPECT_EQ(switches.MaravoFactor, 0);
  }
}

TEST(ReadPlotOptions, RemovesTheWordsThatAreReadOnce) {
  std::string options = "PENUP valz maravo ESA xyzw moon lune rest";
  const PlotSwitches switches = ReadPlotOptions(options);
  EXPECT_TRUE(switches.PenUpMode && switches.TraceOrderWFirst && switches.MoonView);
  EXPECT_EQ(UpperTrim(options).find("ESA"), 0U);
  EXPECT_EQ(options.substr(options.size() - 4), "rest");
  for (const char* word : {"PENUP", "valz", "maravo", "xyzw", "moon", "lune"}) {
    EXPECT_EQ(options.find(word), std::string::npos) << word;
  }
}

TEST(WrongSpecificationText, NamesTheSpecification) {
  EXPECT_EQ(WrongSpecificationText("=1"),
            "Warning: an Excel sheet is already open without a correct specification for ValisExcelPro:    =1   . You "
            "should open only the one with a correct specification or you can write or use a previous specification in "
            "the scolling textbox");
}

}  // namespace
}  // namespace orv
