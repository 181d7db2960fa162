#include "analysis/report.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "analysis/report_fixture.h"
#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "model/file_workbook.h"
#include "model/rotation_table.h"
#include "plume/potentials.h"

namespace orv::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

const char* const kTable1 = "OrvforTables_.xls";
const char* const kForces = "OrvForcesAndMoments_.xls";
const char* const kReport13 = "OrvTest modelplot13 20310405 060708_.xls";

std::string Rule(char mark, std::size_t length) {
  return std::string(length, mark);
}

class ReportRun : public ReportFixture {
 protected:
  // The tables of a report in order: the number of the quantity, negative in the compact form; 0 for a line of stars.
  std::vector<int> TablesOf(const std::vector<std::string>& lines) const {
    std::vector<int> tables;
    for (const std::string& line : lines) {
      if (line == Rule('*', 64)) tables.push_back(0);
      const std::size_t end = line.find(" Summary_parameters ");
      if (end == std::string::npos) continue;
      const std::string label = SoftBlanks(line.substr(0, end));
      for (int q = 1; q <= kQuantities; ++q) {
        if (LabelOf(run.ResultLabels, q) != label) continue;
        tables.push_back(line.ends_with(Rule('=', 32)) ? q : -q);
        break;
      }
    }
    return tables;
  }
  // A range of quantities.
  static void Add(std::vector<int>& list, int first, int last) {
    const int step = first <= last ? 1 : -1;
    for (int q = first; q != last + step; q += step) list.push_back(q);
  }
  // Moments and forces as every report has them, in the first and in the second part.
  static void AddForces(std::vector<int>& list) { list.insert(list.end(), {23, 24, 25, 26, 27, 28, 0, 36, 37, 38, 0}); }
  static void AddCompactForces(std::vector<int>& list) {
    for (const int first : {23, 39, 48, 64, 67, 26, 0, 36, 45, 54, 70, 73}) {
      if (first == 0) {
        list.push_back(0);
      } else {
        Add(list, -first, -first - 2);
      }
    }
  }
};

// --- frame -----------------------------------------------------------------------------------------------------------

TEST_F(ReportRun, SilentModeWritesNothing) {
  text.directives = "Silent 1";
  Compute(1, "G");
  WriteReports(run);
  EXPECT_THAT(FilesIn(), ElementsAre("OrvTraceResults.txt"));
  EXPECT_THAT(run.record.files, IsEmpty());
  EXPECT_THAT(run.record.filesSkipped, IsEmpty());
}

TEST_F(ReportRun, OtherSilentNumbersWrite) {
  text.directives = "Silent 2";
  Compute();
  WriteReports(run);
  EXPECT_THAT(FilesIn(),
              ElementsAre("OrvTest model Silent 2plot13 20310405 060708_.xls", "OrvTraceResults.txt", kTable1));
}

TEST_F(ReportRun, TheHeadingStandsOnceAtTheHead) {
  const std::vector<std::string> lines = Report();
  EXPECT_EQ(lines[0], Rule('=', 64));
  EXPECT_EQ(lines[1], "TracefileLine:" + Hard(run.record.TraceFile) + " " + Hard(run.record.CaseLine));
  EXPECT_EQ(lines[2], "Software OrvValis " ORV_VERSION " 2031/04/05 06:07:08");
  EXPECT_EQ(lines[3], Hard("Density (m-3)") + " IndexPlot=13 Reference: " + Hard(run.model.SheetTitle));
  EXPECT_EQ(lines[4], Rule('=', 32));
  EXPECT_EQ(LineWith(lines, "TracefileLine:", 2), lines.size());
  EXPECT_EQ(LineWith(lines, "Software ", 3), lines.size());
  const std::size_t end = LineWith(lines, "Model Summary");
  ASSERT_LT(end, lines.size());
  EXPECT_EQ(LineWith(lines, "Model Summary", end + 1), lines.size());
}

