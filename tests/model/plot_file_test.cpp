#include "model/plot_file.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "model/demo_plot.h"
#include "model/plot_reading.h"
#include "numerics/paths.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using testing::ScriptedDialogs;

constexpr const char* kHeader =
    "From: \tBook.xlsx\tSheet1\t=MAX(A2:C4)\t1.0000000000\tValisExcelPro\tDate 2031/04/05 06:07:08\r\n";

std::string HeaderOf(const std::string& spec, const std::string& scale = "1",
                     const std::string& options = "ValisExcelPro") {
  return "From: \tBook.xlsx\tSheet1\t" + spec + "\t" + scale + "\t" + options + "\tDate 2031/04/05 06:07:08\r\n";
}

class PlotFile : public ::testing::Test {
 protected:
  PlotFile() : folder_(fs::path(::testing::TempDir()) / ("orv_plot_" + std::to_string(::getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~PlotFile() override { fs::remove_all(folder_); }

  std::string Name(const std::string& file = "plot.txt") const { return TextOf(folder_ / file); }
  std::string Put(const std::string& bytes, const std::string& file = "plot.txt") const {
    std::ofstream(PathOf(Name(file)), std::ios::binary) << bytes;
    return Name(file);
  }
  std::string Bytes(const std::string& file = "plot.txt") const {
    std::ifstream in(PathOf(Name(file)), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }

  PlotReading Read(const std::string& bytes, const Locale& locale = {}) {
    Put(bytes);
    return ReadAgain(locale);
  }
  PlotReading ReadAgain(const Locale& locale = {}, int sourceMode = 0) {
    CellText reader(prompt, locale);
    lists.PlotLoaded = lists.PlotNormalised = 1;
    lists.FirstDraw = 1;
    return ReadPlotFile({Name(), Name("demo.xls"), sourceMode}, lists, reader);
  }
  void ExpectPoint(int n, float value, float x, float y, float z, float pen) {
    EXPECT_EQ(lists.PointList(0, n), value) << n;
    EXPECT_EQ(lists.PointList(1, n), x) << n;
    EXPECT_EQ(lists.PointList(2, n), y) << n;
    EXPECT_EQ(lists.PointList(3, n), z) << n;
    EXPECT_EQ(lists.PointList(4, n), pen) << n;
  }
  bool Logged(const std::string& part) const {
    for (const std::string& line : dialogs.log) {
      if (Contains(line, part)) return true;
    }
    return false;
  }

  fs::path folder_;
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  PointLists lists;
};

// --- lines

struct Line {
  explicit Line(std::string_view text) { ReadPlotLine(text, fields, count, empty1, empty5, empty7, empty12, empty14); }
  PlotFields fields;
  int count = -1;
  bool empty1 = false, empty5 = false, empty7 = false, empty12 = false, empty14 = false;
};

TEST(ReadPlotLine, SplitsAtTabs) {
  const Line line("1\t2\t3\t4\t5\tS\t7\t8\t9\t10\t11\t12\t13\t14\t15");
  EXPECT_EQ(line.count, 15);
  EXPECT_EQ(line.fields[1], "1");
  EXPECT_EQ(line.fields[6], "S");
  EXPECT_EQ(line.fields[15], "15");
  EXPECT_FALSE(line.empty1 || line.empty5 || line.empty7 || line.empty12 || line.empty14);
}

TEST(ReadPlotLine, TellsEmptyFields) {
  const Line none("");
  EXPECT_EQ(none.count, 1);
  EXPECT_TRUE(none.empty1 && none.empty5 && none.empty7 && none.empty12 && none.empty14);
  const Line some("1\t\t\t\t2\t\t \t\t\t\t\t\xC2\xA0\t\t\"\"");
  EXPECT_FALSE(some.empty1);
  EXPECT_FALSE(some.empty5);
  EXPECT_TRUE(some.empty7 && some.empty12 && some.empty14);
  EXPECT_EQ(some.count, 14);
}

TEST(ReadPlotLine, TakesErrorsOfASpreadsheetForNothing) {
  for (const char* error : {"#N/A", "#DIV/0!", "#REF!", "Err:502"}) {
    const Line line(error);
    EXPECT_TRUE(line.empty1) << error;
    EXPECT_EQ(line.fields[1], "") << error;
  }
  EXPECT_FALSE(Line("East").empty1);
}

TEST(ReadPlotLine, CountsFieldsBehindTheLastThatIsUsed) {
  std::string text = "1";
  for (int k = 2; k <= 40; ++k) text += "\t" + std::to_string(k);
  const Line line(text);
  EXPECT_EQ(line.count, 40);
  EXPECT_EQ(line.fields[15], "15");
}

// --- header

TEST_F(PlotFile, HeaderKeepsItsFields) {
  PlotHeader header;
  header.workbook = "Bo\tok.xlsx";
  header.sheet = "Sheet\r\n1";
  header.specification = "=0.5*MAX(A2:C60)&\"PENUP\"";
  header.scale = 0.5;
  header.options = "PENUP";
  header.date = PlotDate({2031, 4, 5, 6, 7, 8});
  const std::string text = PlotHeaderText(header);
  EXPECT_EQ(text,
            "From: \tBo ok.xlsx\tSheet  1\t=0.5*MAX(A2:C60)&\"PENUP\"\t0.5000000000\tPENUP\tDate 2031/04/05 06:07:08");
  CellText reader(prompt, Locale{});
  const PlotHeader read = ReadPlotHeader(text + "\tmore\tfields", reader);
  EXPECT_TRUE(read.isHeader && read.hasOptions);
  EXPECT_EQ(read.Title(), "Bo ok.xlsx/Sheet  1");
  EXPECT_EQ(read.specification, header.specification);
  EXPECT_EQ(read.scale, 0.5);
  EXPECT_EQ(read.options, "PENUP");
  EXPECT_EQ(read.date, "2031/04/05 06:07:08");
}

TEST_F(PlotFile, HeaderWritesAScaleInFullWhenTenPlacesLoseIt) {
  CellText reader(prompt, Locale{});
  for (const double scale : {1.0, 0.001, -2.5, 1e-12, 1.23456789e-9, 1.0 / 3, 6378137.0, 1e20}) {
    PlotHeader header;
    header.scale = scale;
    EXPECT_NEAR(ReadPlotHeader(PlotHeaderText(header), reader).scale / scale, 1, 1e-8) << scale;
  }
  PlotHeader header;
  header.scale = 0.1 + 0.2;
  EXPECT_TRUE(Contains(PlotHeaderText(header), "\t0.3000000000\t"));
  header.scale = 1e-12;
  EXPECT_TRUE(Contains(PlotHeaderText(header), "\t9.9999999999999998e-13\t"));
}

TEST_F(PlotFile, HeaderMayBeShortOrNone) {
  CellText reader(prompt, Locale{});
  const PlotHeader none = ReadPlotHeader("", reader);
  EXPECT_FALSE(none.isHeader || none.hasOptions);
  EXPECT_EQ(none.scale, 1);
  EXPECT_EQ(none.Title(), "");
  const PlotHeader quoted = ReadPlotHeader("\"From: \"\tB\tS\t\"=MAX(A2:C60)&\"\"PENUP\"\"\"\t0\t\"PENUP\"", reader);
  EXPECT_TRUE(quoted.isHeader && quoted.hasOptions);
  EXPECT_EQ(quoted.specification, "=MAX(A2:C60)&\"PENUP\"");
  EXPECT_EQ(quoted.options, "PENUP");
  EXPECT_EQ(quoted.scale, 1);
}

TEST(IsPlotFile, LooksAtTheFirstWord) {
  EXPECT_TRUE(IsPlotFile("From: \tBook"));
  EXPECT_TRUE(
      IsPlotFile("\xEF\xBB\xBF"
                 "From: \tBook"));
  EXPECT_TRUE(IsPlotFile("\"From: \"\tBook"));
  EXPECT_TRUE(
      IsPlotFile(std::string_view("\xFF\xFE"
                                  "F\0r\0o\0m\0:\0",
                                  12)));
  EXPECT_TRUE(
      IsPlotFile(std::string_view("\xFE\xFF"
                                  "\0F\0r\0o\0m\0:",
                                  12)));
  for (const char* other : {"", "F", "PK\x03\x04", "1\t2\t3", "from:", "\xFF\xFE", "\xEF\xBB\xBF"}) {
    EXPECT_FALSE(IsPlotFile(other)) << other;
  }
}

TEST_F(PlotFile, IsToldByTheStartOfAFile) {
  EXPECT_TRUE(HoldsPlot(Put(HeaderOf("=MAX(A2:C60)") + std::string(10'000, ' '))));
  EXPECT_FALSE(HoldsPlot(Put("1\t2\t3")));
  EXPECT_FALSE(HoldsPlot(Put("")));
  EXPECT_FALSE(HoldsPlot(Name("absent.txt")));
  EXPECT_FALSE(HoldsPlot(TextOf(folder_)));
}

// --- lines of a file

class PlotFileLinesOf : public PlotFile {
 protected:
  std::vector<std::string> LinesOf(const std::string& bytes) {
    PlotFileLines lines(Put(bytes));
    std::vector<std::string> texts;
    std::string_view line;
    while (lines.Next(line)) {
      texts.emplace_back(line);
      EXPECT_EQ(lines.lineNumber(), static_cast<long long>(texts.size()));
    }
    EXPECT_FALSE(lines.Next(line));
    cut = lines.cut();
    nul = lines.nul();
    return texts;
  }
  using Texts = std::vector<std::string>;
  LineNote cut, nul;
};

TEST_F(PlotFileLinesOf, EveryLineEnd) {
  EXPECT_EQ(LinesOf(""), Texts{});
  EXPECT_EQ(LinesOf("a"), Texts{"a"});
  EXPECT_EQ(LinesOf("a\n"), Texts{"a"});
  EXPECT_EQ(LinesOf("a\r\nb\nc\rd"), (Texts{"a", "b", "c", "d"}));
  EXPECT_EQ(LinesOf("\r\n\r\n\n\ra"), (Texts{"", "", "", "", "a"}));
  EXPECT_EQ(LinesOf("a\r\n\x1A"), Texts{"a"});
  EXPECT_EQ(LinesOf("a\x1A"), Texts{"a"});
}

// The block that is read at a time ends inside a line end, a line, a character.
TEST_F(PlotFileLinesOf, AcrossBlocks) {
  for (int length = 65530; length < 65540; ++length) {
    const std::string a(static_cast<std::size_t>(length), 'a');
    EXPECT_EQ(LinesOf(a + "\r\nb\r\n"), (Texts{a, "b"})) << length;
    EXPECT_EQ(LinesOf(a + "\xC3\xA9\nb"), (Texts{a + "\xC3\xA9", "b"})) << length;
  }
}

TEST_F(PlotFileLinesOf, EveryEncoding) {
  EXPECT_EQ(LinesOf("\xEF\xBB\xBF"
                    "\xC3\xA9\n"),
            Texts{"\xC3\xA9"});
  EXPECT_EQ(LinesOf("\xE9\n\xC3\xA9\n"), (Texts{"\xC3\xA9", "\xC3\xA9"}));
  EXPECT_EQ(LinesOf(std::string("\xFF\xFE"
                                "a\0\xE9\0\r\0\n\0\x3D\xD8\x00\xDE\n\0b\0",
                                18)),
            (Texts{"a\xC3\xA9", "\xF0\x9F\x98\x80", "b"}));
  EXPECT_EQ(LinesOf(std::string("\xFE\xFF"
                                "\0a\0\n\xD8\x3D\0\n",
                                10)),
            (Texts{"a", "\xEF\xBF\xBD"}));
  EXPECT_EQ(LinesOf(std::string("\xFF\xFE", 2)), Texts{});
  EXPECT_EQ(LinesOf(std::string("\xFF\xFE"
                                "a",
                                3)),
            Texts{});
}

TEST_F(PlotFileLinesOf, Utf16AcrossBlocks) {
  std::string bytes("\xFF\xFE", 2);
  std::string expected;
  for (int k = 0; k < 40000; ++k) {
    bytes += std::string("\x3D\xD8\x00\xDE", 4);
    expected += "\xF0\x9F\x98\x80";
  }
  EXPECT_EQ(LinesOf(bytes), Texts{expected});
  EXPECT_EQ(LinesOf(std::string("\xFF\xFE"
                                "x\0",
                                4) +
                    bytes.substr(2)),
            Texts{"x" + expected});
}

TEST_F(PlotFileLinesOf, NulBytesBecomeBlanks) {
  EXPECT_EQ(LinesOf(std::string("a\0b\nc\n\0\n", 8)), (Texts{"a b", "c", " "}));
  EXPECT_EQ(nul.lines, 2);
  EXPECT_EQ(nul.first, 1);
}

TEST_F(PlotFileLinesOf, AnEndlessLineIsCut) {
  const std::string a(PlotFileLines::kMaxLineBytes + 5, 'a');
  const Texts lines = LinesOf("x\n" + a + "\nb\n" + a);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[1].size(), PlotFileLines::kMaxLineBytes);
  EXPECT_EQ(lines[2], "b");
  EXPECT_EQ(cut.lines, 2);
  EXPECT_EQ(cut.first, 2);
  EXPECT_EQ(LinesOf(std::string(PlotFileLines::kMaxLineBytes, 'a') + "\n")[0].size(), PlotFileLines::kMaxLineBytes);
  EXPECT_EQ(cut.lines, 0);
}

TEST_F(PlotFileLinesOf, AMissingFileIsAFailure) {
  for (const std::string& name : {Name("none"), std::string(), Name("a*?b")}) {
    try {
      PlotFileLines lines(name);
      FAIL();
    } catch (const RuntimeFailure& failure) {
      EXPECT_EQ(failure.number(), FailureNumber::FileNotFound);
    }
  }
  EXPECT_THROW(PlotFileLines(TextOf(folder_)), RuntimeFailure);
}

// --- writing

TEST_F(PlotFile, IsWrittenWhole) {
  PlotHeader header;
  header.workbook = "B\xC3\xA9.xlsx";
  header.date = "d";
  const std::vector<std::vector<std::string>> lines = {{"1", "2", "3"}, {"", "\t", "\xC3\xA9"}, {}};
  Put("old");
  {
    PlotFileWriter writer(Name(), header);
    writer.WriteLine(lines[0]);
    EXPECT_EQ(Bytes(), "old");
  }
  EXPECT_EQ(Bytes(), "old");
  WritePlotFile(Name(), header, lines);
  EXPECT_EQ(Bytes(), "From: \tB\xE9.xlsx\t\t\t1.0000000000\t\tDate d\r\n1\t2\t3\r\n\t \t\xE9\r\n\r\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1);
}

TEST_F(PlotFile, IsWrittenInUtf8WhenTheHeaderNeedsIt) {
  PlotHeader header;
  header.workbook = "\xCE\xB1.xlsx";
  WritePlotFile(Name(), header, std::vector<std::vector<std::string>>{{"\xC3\xA9"}});
  EXPECT_EQ(Bytes().substr(0, 16),
            "\xEF\xBB\xBF"
            "From: \t\xCE\xB1.xls");
  ReadAgain();
  EXPECT_EQ(lists.Title, "\xCE\xB1.xlsx/");
}

TEST_F(PlotFile, CannotBeWrittenWithoutItsFolder) {
  try {
    WritePlotFile(Name("none/plot.txt"), PlotHeader{}, {});
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::PathNotFound);
  }
  fs::create_directories(folder_ / "taken");
  EXPECT_THROW(WritePlotFile(Name("taken"), PlotHeader{}, {}), RuntimeFailure);
}

// --- points

TEST_F(PlotFile, FillsThePoints) {
  const PlotReading reading = Read(std::string(kHeader) + "1\t2\t3\t4\r\n-1.5\t2e3\t0\t\r\n\t\t\t7\r\n");
  EXPECT_EQ(lists.NumberPoints, 2);
  ExpectPoint(0, 4, 1, 2, 3, 0);
  ExpectPoint(1, 0, -1.5F, 2000, 0, 0);
  ExpectPoint(2, 7, 0, 0, 0, -1);
  EXPECT_EQ(lists.TraceCount, kNoEntry);
  EXPECT_EQ(lists.EventCount, kNoEntry);
  EXPECT_EQ(lists.PanelCount1, kNoEntry);
  EXPECT_EQ(lists.PanelCount2, kNoEntry);
  EXPECT_EQ(lists.ValueCount, kNoEntry);
  EXPECT_EQ(lists.PlotValueMin, 0);
  EXPECT_EQ(lists.PlotValueMax, 7);
  EXPECT_EQ(lists.legend.LegendMax, 7);
  EXPECT_EQ(lists.Title, "Book.xlsx/Sheet1");
  EXPECT_EQ(lists.FactorScale, 1);
  EXPECT_FALSE(lists.EarthOn || lists.TimePlot || lists.MoonView);
  EXPECT_EQ(lists.PlotLoaded, 0);
  EXPECT_EQ(lists.PlotNormalised, 0);
  EXPECT_EQ(lists.FirstDraw, 0);
  EXPECT_TRUE(reading.complete);
  EXPECT_EQ(reading.source, PlotReading::Source::PlotFile);
  EXPECT_EQ(reading.lines, 3);
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(PlotFile, PlotsFiftyNinePointsOfA2ToC60) {
  std::string bytes = HeaderOf("=MAX(A2:C60)");
  for (int k = 0; k < 59; ++k) bytes += std::to_string(k) + "\t1\t2\r\n";
  Read(bytes);
  EXPECT_EQ(lists.NumberPoints, 58);
  ExpectPoint(58, 0, 58, 1, 2, 0);
  EXPECT_EQ(lists.TraceCount, kNoEntry);
  EXPECT_EQ(lists.PlotValueMin, 0);
  EXPECT_EQ(lists.PlotValueMax, 1);
  EXPECT_FALSE(dialogs.phases.empty());
}

TEST_F(PlotFile, PointsAreTheRowsOfTheFirstRange) {
  Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D9)+MAX(E2:F9)") +
       "1\t1\t1\t5\t1\tS\n2\t2\t2\t6\t2\tE\n\t\t\t7\t3\tS\n\t\t\t8\t4\tE\n\t\t\t9\t5\tS\n");
  EXPECT_EQ(lists.NumberPoints, 2);
  ExpectPoint(2, 7, 0, 0, 0, -1);
  ExpectPoint(3, 0, 0, 0, 0, 0);
  EXPECT_EQ(lists.EventCount, 4);
  EXPECT_EQ(lists.PlotValueMax, 7);
}

TEST_F(PlotFile, PointsBehindTheRowsOfTheFirstRangeAreNotLost) {
  Read(HeaderOf("=MAX(A2:C3)") + "1\t1\t1\n2\t2\t2\n\t\t\n3\t3\t3\n\n");
  EXPECT_EQ(lists.NumberPoints, 3);
  ExpectPoint(2, 0, 0, 0, 0, -1);
  ExpectPoint(3, 0, 3, 3, 3, 0);
}

TEST_F(PlotFile, ScaleMultipliesCoordinatesAlone) {
  const PlotReading reading =
      Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)", "0.5") + "1\t2\t3\t4\t5\t1\t7\t8\t9\t10\t11\t12\t13\t14\t15\n");
  ExpectPoint(0, 4, 0.5F, 1, 1.5F, 0);
  EXPECT_EQ(lists.EventList(0, 0), 5);
  EXPECT_EQ(lists.TraceList(0, 0), 7);
  EXPECT_EQ(lists.TraceList(4, 0), 11);
  EXPECT_EQ(lists.PanelAngleList1(1, 0), 13);
  EXPECT_EQ(lists.PanelAngleList2(0, 0), 14);
  EXPECT_EQ(lists.FactorScale, 0.5);
  EXPECT_TRUE(reading.Rescaled);
  EXPECT_TRUE(lists.EarthOn && lists.TimePlot);
}

TEST_F(PlotFile, AScaleSwitchesTheEarthOnAndWithASecondRangeTheTime) {
  Read(HeaderOf("=MAX(A2:C4)", "2") + "1\t2\t3\n");
  EXPECT_TRUE(lists.EarthOn);
  EXPECT_FALSE(lists.TimePlot);
  for (const char* options : {"valx", ""}) {
    Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)", "2", options) + "1\t2\t3\t4\n");
    EXPECT_TRUE(lists.EarthOn && lists.TimePlot) << options;
    Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)", "1", options) + "1\t2\t3\t4\n");
    EXPECT_FALSE(lists.EarthOn || lists.TimePlot) << options;
  }
  Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)", "2", "PENUP") + "1\t2\t3\t4\n");
  EXPECT_FALSE(lists.EarthOn || lists.TimePlot) << "outlines are no orbit";
}

TEST_F(PlotFile, ScaleOfNothingIsOne) {
  for (const char* scale : {"0", "", "abc", "0.0000000000"}) {
    Read(HeaderOf("=MAX(A2:C4)", scale) + "1\t2\t3\n");
    ExpectPoint(0, 0, 1, 2, 3, 0);
    EXPECT_EQ(lists.FactorScale, 1);
  }
}

TEST_F(PlotFile, ConstantValuesGetARange) {
  Read(std::string(kHeader) + "1\t2\t3\t5\n1\t2\t3\t5\n");
  EXPECT_EQ(lists.PlotValueMin, 5);
  EXPECT_DOUBLE_EQ(lists.PlotValueMax, 5.05);
}

TEST_F(PlotFile, DecimalCommasAndLocales) {
  const std::string bytes = std::string(kHeader) + "1,5\t\"2,25\"\t 1 234,5\t-0,25\n";
  for (const Locale& locale : {Locale{".", ""}, Locale{",", "."}, Locale{",", "\xE2\x80\xAF"}}) {
    Read(bytes, locale);
    ExpectPoint(0, -0.25F, 1.5F, 2.25F, 1234.5F, 0);
  }
  // The file's own numbers have points, whatever the locale groups with.
  Read(std::string(kHeader) + "1.5\t1.234\t1.234,5\t2.5 \n", {",", "."});
  ExpectPoint(0, 2.5F, 1.5F, 1.234F, 1234.5F, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PlotFile, WrongFieldsReadAsZero) {
  Read(std::string(kHeader) + "abc\t--2\t3x\tS\n#N/A\t1\t2\t#DIV/0!\n");
  ExpectPoint(0, 0, 0, 0, 3, 0);
  ExpectPoint(1, 0, 0, 1, 2, -1);
}

TEST_F(PlotFile, NumbersTooLargeReadAsZeroAndAreToldOnce) {
  std::string bytes = HeaderOf("=MAX(A2:C60)", "1000");
  for (int k = 0; k < 50; ++k) bytes += "1e999\t1e300\t1e37\t1,1e999\n";
  Read(bytes);
  ExpectPoint(49, 0, 0, 0, 0, 0);
  EXPECT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].title, "ERROR n° 6");
  EXPECT_TRUE(Logged("plot.txt, line 2 and 199 more: a number is too large"));
}

// --- events, trace, panels

TEST_F(PlotFile, EventStatesEndInLetters) {
  Read(std::string(kHeader) +
       "1\t1\t1\t\t10\tS\n1\t1\t1\t\t11\tend E\n1\t1\t1\t\t12\ts "
       "\n1\t1\t1\t\t\tS\n1\t1\t1\t\t13\t0."
       "5\n1\t1\t1\t\t14\t1S\n1\t1\t1\t\t15\t0S\n1\t1\t1\t\t16\t\n1\t1\t1\t\t17\t2E\n");
  ASSERT_EQ(lists.EventCount, 7);
  const float states[] = {1, 0, 1, 0.5F, 1, 1, 0, 2};
  const float times[] = {10, 11, 12, 13, 14, 15, 16, 17};
  for (int k = 0; k < 8; ++k) {
    EXPECT_EQ(lists.EventList(0, k), times[k]) << k;
    EXPECT_EQ(lists.EventList(1, k), states[k]) << k;
  }
}

TEST_F(PlotFile, OneEventCounts) {
  Read(std::string(kHeader) + "1\t1\t1\t\t10\tS\n");
  EXPECT_EQ(lists.EventCount, 0);
}

TEST_F(PlotFile, AttitudeComesFromLinesThatHoldIt) {
  Read(std::string(kHeader) + "1\t1\t1\t\t\t\t5\t1\t2\t3\t4\n1\t1\t1\n1\t1\t1\t\t\t\t6\t5\t6\t7\t8\n");
  ASSERT_EQ(lists.TraceCount, 1);
  EXPECT_EQ(lists.TraceMax, 1);
  EXPECT_EQ(lists.OutlineCount, 0);
  for (int row = 0; row < 5; ++row) EXPECT_EQ(lists.TraceList(row, 1), static_cast<float>(row == 0 ? 6 : row + 4));
}

TEST_F(PlotFile, AttitudeIsTurnedSoThatTheScalarComesFirst) {
  for (const char* options : {"ESA", "xyzw", "XYZW moon"}) {
    Read(HeaderOf("=MAX(A2:C4)", "1", options) + "1\t1\t1\t\t\t\t5\t1\t2\t3\t4\n");
    const float turned[] = {5, 4, 1, 2, 3};
    for (int row = 0; row < 5; ++row) EXPECT_EQ(lists.TraceList(row, 0), turned[row]) << options;
  }
}

TEST_F(PlotFile, OptionsOfTheHeaderSwitch) {
  Read(HeaderOf("=MAX(A2:C4)", "1", "maravo lune") + "1\t1\t1\n");
  EXPECT_TRUE(lists.MoonView);
  EXPECT_EQ(lists.MaravoFactor, 0.5);
  Read(HeaderOf("=MAX(A2:C4)&\"moon\"", "1", "") + "1\t1\t1\n");
  EXPECT_FALSE(lists.MoonView);
  EXPECT_EQ(lists.MaravoFactor, 0);
  // A short header has its options in the specification alone.
  Read("From: \tB\tS\t=MAX(A2:C4)&\"moon\"\n1\t1\t1\n");
  EXPECT_TRUE(lists.MoonView);
}

TEST_F(PlotFile, PanelsCountOnLinesThatHoldThem) {
  Read(std::string(kHeader) + "1\t1\t1\t\t\t\t\t\t\t\t\t5\t90\t6\t91\n1\t1\t1\n1\t1\t1\t\t\t\t\t\t\t\t\t7\t92\n");
  EXPECT_EQ(lists.PanelCount1, 1);
  EXPECT_EQ(lists.PanelAngleList1(0, 1), 7);
  EXPECT_EQ(lists.PanelAngleList1(1, 1), 92);
  EXPECT_EQ(lists.PanelCount2, 0);
  EXPECT_EQ(lists.PanelAngleList2(1, 0), 91);
}

std::string SecondPanel(std::initializer_list<const char*> pairs) {
  std::string lines;
  for (const char* pair : pairs) lines += std::string("1\t2\t3\t4\t\t\t\t\t\t\t\t\t\t") + pair + "\n";
  return lines;
}

TEST_F(PlotFile, ValueColumnTakesTheSecondPanel) {
  Read(HeaderOf("=MAX(A2:C4)", "1", "valy") + SecondPanel({"10\t5", "11\t-2", "12\t3"}));
  EXPECT_EQ(lists.ValueAxis, 2);
  EXPECT_EQ(lists.ValueCount, 2);
  EXPECT_EQ(lists.ValueTable(0, 0), 10);
  EXPECT_EQ(lists.ValueTable(1, 2), 3);
  EXPECT_EQ(lists.ValueMin, -2);
  EXPECT_EQ(lists.ValueMax, 5);
  EXPECT_EQ(lists.PanelCount2, kNoEntry);
  ExpectPoint(0, 4, 1, 2, 3, 0);
}

TEST_F(PlotFile, ValueTableLeavesOutAFirstTimeOfZero) {
  Read(HeaderOf("=MAX(A2:C4)", "1", "valx") + SecondPanel({"0\t5", "11\t7", "12\t7"}));
  EXPECT_EQ(lists.ValueCount, 1);
  EXPECT_EQ(lists.ValueTable(0, 0), 11);
  EXPECT_EQ(lists.ValueMin, 7);
  EXPECT_DOUBLE_EQ(lists.ValueMax, static_cast<double>(7) * 1.01);
  Read(HeaderOf("=MAX(A2:C4)", "1", "valx") + SecondPanel({"0\t5"}));
  EXPECT_EQ(lists.ValueCount, kNoEntry);
  EXPECT_EQ(lists.PanelCount2, kNoEntry);
}

TEST_F(PlotFile, SecondPanelThatBeginsWithZerosHoldsValues) {
  Read(std::string(kHeader) + SecondPanel({"0\t0", "11\t7", "12\t8"}));
  EXPECT_EQ(lists.ValueAxis, 0);
  EXPECT_EQ(lists.ValueCount, 1);
  EXPECT_EQ(lists.PanelCount2, kNoEntry);
  Read(std::string(kHeader) + SecondPanel({"0\t1", "11\t7"}));
  EXPECT_EQ(lists.ValueCount, kNoEntry);
  EXPECT_EQ(lists.PanelCount2, 1);
}

TEST_F(PlotFile, ValueColumnWithoutASecondPanelIsTheCoordinate) {
  const std::string line = "1\t2\t3\t4\n4\t5\t6\t7\n";
  Read(HeaderOf("=MAX(A2:D4)", "2", "valx") + line);
  EXPECT_EQ(lists.PointList(0, 1), 8);
  Read(HeaderOf("=MAX(A2:D4)", "1", "valy") + line);
  EXPECT_EQ(lists.PointList(0, 1), 5);
  Read(HeaderOf("=MAX(A2:D4)", "1", "valx valz") + line);
  EXPECT_EQ(lists.PointList(0, 1), 6);
  EXPECT_EQ(lists.PlotValueMin, 3);
  EXPECT_EQ(lists.PlotValueMax, 6);
}

// --- PENUP

TEST_F(PlotFile, PenUpPointsCarryTheirHeight) {
  Read(HeaderOf("=MAX(A2:C4)", "2", "PENUP") + "1\t2\t3\n4\t5\t6\n\t\t\n");
  EXPECT_EQ(lists.PenUpMode, 1);
  ExpectPoint(0, 6, 2, 4, 6, -1);
  ExpectPoint(1, 12, 8, 10, 12, -1);
  ExpectPoint(2, 0, 0, 0, 0, -1);
  EXPECT_EQ(lists.PlotValueMin, 0);
  EXPECT_EQ(lists.PlotValueMax, 12);
}

TEST_F(PlotFile, PenUpPointsKeepTheirValueUnlessTheRangeStandsAlone) {
  Read(HeaderOf("=MAX(A2:D4)", "1", "PENUP") + "1\t2\t3\t9\n");
  EXPECT_EQ(lists.PointList(0, 0), 9);
  Read(HeaderOf("=MAX(A2:E4)", "1", "PENUP") + "1\t2\t3\n");
  EXPECT_EQ(lists.PointList(0, 0), 0);
  Read(HeaderOf("", "1", "PENUP") + "1\t2\t3\n");
  EXPECT_EQ(lists.PointList(0, 0), 3);
  Read(HeaderOf("", "1", "PENUP") + "1\t2\t3\t9\n");
  EXPECT_EQ(lists.PointList(0, 0), 9);
}

TEST_F(PlotFile, PenUpOutlinesEndWithABreak) {
  std::string bytes = HeaderOf("=MAX(A2:C3)+MAX(D2:D3)+MAX(E2:F3)+MAX(G2:K12)", "2", "PENUP");
  for (int k = 0; k < 11; ++k) {
    bytes += k < 2 ? "1\t2\t3\t4\t\t" : "\t\t\t\t\t";
    bytes += k == 5 ? "\t\n" : "\t" + std::to_string(k) + "\t1\t2\t7\t8\n";
  }
  Read(bytes);
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_EQ(lists.TraceCount, 11);
  EXPECT_EQ(lists.TraceMax, 11);
  EXPECT_EQ(lists.OutlineCount, 12);
  EXPECT_EQ(lists.TraceList(0, 4), 8);
  EXPECT_EQ(lists.TraceList(1, 4), 2);
  EXPECT_EQ(lists.TraceList(2, 4), 4);
  EXPECT_EQ(lists.TraceList(3, 4), 0);
  EXPECT_EQ(lists.TraceList(3, 5), kPenUp);
  EXPECT_EQ(lists.TraceList(0, 5), 0);
  EXPECT_EQ(lists.TraceList(3, 10), 0);
  EXPECT_EQ(lists.TraceList(3, 11), kPenUp);
}

TEST_F(PlotFile, PenUpKeepsAnOutlineThatIsBrokenAlready) {
  Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)+MAX(E2:F4)+MAX(G2:I4)", "1", "PENUP") +
       "1\t1\t1\t\t\t\t1\t1\t1\n1\t1\t1\t\t\t\t2\t2\t2\n1\t1\t1\t\t\t\t\t\t\n");
  EXPECT_EQ(lists.TraceCount, 2);
  EXPECT_EQ(lists.OutlineCount, 3);
}

