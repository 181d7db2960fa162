#include "analysis/case_trace.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "numerics/paths.h"
#include "numerics/settings.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

class Dialogs : public testing::ScriptedDialogs {
 public:
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override {
    const Answer answer = ScriptedDialogs::Ask(text, title, buttons, icon);
    if (onAsk) onAsk();
    return answer;
  }
  std::function<void()> onAsk;
};

std::string Bytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

// The lines "prefix1" to "prefixN", each with CR LF.
std::string Numbered(const std::string& prefix, int count) {
  std::string text;
  for (int k = 1; k <= count; ++k) text += prefix + std::to_string(k) + "\r\n";
  return text;
}

struct WindowedFileTest : ::testing::Test {
  fs::path file() const { return folder.path() / "trace.txt"; }
  fs::path previous() const { return folder.path() / "trace.txtprevious"; }

  // One OPEN, the lines, one CLOSE.
  void Cycle(const std::vector<std::string>& lines, int limit, int closeLimit = 0) {
    WindowedFile windowed(prompt);
    windowed("OPEN", name, limit);
    for (const std::string& line : lines) windowed.Print(line);
    windowed("CLOSE", "", closeLimit);
  }

  testing::TemporaryFolder folder;
  std::string name = TextOf(folder.path() / "trace.txt");
  Dialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

TEST_F(WindowedFileTest, BeginsWithOneLineAndLeavesNoPreviousFile) {
  Cycle({"first"}, 15000);
  EXPECT_EQ(Bytes(file()), "first\r\n");
  EXPECT_FALSE(fs::exists(previous()));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(WindowedFileTest, PutsTheNewestFirst) {
  for (const char* line : {"one", "two", "three"}) Cycle({line}, 15000);
  EXPECT_EQ(Bytes(file()), "three\r\ntwo\r\none\r\n");
  EXPECT_FALSE(fs::exists(previous()));
}

TEST_F(WindowedFileTest, TheOldestLineFallsOut) {
  folder.Write("trace.txt", Numbered("n", 15000));
  Cycle({"new"}, 15000);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 14999));
  Cycle({"newer"}, 15000);
  EXPECT_EQ(Bytes(file()), "newer\r\nnew\r\n" + Numbered("n", 14998));
}

TEST_F(WindowedFileTest, CountsNewAndOldLinesTogether) {
  struct Row {
    int limit;
    int fresh;
    int kept;  // of 5 old ones
  };
  for (const Row& row :
       {Row{7, 2, 5}, Row{6, 2, 4}, Row{3, 2, 1}, Row{2, 2, 0}, Row{0, 2, 5}, Row{100, 0, 5}, Row{3, 0, 3}}) {
    SCOPED_TRACE("limit " + std::to_string(row.limit) + ", new " + std::to_string(row.fresh));
    folder.Write("trace.txt", Numbered("old", 5));
    std::vector<std::string> lines;
    for (int k = 1; k <= row.fresh; ++k) lines.push_back("new" + std::to_string(k));
    Cycle(lines, row.limit);
    EXPECT_EQ(Bytes(file()), Numbered("new", row.fresh) + Numbered("old", row.kept));
  }
}

TEST_F(WindowedFileTest, KeepsEverythingWithoutALimit) {
  folder.Write("trace.txt", Numbered("n", 20000));
  Cycle({"new"}, 0);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 20000));
}

TEST_F(WindowedFileTest, APositiveCountAtTheEndReplacesTheLimit) {
  folder.Write("trace.txt", Numbered("n", 10));
  Cycle({"new"}, 0, 3);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 2));
  folder.Write("trace.txt", Numbered("n", 10));
  Cycle({"new"}, 3, 5);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 4));
}

TEST_F(WindowedFileTest, RemembersNameAndLimit) {
  WindowedFile windowed(prompt);
  windowed("OPEN", name, 2);
  windowed.Print("a");
  windowed("CLOSE", "", 0);
  windowed("OPEN", "", 0);  // neither name nor count: as before
  windowed.Print("b");
  windowed("CLOSE", "", 0);
  windowed("OPEN", "", 0);
  windowed.Print("c");
  windowed("CLOSE", "", 0);
  EXPECT_EQ(Bytes(file()), "c\r\nb\r\n");
}

TEST_F(WindowedFileTest, TakesItsCommandsInAnyCase) {
  WindowedFile windowed(prompt);
  windowed(" open ", name, 10);
  windowed.Print("a");
  windowed("Close ", "", 0);
  EXPECT_EQ(Bytes(file()), "a\r\n");
}