TEST_F(ReportRun, TheModelStandsAtTheEnd) {
  text.directives = "T 1 2.5 -3  recto";
  text.title = "My study";
  text.primitives[1] += "\t\tsome note";
  text.primitives[2] = "gold @ silver\tPlate_2 rect size 2 2 cells 4 4 R X 180 T 0 0 2.9\tShift 0 Rot% 0 1 @ 10 2";
  text.database[0] = "Table      1 Thrusters\t\t\tplume";
  const std::vector<std::string> lines = Report();
  const std::size_t at = LineWith(lines, "Model Summary");
  const std::vector<std::string> end(lines.begin() + static_cast<std::ptrdiff_t>(at), lines.end());
  const std::string hard(kHardBlank);
  const std::vector<std::string> expected = {
      "Model Summary               This ouput filename " + Hard(run.record.PlotReportFile),
      "",
      Hard("Orvdata My study") + "\t" + Hard(" si T 1 2.5 -3  recto"),
      Hard("T5\tThruster thr size 0.05 0.1 cells 1 1"),
      Hard("silver\tPlate_1 rect size 1 1 cells 4 4 R X 180 T 0 0 2\t" + hard + "\tsome note"),
      Hard("gold | silver\tPlate_2 rect size 2 2 cells 4 4 R X 180 T 0 0 2.9\tShift 0 Rot% 0 1 | 10 2"),
      "",
      "DatabaseOrvValis",
      Hard(" LinesDataBase_used"),
      Hard("Table      1 Thrusters\t" + hard + "\t" + hard + "\tplume"),
      "head",
      Hard("T5\t \t3.79\t230\t7.85\t7.34\t0.125\t60\t \t \t \t \t \t \t \t \t0"),
      Hard("Table      10 Gases of each thruster"),
      "head",
      "T5\tXe+\t0.9",
      "T5\tXe++\t0.1",
      Hard("Table      6 Gases"),
      "head",
      "Xe+\t" + hard + "\t1\t131.3",
      "Xe++\t" + hard + "\t2\t131.3",
      Hard("Table      7 Materials"),
      "head",
      "silver\t10490\t107.87",
      "gold\t19300\t196.97",
      Hard("Table      8 Accommodation"),
      "head",
      "Xe+\tsilver\t0.85\t0.9\t0.9\tY",
      Hard("Table      9 Yields"),
      "head",
      "Xe+\tsilver\t100\t0.5\t0.8\t45\t1",
      "",
      "",
      Rule('=', 32),
      Rule('=', 32),
      Rule('=', 64),
  };
  EXPECT_EQ(end, expected);
}

TEST_F(ReportRun, ARotatingPrimitiveIsNoted) {
  text.primitives.push_back(kTurningWing);
  const std::vector<std::string> lines = Report();
  EXPECT_EQ(lines[LineWith(lines, "Model Summary") + 1],
            "                   Note: Autorotation true Averaged values (over one complete turn) on n°4    Wing");
}

TEST_F(ReportRun, PotentialsGoBackIntoTheirRows) {
  Compute();
  WriteReports(run, {"", "", "V 1 20 | 2 30", "Vtable 1 5\t2 6"});
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  EXPECT_THAT(lines, Contains(EndsWith("T\xC2\xA0"
                                       "0\xC2\xA0"
                                       "0\xC2\xA0"
                                       "2\t" +
                                       Hard("V 1 20 | 2 30"))));
  EXPECT_THAT(lines, Contains(EndsWith("2.9\t" + Hard("Vtable 1 5 2 6"))));
}

TEST_F(ReportRun, AQuoteAtTheHeadOfACellIsQuoted) {
  text.database[16] = "silver\t\"10490\" kg\t107.87";
  const std::vector<std::string> lines = Report();
  EXPECT_THAT(lines, Contains("silver\t" + Hard("\"\"\"10490\"\" kg\"") + "\t107.87"));
}

// --- order -----------------------------------------------------------------------------------------------------------