TEST_F(PlotFile, PenUpWithoutATraceHasNoOutline) {
  Read(HeaderOf("", "1", "PENUP") + "1\t1\t1\t\t\t\t\t\t\n1\t1\t1\t\t\t\t\t\t\n");
  EXPECT_EQ(lists.TraceCount, kNoEntry);
  EXPECT_EQ(lists.OutlineCount, 0);
  EXPECT_EQ(lists.TraceList(3, 0), 0);
}

// --- sources

TEST_F(PlotFile, DemoStandsInForAMissingFile) {
  PlotReading reading = ReadAgain();
  EXPECT_EQ(reading.source, PlotReading::Source::Demo);
  EXPECT_EQ(reading.file, Name("demo.xls"));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "The demo will be shown.");
  EXPECT_EQ(dialogs.boxes[0].title, "Demo default");
  EXPECT_EQ(lists.NumberPoints, kDemoPoints - 1);
}

TEST_F(PlotFile, DemoIsShownWhenItIsWanted) {
  Put(std::string(kHeader) + "1\t2\t3\n");
  const PlotReading reading = ReadAgain({}, 1);
  EXPECT_EQ(reading.source, PlotReading::Source::Demo);
  EXPECT_EQ(dialogs.Count("The demo will be shown."), 1);
  EXPECT_EQ(ReadAgain({}, 2).source, PlotReading::Source::PlotFile);
  EXPECT_EQ(lists.NumberPoints, 0);
}

