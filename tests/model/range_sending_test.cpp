#include "model/range_sending.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include "model/memory_sheet.h"
#include "numerics/paths.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

using testing::ScriptedDialogs;
using Lines = std::vector<std::string>;

// Fails at the copies that are told, and gives nothing at others.
class CopySheet : public MemorySheet {
 public:
  using MemorySheet::MemorySheet;
  std::string RangeText(const std::string& range) override {
    const std::string text = MemorySheet::RangeText(range);
    if (const auto failure = failures.find(range); failure != failures.end()) Raise(failure->second);
    return text;
  }
  bool PrintsDecimalComma(CellPosition scratch) override {
    ++decimalTests;
    return commaPrinted ? *commaPrinted : MemorySheet::PrintsDecimalComma(scratch);
  }
  std::map<std::string, FailureNumber> failures;
  std::optional<bool> commaPrinted;
  int decimalTests = 0;
};

class RangeSending : public ::testing::Test {
 protected:
  RangeSending() { sheet.Attach(); }

  void UseLocale(const Locale& locale) { reader.emplace(prompt, locale); }

  std::optional<RangePlot> Read(const std::string& spec) {
    copy.specification = spec;
    copy.ExcelBusyRetrynumber = &retries;
    narrow = false;
    return ReadRangePlot(sheet, copy, *reader, clock, narrow);
  }
  Lines LinesOf(const std::string& spec) {
    const auto plot = Read(spec);
    EXPECT_TRUE(plot) << spec;
    return plot ? plot->lines : Lines{};
  }
  PlotFileNames Names() const {
    PlotFileNames names;
    names.TraceFile = TextOf(folder.path() / "set" / plotName);
    names.DemoFile = TextOf(folder.path() / "set" / "demo.xls");
    return names;
  }
  PlotReading Send(const std::string& spec) {
    copy.specification = spec;
    copy.ExcelBusyRetrynumber = &retries;
    return SendRangePlot(sheet, copy, Names(), lists, *reader, clock);
  }
  std::string Bytes() const {
    std::ifstream in(PathOf(Names().TraceFile), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }
  bool Logged(const std::string& part) const {
    for (const std::string& line : dialogs.log) {
      if (Contains(line, part)) return true;
    }
    return false;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  std::optional<CellText> reader{std::in_place, prompt, Locale{}};
  FixedClock clock{{2031, 4, 5, 6, 7, 8}};
  CopySheet sheet;
  RangeCopy copy;
  int retries = 0;
  bool narrow = false;
  PointLists lists;
  testing::TemporaryFolder folder;
  std::string plotName = kLastPlotName;
};

TEST_F(RangeSending, ReadsOneRange) {
  sheet.SetText({2, 1}, "1\t2\t3\n4\t5\t6\n7\t8\t9\n");
  const auto plot = Read("=0.5*MAX(A2:C3)");
  ASSERT_TRUE(plot);
  EXPECT_EQ(plot->lines, (Lines{"1\t2\t3", "4\t5\t6"}));
  EXPECT_EQ(plot->header.workbook, "Model.xlsx");
  EXPECT_EQ(plot->header.sheet, "Sheet1");
  EXPECT_EQ(plot->header.specification, "=0.5*MAX(A2:C3)");
  EXPECT_EQ(plot->header.scale, 0.5);
  EXPECT_EQ(plot->header.options, "ValisExcelPro");
  EXPECT_EQ(plot->header.date, "2031/04/05 06:07:08");
  EXPECT_EQ(sheet.copies, Lines{"A2:C3"});
  EXPECT_EQ(retries, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(RangeSending, PutsEachRangeInItsFields) {
  sheet.SetText({1, 1}, "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\n");
  const std::string all = "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15";
  EXPECT_EQ(LinesOf("=MAX(A1:O1)"), Lines{all});
  EXPECT_EQ(sheet.copies, (Lines{"A1:C1", "D1:D1", "E1:F1", "G1:K1", "L1:M1", "N1:O1"}));
  EXPECT_EQ(LinesOf("=MAX(A1:C1)+MAX(D1:D1)+MAX(E1:F1)+MAX(G1:K1)+MAX(L1:M1)+MAX(N1:O1)"), Lines{all});
  EXPECT_EQ(LinesOf("=MAX(A1:D1)"), Lines{"1\t2\t3\t4"});
  EXPECT_EQ(LinesOf("=MAX(A1:F1)"), Lines{"1\t2\t3\t4\t5\t6"});
  EXPECT_EQ(LinesOf("=MAX(A1:E1)"), Lines{"1\t2\t3"});
  EXPECT_EQ(LinesOf("=MAX(M1:O1)+MAX(A1)+MAX(B1:C1)"), Lines{"13\t14\t15\t1\t2\t3"});
}

// Wide ranges give the columns that are taken; narrow ones leave fields empty.
TEST_F(RangeSending, TakesTheColumnsOfEachPlace) {
  sheet.SetText({1, 1}, "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C1)+MAX(D1:G1)+MAX(H1:J1)+MAX(K1:N1)+MAX(O1:O1)"),
            Lines{"1\t2\t3\t4\t8\t9\t11\t12\t13\t14\t\t15\t"});
}

TEST_F(RangeSending, HasTheLinesOfTheLongestRange) {
  sheet.SetText({1, 1}, "1\t1\t1\t10\t20\tS\n2\t2\t2\t11\t21\tE\n\t\t\t\t22\tS\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C2)+MAX(D1:D2)+MAX(E1:F4)"),
            (Lines{"1\t1\t1\t10\t20\tS", "2\t2\t2\t11\t21\tE", "\t\t\t\t22\tS", "\t\t\t\t\t"}));
}

TEST_F(RangeSending, ASingleCellOfValuesIsAsLongAsThePoints) {
  sheet.SetText({1, 1}, "1\t1\t1\n2\t2\t2\n3\t3\t3\n");
  sheet.SetText({5, 5}, "7\n8\n9\n10\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C3)+MAX(E5)"), (Lines{"1\t1\t1\t7", "2\t2\t2\t8", "3\t3\t3\t9"}));
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(RangeSending, ErrorCellsCountAsEmpty) {
  sheet.SetText({1, 1}, "#DIV/0!\t#N/A\tErr:502\n \t\"\"\tx\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C2)"), (Lines{"\t\t", "\t\tx"}));
}

struct NumberRow {
  const char* cell;
  const char* field;
};

TEST_F(RangeSending, WritesNumbersInFullWithAPoint) {
  for (const NumberRow& row :
       {NumberRow{"0.1", "0.10000000000000001"}, NumberRow{"1", "1"}, NumberRow{"-2.5", "-2.5"},
        NumberRow{"1E-05", "1.0000000000000001e-05"}, NumberRow{"1.5E+20", "1.5e+20"}, NumberRow{"+3", "3"},
        NumberRow{"123456789012345", "123456789012345"}, NumberRow{"12-3", "12-3"}, NumberRow{"1e999", "1e999"},
        NumberRow{"TRUE", "TRUE"}, NumberRow{"-", "-"}}) {
    sheet.Set({1, 1}, row.cell);
    EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{std::string(row.field) + "\t\t"}) << row.cell;
  }
  UseLocale({",", "."});
  sheet.commaPrinted = true;
  for (const NumberRow& row :
       {NumberRow{"0,1", "0.10000000000000001"}, NumberRow{"-2,5E-3", "-0.0025000000000000001"},
        NumberRow{"1.234,5", "1234.5"}, NumberRow{"1.234", "1234"}, NumberRow{"7", "7"}, NumberRow{"a.b", "a.b"}}) {
    sheet.Set({1, 1}, row.cell);
    EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{std::string(row.field) + "\t\t"}) << row.cell;
  }
}