TEST_F(ReportRun, OrderOfADensityReport) {
  const std::vector<std::string> lines = Report();
  std::vector<int> expected = {19, 13, 22};
  AddForces(expected);
  expected.insert(expected.end(), {-19, -13});
  AddCompactForces(expected);
  EXPECT_EQ(TablesOf(lines), expected);
  EXPECT_EQ(lines[5], " ");
  EXPECT_EQ(
      lines[6],
      "Synthetic parameters for each Primitive:mini,maxi,Area,integral,integral*Area  (Nul values on all cells of "
      "a primitive are skipped)");
  // Between the two parts.
  const std::size_t middle = LineWith(lines, Rule('=', 64), 1);
  EXPECT_EQ(lines[middle - 1], Rule('*', 64));
  EXPECT_EQ(lines[middle + 1], "");
  EXPECT_THAT(lines[middle + 2], StartsWith(Hard("Sputtering (m/s)")));
  EXPECT_EQ(LineWith(lines, "for Geometry"), lines.size());
}

TEST_F(ReportRun, OrderOfAGeometryReport) {
  const std::vector<std::string> lines = Report(9);
  std::vector<int> expected = {9, 19, 13, 22};
  AddForces(expected);
  expected.insert(expected.end(), {-8, -9, -10, -1, -2, -3, -19, -13});
  AddCompactForces(expected);
  EXPECT_EQ(TablesOf(lines), expected);
  EXPECT_EQ(lines[5], " ");
  EXPECT_EQ(lines[6], "Synthetic parameters for Geometry");
  EXPECT_THAT(lines[7], StartsWith("Table of locations of the 4 corners"));
  EXPECT_THAT(lines[8 + 2 + 8], StartsWith("Note : for the thruster"));
  EXPECT_EQ(lines[8 + 2 + 8 + 1], " ");
  EXPECT_THAT(lines[8 + 2 + 8 + 2], StartsWith("Synthetic parameters for each Primitive:"));
  EXPECT_THAT(FilesIn(), Contains("OrvfullTest model_tmp_.xls"));
}

TEST_F(ReportRun, OrderOfAnotherPlot) {
  const std::vector<std::string> lines = Report(16);
  std::vector<int> expected = {16, 19, 13, 22};
  AddForces(expected);
  expected.insert(expected.end(), {-16, -19, -13});
  AddCompactForces(expected);
  EXPECT_EQ(TablesOf(lines), expected);
  EXPECT_THAT(FilesIn(), Not(Contains(StartsWith("Orvfull"))));
}

TEST_F(ReportRun, PlotsWithoutATableOfTheirOwn) {
  for (const int plot : {19, 22, 28, 36, 56, 64, 81}) {
    const std::vector<std::string> lines = Report(plot);
    std::vector<int> expected = {19, 13, 22};
    AddForces(expected);
    expected.insert(expected.end(), {-19, -13});
    AddCompactForces(expected);
    EXPECT_EQ(TablesOf(lines), expected) << plot;
  }
}

TEST_F(ReportRun, RedepositionOfTheMaterialsInUse) {
  text.directives = "recto";
  const std::vector<std::string> lines = Report(90);
  std::vector<int> expected = {19, 90, 91, 13, 22};
  AddForces(expected);
  expected.insert(expected.end(), {-19, -90, -91, -13});
  AddCompactForces(expected);
  EXPECT_EQ(TablesOf(lines), expected);
}

TEST_F(ReportRun, CleaningAddsItsOwnAndTheNetRedeposition) {
  text.directives = "recto";
  const std::vector<std::string> lines = Report(100);
  std::vector<int> expected = {19, 90, 91, 95, 96, 100, 101, 13, 22};
  AddForces(expected);
  expected.insert(expected.end(), {-19, -90, -91, -95, -96, -100, -101, -13});
  AddCompactForces(expected);
  EXPECT_EQ(TablesOf(lines), expected);
}