TEST_F(PlotFile, NeitherFileLeavesAnEmptyPlot) {
  Read(std::string(kHeader) + "1\t2\t3\n");
  fs::remove(PathOf(Name()));
  std::ofstream(folder_ / "blocked") << "x";
  CellText reader(prompt, Locale{});
  lists.FirstDraw = 1;
  const PlotReading reading = ReadPlotFile({Name(), Name("blocked/demo.xls"), 0}, lists, reader);
  EXPECT_EQ(reading.source, PlotReading::Source::Nothing);
  EXPECT_FALSE(reading.complete);
  EXPECT_EQ(lists.NumberPoints, kNoEntry);
  EXPECT_EQ(lists.FirstDraw, 0);
  EXPECT_TRUE(Logged("demo.xls cannot be read"));
}

TEST_F(PlotFile, AFolderInItsPlaceIsTold) {
  fs::create_directories(PathOf(Name()));
  const PlotReading reading = ReadAgain();
  EXPECT_EQ(reading.source, PlotReading::Source::Nothing);
  EXPECT_TRUE(Logged("plot.txt cannot be read: Path/File access error"));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PlotFile, EmptyFileLeavesAnEmptyPlot) {
  Read(std::string(kHeader) + "1\t2\t3\n");
  for (const char* bytes : {"", "\xEF\xBB\xBF", "\x1A"}) {
    const PlotReading reading = Read(bytes);
    EXPECT_FALSE(reading.complete);
    EXPECT_EQ(lists.NumberPoints, kNoEntry);
    EXPECT_EQ(lists.EventCount, kNoEntry);
    EXPECT_EQ(lists.PlotLoaded, 0);
    EXPECT_EQ(lists.PlotNormalised, 0);
    EXPECT_TRUE(Logged("plot.txt is empty"));
  }
}