// A running spreadsheet may print commas though this program's locale has points, and the other way round.
TEST_F(RangeSending, AsksForTheDecimalSeparatorWhenItMatters) {
  sheet.SetText({1, 1}, "0.5\tx\t3\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"0.5\tx\t3"});
  EXPECT_EQ(sheet.decimalTests, 0);
  sheet.SetText({1, 1}, "0,5\t1,234\t3\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"0,5\t1,234\t3"}) << "a text with a comma";
  EXPECT_EQ(sheet.decimalTests, 1);
  sheet.commaPrinted = true;
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"0.5\t1.234\t3"});
  UseLocale({",", "."});
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"0.5\t1.234\t3"});
  EXPECT_EQ(sheet.decimalTests, 2);
  sheet.commaPrinted = false;
  sheet.SetText({1, 1}, "0.5\t1.234\t3\n");
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"0.5\t1.234\t3"});
}

TEST_F(RangeSending, LongTextsAndControlCharactersStayInTheirField) {
  sheet.Set({1, 1}, std::string(65001, 'x'));
  sheet.Set({1, 2}, std::string("a\0b\x01", 4));
  sheet.Set({1, 3}, "3");
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{std::string(65001, 'x') + "\ta b \t3"});
  Send("=MAX(A1:C1)");
  EXPECT_EQ(lists.PointList(3, 0), 3);
}