TEST_F(ReportRun, MomentsAreAboutTheNamedPoint) {
  text.directives = "T 1 -2.5 1e-7";
  std::vector<std::string> lines = Report();
  std::size_t at = LineWith(lines, Rule('*', 64));
  EXPECT_EQ(lines[at + 1], "1 -2.5 1E-07");
  at = LineWith(lines, Rule('*', 64), at + 1);
  at = LineWith(lines, Rule('*', 64), at + 1);
  EXPECT_EQ(lines[at + 1], "1 -2.5 1E-07");
  EXPECT_THAT(lines[at + 2], StartsWith(Hard("MxT_translated (N.m)")));
}

TEST_F(ReportRun, WithoutAPointThereAreNoTranslatedMoments) {
  Compute();
  run.model.directives.MomentOrigin[0] = 0;
  WriteReports(run);
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  EXPECT_EQ(LineWith(lines, Rule('*', 64)), lines.size());
  const std::vector<int> tables = TablesOf(lines);
  EXPECT_THAT(tables, Not(Contains(36)));
  EXPECT_THAT(tables, Not(Contains(-73)));
  EXPECT_EQ(tables.back(), -28);
}

TEST_F(ReportRun, SumsOfTheSilentSummariesReachTheForceTables) {
  Compute(23);
  for (int q = 23; q <= 81; ++q) FillCells(2, q, q);
  WriteReports(run);
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  const std::size_t at = LineWith(lines, Hard("Fy (N)") + " Summary_parameters ");
  // 16 cells a plate.
  EXPECT_THAT(ColumnsOf(lines[at + 2]),
              ElementsAre("2Plate_1", "silver", "24.", "24.", "1.", "384.", "640.", "784.", "1040.", "1090."));
}

TEST_F(ReportRun, APrimitiveOfZerosHasNoRow) {
  Compute();
  FillCells(3, 13, 0);
  WriteReports(run);
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  EXPECT_LT(LineWith(lines, " 2Plate_1"), lines.size());
  EXPECT_EQ(LineWith(lines, " 3Plate_2"), lines.size());
}

// The shells have densities. Two of the force quantities hold their integrals along the paths.
TEST_F(ReportRun, ShellsOfAVolumeHaveDensitiesButNoForces) {
  text.primitives.push_back("gold\tPlume cyl size 0.5 2 3 cells 8 4 T 5 0 0");
  const auto shellRows = [&](double plot, int table) {
    Compute(plot);
    for (int q : {13, 16, 24}) {
      for (int p = 2; p <= 6; ++p) FillCells(p, q, 1);
    }
    WriteReports(run);
    const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
    std::size_t at = LineWith(lines, Hard(LabelOf(run.ResultLabels, table)) + " Summary_parameters ");
    int rows = 0;
    for (at += 2; lines[at].find("Summary_parameters") == std::string::npos; ++at) {
      rows += ColumnsOf(lines[at])[0][0] >= '5' ? 1 : 0;
    }
    return rows;
  };
  EXPECT_EQ(shellRows(16, 13), 2);
  EXPECT_EQ(shellRows(16, 16), 2);
  EXPECT_EQ(shellRows(13, 13), 0);
  EXPECT_EQ(shellRows(13, 24), 0);
}

TEST_F(ReportRun, ThePlasmaTextFollowsTheHeading) {
  Compute();
  run.record.PlasmaText = " Average #Plume = 1. \r\n K1(rd.Hz) = 2. \n";
  WriteReports(run);
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  EXPECT_EQ(lines[5], Hard(" Average #Plume = 1. "));
  EXPECT_EQ(lines[6], Hard(" K1(rd.Hz) = 2. "));
  EXPECT_EQ(lines[7], " ");
}

// --- the other files -------------------------------------------------------------------------------------------------

TEST_F(ReportRun, TurningForcesHaveTheirOwnTable) {
  text.primitives.push_back(kTurningWing);
  Compute(22);
  run.stores.RotationSums.Size({Bounds{0, 36}, Bounds{0, 120}});
  run.stores.RotationSums(0, 0) = 36;
  WriteReports(run);
  EXPECT_THAT(LinesOf(Folder() + kForces), SizeIs(2 + 36));
  EXPECT_THAT(run.record.files, ElementsAre(Folder() + kForces, run.record.PlotReportFile, Folder() + kTable1));
  // A plot that does not turn the primitive.
  Compute(13);
  run.stores.RotationSums(0, 0) = 36;
  WriteReports(run);
  EXPECT_THAT(run.record.files, Not(Contains(Folder() + kForces)));
}