TEST_F(PlotFile, HeaderAloneGivesTheDefaultShape) {
  Read(HeaderOf("=MAX(A2:C4)", "0.001"));
  EXPECT_EQ(lists.NumberPoints, 4);
  EXPECT_EQ(lists.EventCount, 1);
  EXPECT_EQ(lists.EventList(0, 1), 0);
  const double radius = 29242.77201 * 0.001 * 10.5;
  for (int k = 0; k < 5; ++k) {
    const double angle = -72 * k * 3.14159265358979 / 180;
    EXPECT_FLOAT_EQ(lists.PointList(1, k), static_cast<float>(radius * std::cos(angle)));
    EXPECT_FLOAT_EQ(lists.PointList(2, k), static_cast<float>(radius * std::sin(angle)));
    EXPECT_EQ(lists.PointList(3, k), 0);
    EXPECT_EQ(lists.PointList(4, k), 0);
  }
  EXPECT_LT(lists.PointList(2, 1), 0);
  EXPECT_TRUE(lists.EarthOn);
  Read(HeaderOf("=MAX(A2:C4)", "1e300"));
  EXPECT_TRUE(std::isfinite(lists.PointList(1, 0)));
}

TEST_F(PlotFile, OneReadingLeavesNothingOfTheOneBefore) {
  Read(HeaderOf("=MAX(A2:C4)+MAX(D2:D4)", "2", "moon maravo valz") +
       "1\t2\t3\t4\t5\t1\t7\t8\t9\t10\t11\t12\t13\t14\t15\n9\t9\t9\t9\n");
  Read(std::string(kHeader) + "1\t2\t3\n");
  EXPECT_EQ(lists.NumberPoints, 0);
  ExpectPoint(1, 0, 0, 0, 0, 0);
  EXPECT_EQ(lists.TraceList(0, 0), 0);
  EXPECT_EQ(lists.EventList(0, 0), 0);
  EXPECT_EQ(lists.PanelAngleList1(0, 0), 0);
  EXPECT_EQ(lists.ValueTable(0, 0), 0);
  EXPECT_EQ(lists.ValueCount, kNoEntry);
  EXPECT_EQ(lists.ValueAxis, 0);
  EXPECT_FALSE(lists.EarthOn || lists.TimePlot || lists.MoonView);
}