TEST_F(RangeSending, ShowsTheProgressOfEachRange) {
  struct Watcher : ScriptedDialogs {
    void Progress(const std::string& phase, double share) override {
      EXPECT_EQ(phase, kPlotProgress);
      shares.push_back(share);
    }
    std::vector<double> shares;
  } watcher;
  ErrorPrompt watched(watcher);
  CellText reading(watched, Locale{});
  copy.specification = "=MAX(A1:C1)";
  ReadRangePlot(sheet, copy, reading, clock, narrow);
  EXPECT_EQ(watcher.shares, (std::vector<double>{0.10, 0.15, 0.20, 0.25, 0.27, 0.28, 0.30}));
}

TEST_F(RangeSending, RefusesAFirstRangeOfLessThanThreeColumns) {
  for (const char* spec : {"=MAX(A1:B9)", "=MAX(C1:A9)", "", "=MAX(A1)+MAX(D1:G9)"}) {
    SCOPED_TRACE(spec);
    dialogs.boxes.clear();
    EXPECT_FALSE(Read(spec));
    EXPECT_TRUE(narrow);
    ASSERT_EQ(dialogs.boxes.size(), 1U);
    EXPECT_EQ(dialogs.boxes[0].text, WrongSpecificationText(spec));
    EXPECT_EQ(dialogs.boxes[0].title, "Information");
  }
  EXPECT_TRUE(sheet.copies.empty());
}

TEST_F(RangeSending, TellsRangesThatAreNone) {
  LinesOf("=MAX(A1:C2)+MAX(Other!D1:D2)+MAX(E:F)");
  EXPECT_TRUE(Logged("_The range Other!D1:D2 is left out: it is on another sheet"));
  EXPECT_TRUE(Logged("_The range E:F is left out: it does not look like A2:C60"));
  EXPECT_FALSE(Read("=MAX(Other!A1:C2)"));
  EXPECT_TRUE(narrow);
  EXPECT_TRUE(Logged("_The range Other!A1:C2 is left out"));
}

TEST_F(RangeSending, RepeatsACopyWhileTheSpreadsheetIsBusy) {
  sheet.SetText({1, 1}, "1\t2\t3\n");
  sheet.busyOperations = 5;
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"1\t2\t3"});
  EXPECT_EQ(retries, 5);
  EXPECT_EQ(sheet.eventBreaks, 5);
  sheet.emptyCopies = 3;
  EXPECT_EQ(LinesOf("=MAX(A1:C1)"), Lines{"1\t2\t3"});
  EXPECT_EQ(retries, 8) << "counted over the life of the program";
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RangeSending, GivesUpWhenTheSpreadsheetStaysBusy) {
  for (const bool busy : {true, false}) {
    SCOPED_TRACE(busy);
    (busy ? sheet.busyOperations : sheet.emptyCopies) = 1000;
    dialogs.boxes.clear();
    retries = 0;
    EXPECT_FALSE(Read("=MAX(A1:C1)"));
    EXPECT_FALSE(narrow);
    EXPECT_EQ(retries, 20);
    ASSERT_EQ(dialogs.boxes.size(), 1U);
    EXPECT_TRUE(Contains(dialogs.boxes[0].text, "the spreadsheet stays busy"));
    sheet.busyOperations = sheet.emptyCopies = 0;
  }
}