TEST_F(ReportRun, TurningErosionHasItsOwnTable) {
  text.primitives.push_back(kTurningWing);
  Report(19);
  EXPECT_THAT(FilesIn(), Contains("OrvSputtAutoTableTest model 20310405 060708_.xls"));
  Report(13);
  EXPECT_THAT(run.record.files, Each(Not(HasSubstr("OrvSputtAutoTable"))));
}

TEST_F(ReportRun, NamesAreCleanedButNotTheFolder) {
  std::filesystem::create_directory(folder.path() / "a|b*c");
  text.title = "x*?\"<>|:y \x7F" + std::string(60, 'z');
  Compute();
  run.model.WorkbookFolder = Folder() + "a|b*c/";
  run.record.PlotReportFile.clear();
  WriteReports(run);
  // The title is cut before it is cleaned.
  EXPECT_THAT(run.record.files,
              Contains(Folder() + "a|b*c/Orvxy " + std::string(33, 'z') + "plot13 20310405 060708_.xls"));
}

TEST_F(ReportRun, WhatStandsAboveTheModelIsNotTakenForIt) {
  text.primitives[1] = "silver\tORVDATA1 rect size 1 1 cells 4 4 R X 180 T 0 0 2";
  run.record.CaseText = "DatabaseOrvValis orvdata";
  const std::vector<std::string> lines = Report();
  EXPECT_THAT(lines[1], HasSubstr(Hard("Database_OrvValis orv_data")));
  EXPECT_LT(LineWith(lines, " 2ORV_DATA1"), lines.size());
  const std::size_t model = LineWith(lines, "Orvdata");
  for (std::size_t k = 0; k < model; ++k) EXPECT_THAT(UpperCase(lines[k]), Not(HasSubstr("ORVDATA")));
  EXPECT_THAT(lines[model], StartsWith("Orvdata"));
}

TEST_F(ReportRun, TextsOfTheCodePageAndBeyond) {
  text.primitives[1] = "silver\tPlätte€ rect size 1 1 cells 4 4 R X 180 T 0 0 2";
  Report();
  EXPECT_THAT(Bytes(run.record.PlotReportFile), HasSubstr(" 2Pl\xE4tte\x80 "));
  text.primitives[2] = "gold\tПанель rect size 1 1 cells 4 4 R X 180 T 0 0 2";
  const std::vector<std::string> lines = Report();
  EXPECT_THAT(Bytes(run.record.PlotReportFile), StartsWith("\xEF\xBB\xBF===="));
  EXPECT_LT(LineWith(lines, " 2Plätte€ "), lines.size());
  EXPECT_LT(LineWith(lines, " 3Панель "), lines.size());
}

// --- files that cannot be written ------------------------------------------------------------------------------------

TEST_F(ReportRun, OnlyTheFileHeldElsewhereIsSkipped) {
  Report();
  const std::string old = Bytes(Folder() + kTable1);
  WriteBytes(Lock(kTable1), "");
  for (const Answer answer : {Answer::Ok, Answer::Cancel}) {
    dialogs.boxes.clear();
    dialogs.log.clear();
    dialogs.answers = {answer};
    Report();
    ASSERT_EQ(dialogs.boxes.size(), 1U);
    EXPECT_EQ(dialogs.boxes[0].text,
              "The file " + Folder() + kTable1 + " seems to be open. It should be closed now. Then you click on OK.");
    EXPECT_EQ(dialogs.boxes[0].title, "File open");
    EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::OkCancel);
    EXPECT_EQ(Bytes(Folder() + kTable1), old);
    EXPECT_THAT(run.record.files, ElementsAre(run.record.PlotReportFile));
    EXPECT_THAT(run.record.filesSkipped,
                ElementsAre(Folder() + kTable1 + " was not written: it is open in another program"));
    EXPECT_EQ(dialogs.log, run.record.filesSkipped);
  }
}