// A window that paints while the file is read must not take the lists before they are complete.
class Watcher : public ScriptedDialogs {
 public:
  explicit Watcher(const PointLists& lists) : lists_(lists) {}
  void Progress(const std::string& phase, double share) override {
    ScriptedDialogs::Progress(phase, share);
    shares.push_back(share);
    early = early || (share < 1 && (lists_.PlotLoaded != 1 || lists_.NumberPoints != kNoEntry));
    early = early || lists_.PlotLoaded != 1;
  }
  std::vector<double> shares;
  bool early = false;

 private:
  const PointLists& lists_;
};

TEST_F(PlotFile, HandsTheListsOverWhenTheyAreComplete) {
  std::string bytes = HeaderOf("=MAX(A2:C602)");
  for (int k = 0; k < 601; ++k) bytes += "1\t2\t3\n";
  Put(bytes);
  Watcher watcher(lists);
  ErrorPrompt watching(watcher);
  CellText reader(watching, Locale{});
  ReadPlotFile({Name(), Name("demo.xls"), 0}, lists, reader);
  EXPECT_FALSE(watcher.early);
  EXPECT_EQ(lists.PlotLoaded, 0);
  ASSERT_GE(watcher.shares.size(), 50U);
  EXPECT_LE(watcher.shares.size(), 62U);
  EXPECT_NEAR(watcher.shares.front(), 0.3, 0.02);
  EXPECT_EQ(watcher.shares.back(), 1);
  EXPECT_TRUE(std::is_sorted(watcher.shares.begin(), watcher.shares.end()));
}