TEST_F(WindowedFileTest, KeepsTheStateOfEachFileApart) {
  const std::string other = TextOf(folder.path() / "other.txt");
  WindowedFile first(prompt);
  WindowedFile second(prompt);
  first("OPEN", name, 1);
  second("OPEN", other, 5);
  first.Print("a");
  second.Print("b");
  second.Print("c");
  first("CLOSE", "", 0);
  second("CLOSE", "", 0);
  EXPECT_EQ(Bytes(file()), "a\r\n");
  EXPECT_EQ(Bytes(PathOf(other)), "b\r\nc\r\n");
}

TEST_F(WindowedFileTest, AppendsAPreviousFileThatACrashLeft) {
  folder.Write("trace.txt", Numbered("n", 2));
  folder.Write("trace.txtprevious", Numbered("old", 3));
  Cycle({"new"}, 15000);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 2) + Numbered("old", 3));
  EXPECT_FALSE(fs::exists(previous()));

  fs::remove(file());
  folder.Write("trace.txtprevious", Numbered("old", 3));
  Cycle({"new"}, 15000);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("old", 3));
  EXPECT_FALSE(fs::exists(previous()));
}

// A crash seldom ends at the end of a line.
TEST_F(WindowedFileTest, KeepsTheLinesOfATornFileApart) {
  folder.Write("trace.txt", "n1\r\nn2 to");
  folder.Write("trace.txtprevious", Numbered("old", 2));
  Cycle({"new"}, 15000);
  EXPECT_EQ(Bytes(file()), "new\r\nn1\r\nn2 to\r\n" + Numbered("old", 2));
}

TEST_F(WindowedFileTest, LosesNothingWhenItIsLeftOpen) {
  folder.Write("trace.txt", Numbered("n", 2));
  {
    WindowedFile windowed(prompt);
    windowed("OPEN", name, 15000);
    windowed.Print("left");
  }
  Cycle({"new"}, 15000);
  EXPECT_EQ(Bytes(file()), "new\r\nleft\r\n" + Numbered("n", 2));
}

TEST_F(WindowedFileTest, WritesWindows1252WithCarriageReturns) {
  folder.Write("trace.txt", "old\nolder");
  Cycle({"m\xC2\xB2 \xC3\xA9 \xE2\x82\xAC", "a\xC2\xA0z"}, 10);
  EXPECT_EQ(Bytes(file()), "m\xB2 \xE9 \x80\r\na\xA0z\r\nold\r\nolder\r\n");
  Cycle({"x"}, 10);
  EXPECT_EQ(Bytes(file()), "x\r\nm\xB2 \xE9 \x80\r\na\xA0z\r\nold\r\nolder\r\n") << "old lines pass unchanged";
}

// A folder in the place of the "previous" file stands for one that another program holds.
TEST_F(WindowedFileTest, AsksAboutAFileInUse) {
  folder.Write("trace.txt", Numbered("n", 1));
  fs::create_directory(previous());
  dialogs.answers = {Answer::Retry};
  dialogs.onAsk = [&] { fs::remove(previous()); };
  Cycle({"new"}, 10);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error file " + name + " is maybe open, please close it and Retry");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  EXPECT_EQ(Bytes(file()), "new\r\n" + Numbered("n", 1));
}

TEST_F(WindowedFileTest, AsksAgainUntilTheFileIsFreeOrIgnored) {
  folder.Write("trace.txt", Numbered("n", 1));
  fs::create_directory(previous());
  dialogs.answers = {Answer::Retry, Answer::Retry, Answer::Ignore};
  WindowedFile windowed(prompt);
  windowed("OPEN", name, 10);
  EXPECT_EQ(dialogs.boxes.size(), 3U);
}

TEST_F(WindowedFileTest, EndsTheProgramOnAbort) {
  folder.Write("trace.txt", Numbered("n", 1));
  fs::create_directory(previous());
  dialogs.answers = {Answer::Abort};
  WindowedFile windowed(prompt);
  EXPECT_THROW(windowed("OPEN", name, 10), ProgramEnd);
  EXPECT_EQ(Bytes(file()), Numbered("n", 1)) << "the old lines are whole";
}