TEST_F(RangeSending, TellsAnyOtherFailureOfACopy) {
  sheet.failures["D1:D1"] = FailureNumber::ApplicationDefined;
  EXPECT_FALSE(Read("=MAX(A1:D1)"));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_TRUE(Contains(dialogs.boxes[0].text, "=MAX(A1:D1) could not be read: "));
  EXPECT_EQ(retries, 0);
}

// --- the plot file

TEST_F(RangeSending, SendsThePlotToItsFileAndReadsItBack) {
  sheet.SetText({2, 1}, "1\t2\t3\t0.1\n4\t5\t6\t0.2\n\t\t\t0.3\n");
  const PlotReading reading = Send("=2*MAX(A2:D4)&\"moon\"");
  EXPECT_EQ(Bytes(),
            "From: \tModel.xlsx\tSheet1\t=2*MAX(A2:D4)&\"moon\"\t2.0000000000\tmoon\tDate 2031/04/05 06:07:08\r\n"
            "1\t2\t3\t0.10000000000000001\r\n4\t5\t6\t0.20000000000000001\r\n\t\t\t0.29999999999999999\r\n");
  EXPECT_EQ(reading.source, PlotReading::Source::PlotFile);
  EXPECT_EQ(reading.file, Names().TraceFile);
  EXPECT_TRUE(reading.complete);
  EXPECT_EQ(lists.NumberPoints, 2);
  EXPECT_EQ(lists.PointList(1, 1), 8);
  EXPECT_EQ(lists.PointList(0, 1), 0.2F);
  EXPECT_EQ(lists.PointList(4, 2), kPenUp);
  EXPECT_TRUE(lists.MoonView && lists.EarthOn && lists.TimePlot);
  EXPECT_EQ(lists.Title, "Model.xlsx/Sheet1");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RangeSending, PlotsFiftyNinePointsOfA2ToC60) {
  for (int row = 2; row <= 60; ++row) sheet.SetText({row, 1}, std::to_string(row) + "\t1\t2\n");
  for (const char* spec : {"=MAX(A2:C60)", "=0*MAX(A2:C60)", "=$MAX($A$2:$C$60)"}) {
    SCOPED_TRACE(spec);
    Send(spec);
    EXPECT_EQ(lists.NumberPoints, 58);
    EXPECT_EQ(lists.PointList(1, 58), 60);
    EXPECT_EQ(lists.FactorScale, 1);
    EXPECT_EQ(lists.TraceCount, kNoEntry);
    EXPECT_EQ(lists.PlotValueMin, 0);
    EXPECT_EQ(lists.PlotValueMax, 1);
  }
}

TEST_F(RangeSending, FillsEveryListFromFifteenColumns) {
  sheet.SetText({1, 1}, "1\t2\t3\t4\t5\tS\t7\t8\t9\t10\t11\t12\t13\t14\t15\n1\t2\t3\t5\n");
  Send("=MAX(A1:O2)");
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_EQ(lists.EventCount, 0);
  EXPECT_EQ(lists.EventList(1, 0), 1);
  EXPECT_EQ(lists.TraceCount, 0);
  EXPECT_EQ(lists.TraceList(4, 0), 11);
  EXPECT_EQ(lists.PanelCount1, 0);
  EXPECT_EQ(lists.PanelAngleList1(1, 0), 13);
  EXPECT_EQ(lists.PanelCount2, 0);
  EXPECT_EQ(lists.PanelAngleList2(1, 0), 15);
}

TEST_F(RangeSending, ReadsBackUnderTheKeywordInUse) {
  sheet.SetText({1, 1}, "1\t2\t3\n4\t5\t6\n\t\t\n");
  copy.MainKeyword = "PLOT";
  Send("=PLOT(A1:C3)");
  EXPECT_EQ(lists.NumberPoints, 2);
}