// --- files that are none

TEST_F(PlotFile, AnotherTextIsTold) {
  Read("1\t2\t3\n4\t5\t6\n");
  EXPECT_TRUE(Logged("line 1 is no header of a plot file"));
  EXPECT_EQ(lists.NumberPoints, 0);
  ExpectPoint(0, 0, 4, 5, 6, 0);
}

TEST_F(PlotFile, FieldsBehindTheFifteenthAreTold) {
  std::string wide = "1\t2\t3";
  for (int k = 4; k <= 40; ++k) wide += "\t" + std::to_string(k);
  Read(std::string(kHeader) + "1\t2\t3\n" + wide + "\n" + wide + "\n");
  EXPECT_TRUE(Logged("plot.txt, line 3 and 1 more: more than 15 fields"));
  EXPECT_EQ(lists.PanelAngleList2(1, 0), 15);
}

TEST_F(PlotFile, LongLinesAreReadToTheirEnd) {
  const std::string blanks(65001, ' ');
  Read(std::string(kHeader) + "1" + blanks + "\t2\t3\t4\n" + std::string(65001, '7') + "\t2\t3\t4\n5\t6\t7\t8\n");
  ExpectPoint(0, 4, 1, 2, 3, 0);
  ExpectPoint(1, 4, 0, 2, 3, 0);
  ExpectPoint(2, 8, 5, 6, 7, 0);
  EXPECT_TRUE(Logged("line 3: a number is too large"));
}