TEST_F(ReportRun, AHeldReportDoesNotHoldUpTheTablesWithinIt) {
  text.primitives.push_back(kTurningWing);
  Compute(22);
  run.stores.RotationSums.Size({Bounds{0, 36}, Bounds{0, 120}});
  run.stores.RotationSums(0, 0) = 1;
  WriteBytes(Lock("OrvTest modelplot22 20310405 060708_.xls"), "");
  WriteReports(run);
  EXPECT_THAT(run.record.files, ElementsAre(Folder() + kForces, Folder() + kTable1));
  EXPECT_THAT(run.record.filesSkipped, SizeIs(1));
}

// Dialogs whose user closes the file before he clicks on OK.
class ClosingDialogs : public ScriptedDialogs {
 public:
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override {
    std::filesystem::remove(lock);
    return ScriptedDialogs::Ask(text, title, buttons, icon);
  }
  std::string lock;
};

TEST_F(ReportRun, AFileThatIsClosedWhenAskedIsWritten) {
  ClosingDialogs closing;
  closing.lock = Lock("r.xls");
  WriteBytes(closing.lock, "");
  ErrorPrompt closingPrompt(closing);
  RunContext other(closingPrompt, reader, settings, clock, Folder());
  EXPECT_TRUE(WriteReportFile(other, Folder() + "r.xls", [](ReportFile& file) { file.Print("line"); }));
  EXPECT_EQ(closing.boxes.size(), 1U);
  EXPECT_EQ(Bytes(Folder() + "r.xls"), "line\r\n");
  EXPECT_THAT(other.record.filesSkipped, IsEmpty());
}

TEST_F(ReportRun, AFolderThatIsNoneIsTold) {
  Compute(1);
  WriteBytes(Folder() + "file", "x");
  run.model.WorkbookFolder = Folder() + "file/";
  run.record.PlotReportFile = run.model.WorkbookFolder + "report.xls";
  WriteReports(run);
  EXPECT_THAT(run.record.files, IsEmpty());
  ASSERT_THAT(run.record.filesSkipped, SizeIs(3));
  EXPECT_EQ(run.record.filesSkipped[0],
            run.record.PlotReportFile + " was not written: Path not found: " + Folder() + "file");
  EXPECT_THAT(dialogs.log, SizeIs(3));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ReportRun, AFolderInTheFilesPlaceIsTold) {
  Compute();
  std::filesystem::create_directories(Folder() + kTable1 + "/inside");
  WriteReports(run);
  EXPECT_THAT(run.record.files, ElementsAre(run.record.PlotReportFile));
  EXPECT_THAT(run.record.filesSkipped, ElementsAre(StartsWith(Folder() + kTable1 + " was not written: ")));
  EXPECT_THAT(FilesIn(), ElementsAre(kReport13, "OrvTraceResults.txt", kTable1));
}

// A disk that takes no more than `bytes` of a file while it lives.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) {
    oldHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit limit = old_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SmallDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, oldHandler_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit old_{};
  void (*oldHandler_)(int) = nullptr;
};

TEST_F(ReportRun, AFullDiskLeavesTheOldFilesWhole) {
  Report(1);
  const std::vector<std::string> names = FilesIn();
  std::vector<std::string> old;
  for (const std::string& name : names) old.push_back(Bytes(Folder() + name));
  Compute(1);
  for (std::size_t k = 0; k < names.size(); ++k) {
    if (names[k] == "OrvTraceResults.txt") old[k] = Bytes(Folder() + names[k]);
  }
  {
    const SmallDisk disk(1000);
    WriteReports(run);
  }
  EXPECT_THAT(run.record.files, IsEmpty());
  ASSERT_THAT(run.record.filesSkipped, SizeIs(3));
  EXPECT_THAT(run.record.filesSkipped, Each(HasSubstr("could not be written")));
  EXPECT_EQ(FilesIn(), names);
  for (std::size_t k = 0; k < names.size(); ++k) EXPECT_EQ(Bytes(Folder() + names[k]), old[k]) << names[k];
}