TEST_F(WindowedFileTest, GoesOnSilentlyWithoutItsFolder) {
  name = TextOf(folder.path() / "missing" / "trace.txt");
  EXPECT_NO_THROW(Cycle({"new"}, 10));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(WindowedFileTest, IgnoresWhatComesOutOfTurn) {
  WindowedFile windowed(prompt);
  EXPECT_NO_THROW(windowed.Print("lost"));
  EXPECT_NO_THROW(windowed("CLOSE", "", 5));
  EXPECT_NO_THROW(windowed("REWIND", name, 5));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

struct CaseTest : ::testing::Test {
  CaseTest() {
    run.model.ModelTitle = " Sat A ";
    run.model.DatabaseTitle = " v2 ";
    run.plot.PlotTitle = "OrvValis ";
    run.record.CaseText = "my case";
  }
  testing::TemporaryFolder folder;
  Dialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  MemorySettings settings;
  FixedClock clock{CivilTime{2031, 4, 5, 6, 7, 8}};
  RunContext run{prompt, reader, settings, clock, TextOf(folder.path()) + "/"};
};

TEST_F(CaseTest, ComposesTheLine) {
  EXPECT_EQ(ComposeCaseLine(run, " REPORT"), "2031/04/05 06:07:08 OrvValis  my case Model:Sat A Database:v2 REPORT");
  run.plot.MaiOrigine = 3;
  EXPECT_EQ(ComposeCaseLine(run, " REPORT"),
            "2031/04/05 06:07:08 OrvValis  my case Model:Sat A Database:v2 REPORT CHECK case (soft/MAI): 3");
}

TEST_F(CaseTest, ReportsFilesAndDuration) {
  run.record.PlotReportFile = "OrvSat Aplot13 20310405 060708_.xls";
  EXPECT_EQ(ReportText(run, 1.5),
            " OutputFiles: OrvSat\xC2\xA0"
            "Aplot13\xC2\xA0"
            "20310405\xC2\xA0"
            "060708_.xls  ProcessDuration:1.5 ");
  struct Row {
    double seconds;
    const char* text;
  };
  for (const Row& row :
       {Row{0, ". "}, Row{0.0004, ". "}, Row{0.25, ".25 "}, Row{12.3456, "12.346 "}, Row{60, "60. "}}) {
    SCOPED_TRACE(row.seconds);
    EXPECT_TRUE(ReportText(run, row.seconds).ends_with("ProcessDuration:" + std::string(row.text)));
  }
  run.model.directives.SilentMode = 1;
  EXPECT_EQ(ReportText(run, 2), " OutputFiles: NoBecauseSilentMode  ProcessDuration:2. ");
  run.model.directives.SilentMode = 2;
  EXPECT_FALSE(Contains(ReportText(run, 2), "NoBecauseSilentMode"));
}

TEST_F(CaseTest, AsksForTheCaseOnce) {
  run.record.CaseText.clear();
  dialogs.replies = {"first case"};
  AskCaseText(run);
  AskCaseText(run);
  ASSERT_EQ(dialogs.inputs.size(), 1U);
  EXPECT_EQ(dialogs.inputs[0].prompt, "Computation case at 2031/04/05 06:07:08");
  EXPECT_EQ(dialogs.inputs[0].title, "Input string  LAST CHANCE for the TRACEABILITY");
  EXPECT_EQ(dialogs.inputs[0].initial, "Case ....");
  EXPECT_EQ(run.record.CaseText, "first case");
}

TEST_F(CaseTest, AsksAgainAfterACancel) {
  run.record.CaseText.clear();
  dialogs.replies = {"", "second"};
  AskCaseText(run);
  EXPECT_EQ(run.record.CaseText, "");
  AskCaseText(run);
  EXPECT_EQ(run.record.CaseText, "second");
}

TEST_F(CaseTest, PrintsTheLineAtTheHeadOfTheTrace) {
  for (const char* line : {"one", "two"}) {
    run.record.CaseLine = line;
    PrintCaseLine(run);
  }
  EXPECT_EQ(run.record.TraceFile, TextOf(folder.path()) + "/OrvTraceResults.txt");
  EXPECT_EQ(Bytes(folder.path() / "OrvTraceResults.txt"), "two\r\none\r\n");
  EXPECT_FALSE(fs::exists(folder.path() / "OrvTraceResults.txtprevious"));
}

TEST_F(CaseTest, TheTraceHolds15000Lines) {
  folder.Write("OrvTraceResults.txt", Numbered("n", 15000));
  run.record.CaseLine = "new";
  PrintCaseLine(run);
  EXPECT_EQ(Bytes(folder.path() / "OrvTraceResults.txt"), "new\r\n" + Numbered("n", 14999));
}

}  // namespace
}  // namespace orv