TEST_F(PlotFile, NulBytesAreTold) {
  Read(std::string(kHeader) + std::string("1\t2\0\t3\n\0\0\t5\t6\n", 14));
  ExpectPoint(0, 0, 1, 2, 3, 0);
  ExpectPoint(1, 0, 0, 5, 6, -1);
  EXPECT_TRUE(Logged("plot.txt, line 2 and 1 more: holds bytes that are no text"));
}

TEST_F(PlotFile, EveryEncodingPlotsAlike) {
  const std::string text =
      "From: \tB\xC3\xA9\tS\t=MAX(A2:C4)\t1\tmoon\tDate x\r\n1\xC2\xA0"
      "000\t2\t3\r\n";
  std::string utf16("\xFF\xFE", 2);
  const std::string latin = Windows1252FromUtf8(text);
  for (const char c : latin) utf16 += std::string(1, c) + std::string(1, '\0');
  for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, latin, utf16}) {
    Read(bytes);
    EXPECT_EQ(lists.Title, "B\xC3\xA9/S");
    ExpectPoint(0, 0, 1000, 2, 3, 0);
    EXPECT_TRUE(lists.MoonView);
  }
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(PlotFile, BinaryBytesDoNoHarm) {
  std::string bytes;
  unsigned state = 12345;
  for (int k = 0; k < 300000; ++k) {
    state = state * 1664525U + 1013904223U;
    bytes.push_back(static_cast<char>(state >> 24U));
  }
  Read(bytes);
  EXPECT_GE(lists.NumberPoints, 0);
  for (int n = 0; n <= lists.NumberPoints; ++n) {
    for (int row = 0; row < 5; ++row) ASSERT_TRUE(std::isfinite(lists.PointList(row, n)));
  }
  EXPECT_LE(dialogs.boxes.size(), 1U);
}