TEST_F(RangeSending, ANarrowRangeShowsTheLastPlotOrTheDemo) {
  EXPECT_EQ(Send("=MAX(A1:B2)").source, PlotReading::Source::Demo);
  EXPECT_GT(lists.NumberPoints, 100);
  sheet.SetText({1, 1}, "1\t2\t3\n");
  Send("=MAX(A1:C1)");
  const std::string before = Bytes();
  EXPECT_EQ(Send("=MAX(A1:B2)").source, PlotReading::Source::PlotFile);
  EXPECT_EQ(lists.NumberPoints, 0);
  EXPECT_EQ(Bytes(), before);
}

TEST_F(RangeSending, AFailureLeavesViewAndFileAsTheyAre) {
  sheet.SetText({1, 1}, "1\t2\t3\n");
  Send("=MAX(A1:C1)");
  const std::string before = Bytes();
  lists.PlotLoaded = 1;
  sheet.busyOperations = 1000;
  const PlotReading reading = Send("=MAX(A1:C9)");
  EXPECT_EQ(reading.source, PlotReading::Source::Nothing);
  EXPECT_EQ(lists.NumberPoints, 0);
  EXPECT_EQ(lists.PointList(3, 0), 3);
  EXPECT_EQ(lists.PlotLoaded, 1);
  EXPECT_EQ(Bytes(), before);
}

TEST_F(RangeSending, APlotThatCannotBeKeptIsShownAllTheSame) {
  folder.Write("file", "x");
  plotName = "../file/plot.txt";
  sheet.SetText({1, 1}, "1\t2\t3\n");
  const PlotReading reading = Send("=2*MAX(A1:C1)");
  EXPECT_TRUE(reading.complete);
  EXPECT_EQ(lists.PointList(1, 0), 2);
  EXPECT_TRUE(Logged("_The plot is shown but not kept: "));
}

TEST_F(RangeSending, AnUnusualPlotNameIsWarnedOf) {
  sheet.SetText({1, 1}, "1\t2\t3\n");
  Send("=MAX(A1:C1)");
  EXPECT_TRUE(dialogs.log.empty());
  for (const char* name : {"a*b.txt", "a?b.txt"}) {
    dialogs.log.clear();
    plotName = name;
    Send("=MAX(A1:C1)");
    ASSERT_FALSE(dialogs.log.empty());
    EXPECT_EQ(dialogs.log.front(), "faute x18 ");
    EXPECT_EQ(lists.NumberPoints, 0);
  }
}

// The file of another name holds the computations' trace.
TEST_F(RangeSending, ThePlotHasAFileOfItsOwn) {
  EXPECT_STREQ(kLastPlotName, "OrvLastPlot.txt");
}

TEST_F(RangeSending, LinesAndFilePlotAlike) {
  for (int row = 1; row <= 40; ++row) {
    const double t = 0.1 * row;
    for (int column = 1; column <= 15; ++column) {
      sheet.Set({row, column}, column == 6 ? (row % 2 == 0 ? "S" : "E") : std::to_string(t * column));
    }
  }
  for (const char* options : {"", "PENUP", "valx", "valy ESA", "valz", "moon"}) {
    const std::string spec = std::string("=0.3*MAX(A1:O40)&\"") + options + "\"";
    Send(spec);
    const auto plot = Read(spec);
    ASSERT_TRUE(plot);
    PointLists direct;
    EXPECT_TRUE(ReadPlotLines(plot->header, plot->lines, "lines", direct, *reader).complete);
    EXPECT_EQ(direct.NumberPoints, lists.NumberPoints);
    EXPECT_EQ(direct.TraceCount, lists.TraceCount);
    EXPECT_EQ(direct.EventCount, lists.EventCount);
    EXPECT_EQ(direct.PanelCount2, lists.PanelCount2);
    EXPECT_EQ(direct.ValueCount, lists.ValueCount);
    EXPECT_EQ(direct.ValueAxis, lists.ValueAxis);
    for (int k = 0; k < 40; ++k) {
      for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(direct.PointList(row, k), lists.PointList(row, k));
        EXPECT_EQ(direct.TraceList(row, k), lists.TraceList(row, k));
      }
    }
  }
}

}  // namespace
}  // namespace orv