// --- a report as a model sheet ---------------------------------------------------------------------------------------

// A second session that reads the report of the first one.
class Reloaded {
 public:
  Reloaded(const std::string& report, const Clock& clock, const std::string& folder)
      : run(prompt, reader, settings, clock, folder) {
    FileWorkbook workbook(report, Locale{});
    EXPECT_THAT(workbook.warnings(), IsEmpty());
    CommExcel reading(workbook, reader, clock);
    CommExcel::Session source;
    reading.Read(run.model, source);
  }
  void Run(double plot) {
    ScriptedSelection selection;
    selection.choices = {{plot, "", {}}};
    RunPhases phases;
    run.record.CaseText = "again";
    EXPECT_TRUE(a_SpaceApplication(run, selection, phases));
    WriteReports(run);
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  MemorySettings settings;
  RunContext run;
};

void ExpectSameCells(const Cells& a, const Cells& b) {
  ASSERT_EQ(a.CellData.primitives(), b.CellData.primitives());
  ASSERT_EQ(a.CellData.planeSize(), b.CellData.planeSize());
  int different = 0;
  int filled = 0;
  for (int p = 0; p <= a.CellData.primitives(); ++p) {
    for (int i = 0; i <= a.CellData.cellsI(); ++i) {
      for (int j = 0; j <= a.CellData.cellsJ(); ++j) {
        for (int q = 1; q <= kLastPlot; ++q) {
          if (i == 0 && j != 0) continue;  // summaries, which the silent run does not need
          different += a.CellData(p, i, j, q) == b.CellData(p, i, j, q) ? 0 : 1;
          filled += a.CellData(p, i, j, q) != 0 ? 1 : 0;
        }
      }
    }
  }
  EXPECT_EQ(different, 0);
  EXPECT_GT(filled, 100);
}

TEST_F(ReportRun, LoadsAgainWithTheSameResultsInSilence) {
  text.directives = "T 1 2 3 Rotation 0 360 30";
  text.title = "data study";  // "Orv" and this title make the keyword in the names of the files
  text.primitives.push_back(kTurningWing);
  Report(13);
  EXPECT_TRUE(dialogs.boxes.empty());
  const std::vector<std::string> files = FilesIn();
  Reloaded again(run.record.PlotReportFile, clock, Folder());
  EXPECT_EQ(again.run.model.NumberOfPrimitives, 4);
  EXPECT_EQ(again.run.model.directives.SilentMode, 1);
  EXPECT_EQ(again.run.model.directives.MomentOrigin, run.model.directives.MomentOrigin);
  EXPECT_EQ(again.run.model.directives.RotationStep, 30);
  EXPECT_THAT(again.run.model.ModelTitle, StartsWith("data study"));
  again.Run(13);
  EXPECT_TRUE(again.dialogs.boxes.empty());
  EXPECT_EQ(again.dialogs.log, dialogs.log);
  ExpectSameCells(run.cells, again.run.cells);
  EXPECT_EQ(run.thruster.ThrusterName, again.run.thruster.ThrusterName);
  EXPECT_EQ(run.materials.MaterialsUsed, again.run.materials.MaterialsUsed);
  EXPECT_EQ(FilesIn(), files);

  // Its own report is the same again, from the first row of the model on.
  const std::vector<std::string> first = LinesOf(run.record.PlotReportFile);
  again.run.model.directives.SilentMode = 0;
  again.run.record.PlotReportFile = Folder() + "again.xls";
  WriteReports(again.run);
  const std::vector<std::string> second = LinesOf(Folder() + "again.xls");
  const auto modelOf = [](const std::vector<std::string>& lines) {
    const std::size_t keyword = LineWith(lines, "Orvdata", LineWith(lines, "Model Summary"));
    return std::vector<std::string>(lines.begin() + static_cast<std::ptrdiff_t>(keyword) + 1, lines.end());
  };
  EXPECT_EQ(modelOf(first), modelOf(second));
  EXPECT_THAT(modelOf(second), Contains(Hard(" LinesDataBase_used")).Times(1));
  EXPECT_EQ(again.run.model.DatabaseTitle, run.model.DatabaseTitle);
}

// The phases that take texts off the rows of the model and put some there.
class TextPhases : public RunPhases {
 public:
  void PotentialTable(RunContext& run) override {
    potentials = orv::PotentialTable(run.model.ModelCells, run.model.NumberOfPrimitives, 3, run.cells, run.reader);
  }
  void RotPercentTable(RunContext& run) override {
    ReadRotPercentTable(run.model.ModelCells, run.model.NumberOfPrimitives, run.rotation.RotatingPrimitive,
                        run.rotation.tableColumn, run.rotation.tables.RotPercentTable, run.reader);
  }
  std::vector<std::string> potentials;
};

TEST_F(ReportRun, PotentialsAndRotationTableLoadAgain) {
  text.primitives[1] = "silver\tPlate_1 rect size 1 1 cells 2 1 R X 180 T 0 0 2\tVtable 1 5 | 2 6";
  text.primitives.push_back(kTurningWing);
  Load();
  run.model.WorkbookFolder = Folder();
  TextPhases first;
  ASSERT_TRUE(a_SpaceApplication(run, selection, first));
  WriteReports(run, first.potentials);
  EXPECT_EQ(Data(2, 2, 1, 63), 6);
  const std::vector<std::string> lines = LinesOf(run.record.PlotReportFile);
  EXPECT_THAT(lines, Contains(EndsWith("\t" + Hard("Vtable 1 5 | 2 6"))));
  EXPECT_THAT(lines, Contains(HasSubstr("\t" + Hard("Shift 0 Rot% 0. 0.0278 | 10. 0.0278 | 20."))));

  Reloaded again(run.record.PlotReportFile, clock, Folder());
  TextPhases second;
  again.run.record.CaseText = "again";
  ASSERT_TRUE(a_SpaceApplication(again.run, selection, second));
  EXPECT_TRUE(again.dialogs.boxes.empty());
  ExpectSameCells(run.cells, again.run.cells);
  const auto& table = run.rotation.tables.RotPercentTable;
  const auto& tableAgain = again.run.rotation.tables.RotPercentTable;
  EXPECT_EQ(tableAgain(-1, 2), 36);
  for (int k = 1; k <= 36; ++k) {
    EXPECT_EQ(tableAgain(k, 1), table(k, 1));
    EXPECT_EQ(tableAgain(k, 2), table(k, 2));
  }
}

TEST_F(ReportRun, LoadsAgainFromUtf8) {
  text.primitives[2] = "złoto\tПанель rect size 2 2 cells 4 4 R X 180 T 0 0 2.9";
  text.database[17] = "złoto\t19300\t196.97";
  Report(15);
  Reloaded again(run.record.PlotReportFile, clock, Folder());
  again.Run(15);
  EXPECT_TRUE(again.dialogs.boxes.empty());
  ExpectSameCells(run.cells, again.run.cells);
  EXPECT_EQ(again.run.PrimitiveNames[3], "Панель");
}

TEST_F(ReportRun, TheExampleLoadsAgain) {
  FileWorkbook workbook(std::string(ORV_SOURCE_DIR) + "/examples/telecom_satellite.xlsx", Locale{});
  CommExcel reading(workbook, reader, clock);
  CommExcel::Session source;
  reading.Read(run.model, source);
  run.model.WorkbookFolder = Folder();
  ASSERT_TRUE(Run(13));
  ASSERT_TRUE(dialogs.boxes.empty());
  WriteReports(run);
  ASSERT_THAT(run.record.filesSkipped, IsEmpty());
  Reloaded again(run.record.PlotReportFile, clock, Folder());
  again.Run(13);
  EXPECT_TRUE(again.dialogs.boxes.empty());
  ExpectSameCells(run.cells, again.run.cells);
}

}  // namespace
}  // namespace orv::testing