TEST_F(PlotFile, LinesBeyondTheListsAreTold) {
  std::string bytes = HeaderOf("=MAX(A2:C9)", "1", "PENUP");
  for (int k = 0; k < kListEntries + 3; ++k) bytes += "1\t2\t3\t4\t5\tS\t7\n";
  const PlotReading reading = Read(bytes);
  EXPECT_EQ(lists.NumberPoints, kListEntries - 1);
  EXPECT_EQ(lists.EventCount, kListEntries - 1);
  EXPECT_EQ(lists.TraceCount, kListEntries - 1);
  EXPECT_EQ(lists.OutlineCount, kListEntries);
  EXPECT_EQ(reading.lines, kListEntries + 3);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].title, "Some Data are to be lost");
  EXPECT_TRUE(Contains(dialogs.boxes[0].text, "plot.txt has 3 lines more than the 1048576"));
  EXPECT_TRUE(Contains(dialogs.boxes[0].text, "The lines from 1048578 on"));
}

TEST_F(PlotFile, WrittenNumbersAreReadAgain) {
  PlotHeader header;
  header.specification = "=MAX(A2:D3)";
  header.options = "ValisExcelPro";
  WritePlotFile(Name(), header,
                std::vector<std::vector<std::string>>{{"0.10000000000000001", "1e-05", "-123456.789", "3"},
                                                      {"1", "2", "3", "4"}});
  ReadAgain({",", "."});
  ExpectPoint(0, 3, 0.1F, 1e-5F, -123456.789F, 0);
  EXPECT_EQ(lists.NumberPoints, 1);
}

}  // namespace
}  // namespace orv
