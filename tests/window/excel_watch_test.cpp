#include "window/excel_watch.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <vector>

#include "model/memory_sheet.h"
#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

using Calls = std::vector<std::string>;

// A spreadsheet that fails with the numbers that it is given, one a pass.
class FailingSheet : public MemorySheet {
 public:
  void Attach() override {
    if (!attachFailures.empty()) {
      const int number = attachFailures.front();
      attachFailures.erase(attachFailures.begin());
      Raise(FailureNumber{number}, "failure " + std::to_string(number));
    }
    MemorySheet::Attach();
  }
  std::string SheetName() override {
    if (readFailure != 0) Raise(FailureNumber{readFailure}, "failure " + std::to_string(readFailure));
    return MemorySheet::SheetName();
  }
  std::vector<int> attachFailures;
  int readFailure = 0;
};

class TestClock : public FixedClock {
 public:
  TestClock() : FixedClock({}) {}
  double Seconds() const override { return now; }
  double now = 100;
};

struct TestExcel : ExcelApplication {
  bool Visible() override { return visible; }
  void SetVisible(bool on) override { visible = on; }
  void Quit() override {
    if (quitFails != 0) Raise(FailureNumber{quitFails});
    ++quits;
  }
  bool visible = true;
  int quits = 0;
  int quitFails = 0;
};

struct ExcelWatchTest : ::testing::Test, WatchHost {
  ExcelWatchTest() {
    sheet.Set({1, 1}, "Orvdata model");
    sheet.SetFormula({2, 1}, "=MAX(A2:C60)", "7");
    sheet.SetFormula({3, 1}, "=MAX(A2:C30)", "7");
    sheet.Set({4, 1}, "text");
    sheet.Set({5, 1}, "other text");
    session.LinkReady = 1;
    lists.PlotLoaded = lists.PlotNormalised = 1;
  }

  bool RunCommExcel() override {
    ++runs;
    runByWatch = session.watchRun;
    busyInRun = watch.RunBusy();
    flagsInRun = {lists.PlotLoaded, lists.PlotNormalised};
    firstDrawInRun = lists.FirstDraw;
    calls.push_back("CommExcel");
    return inRun ? inRun() : true;
  }
  void ForgetPlot() override { calls.push_back("ForgetPlot"); }
  void EnableInteractiveMenus(bool enabled) override { calls.push_back(enabled ? "menus on" : "menus off"); }
  bool InteractiveOn() const override { return interactive; }
  void ClearInteractive() override {
    interactive = false;
    calls.push_back("Check1(7) off");
  }
  void LinkChanged() override { states.push_back(watch.State()); }

  // The user goes to a cell of the first column.
  void Go(int row) {
    sheet.MemorySheet::Attach();
    sheet.Activate({row, 1});
  }
  // A watch that has acted on a cell.
  void Settle(int row) {
    Go(row);
    ASSERT_EQ(watch.Pass(), WatchPass::Ran);
    lists.PlotLoaded = lists.PlotNormalised = 1;
    runs = 0;
    calls.clear();
    states.clear();
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  FailingSheet sheet;
  CommExcel::Session session;
  PointLists lists;
  TestClock clock;
  TestExcel excel;
  ExcelWatch watch{sheet, session, lists, prompt, clock, *this};
  ExcelWatch excelWatch{sheet, session, lists, prompt, clock, *this, &excel};

  bool interactive = true;
  std::function<bool()> inRun;
  int runs = 0;
  bool runByWatch = false;
  int busyInRun = 0;
  std::array<int, 2> flagsInRun{};
  double firstDrawInRun = 0;
  Calls calls;
  std::vector<LinkState> states;
};

// Steps of the watch.

TEST_F(ExcelWatchTest, BeginsWithItsStartTexts) {
  EXPECT_EQ(watch.WatchFormula(), "kkkkkkkkkkkkkkkkkkk");
  EXPECT_EQ(watch.WatchCandidate(), "oooooooooooooooooo");
  EXPECT_EQ(watch.State(), LinkState::Idle);
  EXPECT_EQ(watch.StateText(), "");
}

TEST_F(ExcelWatchTest, RunsTheFirstCellAtOnce) {
  Go(4);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(runs, 1);
  EXPECT_TRUE(runByWatch);
  EXPECT_EQ(busyInRun, 1);
  EXPECT_EQ(flagsInRun, (std::array<int, 2>{0, 0})) << "the plot is to be normalised again";
  EXPECT_EQ(watch.RunBusy(), 0);
  EXPECT_FALSE(session.watchRun);
  EXPECT_EQ(watch.WatchArmed(), 0);
  EXPECT_EQ(watch.ExcelSheetName(), "Sheet1");
  EXPECT_EQ(watch.ExcelWindowCaption(), "Model.xlsx");
  EXPECT_EQ(watch.State(), LinkState::Following);
  EXPECT_EQ(watch.StateText(), "Following \"Model.xlsx\\Sheet1\"");
}

TEST_F(ExcelWatchTest, IsInactiveWithoutLinkInARunInAStateOrWithAFile) {
  Go(2);
  const int attaches = sheet.attachCount;
  session.LinkReady = 0;
  EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  session.LinkReady = 1;
  for (const int state : {1, 2}) {
    session.ExcelState = state;
    EXPECT_EQ(watch.Pass(), WatchPass::Inactive) << state;
  }
  session.ExcelState = 0;
  session.FileMode = 1;
  EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  session.FileMode = 0;
  {
    const ExcelWatch::Run run(watch);
    EXPECT_EQ(watch.RunBusy(), 1);
    EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  }
  EXPECT_EQ(watch.RunBusy(), 0);
  watch.ChooseFile();
  EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(sheet.attachCount, attaches) << "nothing was asked of the spreadsheet";
}

TEST_F(ExcelWatchTest, ASpecificationRunsAtOnce) {
  Settle(1);
  Go(2);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.WatchFormula(), "=MAX(A2:C60)");
  Go(3);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.WatchFormula(), "=MAX(A2:C30)");
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  EXPECT_EQ(runs, 2);
}

TEST_F(ExcelWatchTest, TwoEqualFormulasInARowDoNothing) {
  sheet.SetFormula({6, 1}, "=MAX(A2:C60)", "8");
  Settle(2);
  Go(6);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged) << "another cell with the same formula";
  EXPECT_EQ(runs, 0);
}

TEST_F(ExcelWatchTest, AnEditOfTheCellIsAChange) {
  Settle(2);
  sheet.SetFormula({2, 1}, "=MAX(A2:C61)", "7");
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
}

TEST_F(ExcelWatchTest, TheModelsCellRunsAtTheNextPass) {
  Settle(2);
  Go(1);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.WatchArmed(), 1);
  EXPECT_EQ(watch.WatchCandidate(), "Orvdata model");
  EXPECT_EQ(watch.WatchFormula(), "=MAX(A2:C60)");
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.WatchFormula(), "Orvdata model") << "it counts as itself";
  EXPECT_EQ(watch.WatchArmed(), 0);
  EXPECT_EQ(runs, 1);
}

TEST_F(ExcelWatchTest, CellsWithoutASpecificationStandForTheTypedOne) {
  Settle(2);
  Go(4);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran) << "the model: nothing was typed";
  EXPECT_EQ(watch.WatchFormula(), "");
  Go(5);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  EXPECT_EQ(watch.WatchArmed(), 0) << "each way out of the step clears it";
  session.SpecEntered = 1;
  session.SpecText = "=MAX(D2:F9)";
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.WatchFormula(), "=MAX(D2:F9)");
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged) << "the typed one is shown already";
  EXPECT_EQ(runs, 2);
}

TEST_F(ExcelWatchTest, AnEmptyCellAfterTheModelDoesNothing) {
  Settle(4);
  EXPECT_EQ(watch.WatchFormula(), "");
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged) << "the cell itself does not run a second time";
  Go(20);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  EXPECT_EQ(runs, 0);
}

TEST_F(ExcelWatchTest, CellsPassedOverAreLetGoBy) {
  Settle(2);
  Go(4);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  Go(5);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed) << "not the one seen before";
  Go(2);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged) << "back where the plot comes from";
  Go(5);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed) << "seen anew";
  EXPECT_EQ(runs, 0);
}

TEST_F(ExcelWatchTest, ASpecificationWhileArmedRunsAtOnce) {
  Settle(1);
  Go(4);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  Go(2);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.WatchArmed(), 0);
}

TEST_F(ExcelWatchTest, FollowsTheMainKeyword) {
  sheet.SetFormula({6, 1}, "=SUM(A2:C60)", "8");
  session.MainKeyword = "SUM";
  Settle(1);
  Go(2);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed) << "MAX is no keyword now";
  Go(6);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  session.MainKeyword.clear();
  Go(2);
  EXPECT_EQ(watch.Pass(), WatchPass::Armed) << "an empty one marks nothing";
}

TEST_F(ExcelWatchTest, TakesTheKeywordInAnyCase) {
  sheet.Set({6, 1}, "=max(a2:c60) \"PENUP\"");
  Settle(2);
  Go(6);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran) << "at once, as a change between specifications";
}

TEST_F(ExcelWatchTest, ABusySpreadsheetIsThere) {
  EXPECT_TRUE(watch.IsThere());
  sheet.attachFailures = {50290};
  EXPECT_TRUE(watch.IsThere()) << "the second look has it";
  sheet.attachFailures = {50290, 50290};
  EXPECT_TRUE(watch.IsThere()) << "busy all the time";
  sheet.attachFailures = {50290, 429};
  EXPECT_FALSE(watch.IsThere()) << "it took its time to tell that there is none";
  sheet.attachFailures = {429};
  EXPECT_FALSE(watch.IsThere());
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, AnotherSheetOrWindowBeginsAnew) {
  Settle(2);
  sheet.UseSheet("Other");
  sheet.Set({1, 1}, "text");
  EXPECT_EQ(watch.Pass(), WatchPass::Ran) << "a cell without keyword at once";
  EXPECT_EQ(watch.ExcelSheetName(), "Other");
  EXPECT_EQ(watch.Pass(), WatchPass::Armed);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  sheet.windowCaptions = {"Second.xlsx"};
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(watch.ExcelWindowCaption(), "Second.xlsx");
  sheet.windowCaptions = {"Second.xlsx", "Third.xlsx"};
  watch.Pass();
  watch.Pass();
  EXPECT_EQ(runs, 2) << "the first window's caption counts";
  EXPECT_EQ(states, (std::vector<LinkState>{LinkState::Following, LinkState::Following})) << "told at each move";
}

TEST_F(ExcelWatchTest, ARunEndsTheStatesWithoutSpreadsheet) {
  Go(2);
  session.ExcelState = 0;
  inRun = [&] {
    EXPECT_EQ(session.ExcelState, 0);
    return true;
  };
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
}

TEST_F(ExcelWatchTest, NothingRunsInsideAPass) {
  Go(2);
  std::vector<WatchPass> inside;
  inRun = [&] {
    inside = {watch.Tick(), watch.Pass()};
    watch.mnuUpdateExcel();
    return true;
  };
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(inside, (std::vector<WatchPass>{WatchPass::Waiting, WatchPass::Inactive}));
  EXPECT_EQ(runs, 1);
}

// Failures by number.

TEST_F(ExcelWatchTest, AnAbsentSpreadsheetIsSilentAndComesBack) {
  Settle(2);
  sheet.applicationRunning = false;
  sheet.Release();
  EXPECT_EQ(watch.Tick(), WatchPass::Failed);
  EXPECT_EQ(watch.State(), LinkState::Absent);
  EXPECT_FALSE(watch.StateText().empty());
  EXPECT_EQ(lists.PlotLoaded, 1) << "the view stays";
  EXPECT_EQ(session.ExcelState, 0) << "it is looked for again";
  const int attaches = sheet.attachCount;
  for (int tick = 0; tick < 37; ++tick) {
    clock.now += 0.02;
    EXPECT_EQ(watch.Tick(), WatchPass::Waiting);
  }
  EXPECT_EQ(sheet.attachCount, attaches) << "a tick costs nothing";
  clock.now += 0.02;
  EXPECT_EQ(watch.Tick(), WatchPass::Failed);
  sheet.applicationRunning = true;
  Go(3);
  sheet.Release();
  clock.now += 0.8;
  EXPECT_EQ(watch.Tick(), WatchPass::Ran);
  EXPECT_EQ(states, (std::vector<LinkState>{LinkState::Absent, LinkState::Following}));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, ABusySpreadsheetIsAskedLessAndLess) {
  Settle(1);
  Go(2);
  std::vector<double> pauses;
  double asked = clock.now;
  sheet.busyOperations = 6;
  int passes = 0;
  for (int tick = 0; tick < 500 && passes < 7; ++tick, clock.now += 0.0078125) {
    const WatchPass pass = watch.Tick();
    if (pass == WatchPass::Waiting) continue;
    ++passes;
    pauses.push_back(clock.now - asked);
    asked = clock.now;
    EXPECT_EQ(pass, passes < 7 ? WatchPass::Failed : WatchPass::Ran);
    EXPECT_EQ(watch.State(), passes < 7 ? LinkState::Busy : LinkState::Following);
  }
  EXPECT_EQ(pauses, (std::vector<double>{0, 0.125, 0.25, 0.5, 1, 1, 1})) << "doubling up to a second";
  EXPECT_TRUE(dialogs.boxes.empty());
  sheet.busyOperations = 1;
  EXPECT_EQ(watch.Pass(), WatchPass::Failed);
  clock.now += 0.125;
  EXPECT_EQ(watch.Tick(), WatchPass::Unchanged) << "the pauses begin anew";
}

TEST_F(ExcelWatchTest, QuietNumbersEndTheAttempt) {
  Settle(1);
  Go(2);
  const std::map<int, LinkState> expected = {{424, LinkState::Absent},       {-2147417848, LinkState::Absent},
                                             {-2147418111, LinkState::Busy}, {-2147023170, LinkState::Absent},
                                             {50290, LinkState::Busy},       {429, LinkState::Absent}};
  for (const auto& [number, state] : expected) {
    SCOPED_TRACE(number);
    for (const bool inAttach : {true, false}) {
      if (inAttach) {
        sheet.attachFailures = {number};
      } else {
        sheet.readFailure = number;
      }
      const int attaches = sheet.attachCount;
      EXPECT_EQ(watch.Pass(), WatchPass::Failed);
      EXPECT_EQ(watch.State(), state);
      EXPECT_LE(sheet.attachCount, attaches + 1) << "no repeat";
      sheet.readFailure = 0;
    }
    clock.now += 0.7;
    EXPECT_EQ(watch.Tick() == WatchPass::Waiting, state == LinkState::Absent);
    watch.Rearm();
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, AutomationFailuresAreRepeatedTwice) {
  Settle(1);
  for (const int number : {440, 432, 430, -2147221021}) {
    SCOPED_TRACE(number);
    sheet.attachFailures = {number, number};
    EXPECT_EQ(watch.Pass(), WatchPass::Unchanged) << "the third attempt succeeds";
    sheet.attachFailures = {number, number, number, number};
    EXPECT_EQ(watch.Pass(), WatchPass::Failed);
    EXPECT_EQ(watch.State(), LinkState::Absent);
    EXPECT_EQ(sheet.attachFailures.size(), 1u);
    sheet.attachFailures.clear();
    EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, WithoutAWorkbookCalcIsLeftAlone) {
  Settle(1);
  sheet.windowCaptions.clear();
  EXPECT_EQ(watch.Pass(), WatchPass::Failed);
  EXPECT_EQ(watch.State(), LinkState::NoWorkbook);
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(watch.ExcelWatchBusy(), 0);
}

TEST_F(ExcelWatchTest, AnExcelThatHangsUnseenIsShownFirst) {
  sheet.readFailure = 91;
  excel.visible = false;
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  EXPECT_TRUE(excel.visible);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, AnExcelThatDoesNotAnswerIsQuitOnOk) {
  sheet.readFailure = 91;
  dialogs.answers = {Answer::Ok};
  inRun = [&] {
    EXPECT_EQ(excelWatch.ExcelWatchBusy(), 1) << "the timer stops while the box is up";
    EXPECT_EQ(excelWatch.RunBusy(), 1);
    return true;
  };
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  ASSERT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(dialogs.boxes[0].text, "The Excel Worksheet do not answer. Do you want to quit Excel (recommended) ?");
  EXPECT_EQ(dialogs.boxes[0].title, "Excel Still running in the memory");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::OkCancel);
  EXPECT_EQ(excel.quits, 1);
  EXPECT_EQ(runs, 1);
  EXPECT_FALSE(runByWatch) << "the reading may ask for a spreadsheet";
  EXPECT_EQ(flagsInRun, (std::array<int, 2>{0, 0}));
  EXPECT_EQ(excelWatch.ExcelWatchBusy(), 0);
}

TEST_F(ExcelWatchTest, OtherAnswersAboutExcelHelpOrAbort) {
  sheet.readFailure = 91;
  dialogs.answers = {Answer::Cancel};
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  ASSERT_EQ(dialogs.boxes.size(), 2u);
  EXPECT_EQ(dialogs.boxes[1].text,
            "Close Excel or use  the keys \"Control+Alt+Supp\" and in the task window, terminate the process Excel");
  EXPECT_EQ(dialogs.boxes[1].title, "Help");
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  EXPECT_EQ(dialogs.boxes.size(), 2u) << "told once until Excel answers again";
  EXPECT_EQ(excel.quits, 0);

  sheet.readFailure = 0;
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Ran);
  sheet.readFailure = 91;
  dialogs.answers = {Answer::None, Answer::Abort};
  EXPECT_THROW(excelWatch.Pass(), ProgramEnd);
  EXPECT_EQ(dialogs.boxes.back().text, "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_EQ(excelWatch.ExcelWatchBusy(), 0);
}

TEST_F(ExcelWatchTest, FailuresOfTheExcelBoxItself) {
  sheet.readFailure = 91;
  dialogs.answers = {Answer::Ok};
  excel.quitFails = 429;
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  EXPECT_EQ(dialogs.boxes.size(), 1u) << "it has gone by itself";
  sheet.readFailure = 0;
  excelWatch.Pass();
  sheet.readFailure = 91;
  dialogs.answers = {Answer::Ok};
  excel.quitFails = 1004;
  EXPECT_EQ(excelWatch.Pass(), WatchPass::Failed);
  EXPECT_EQ(dialogs.Count("Application-defined"), 1);
}

TEST_F(ExcelWatchTest, MissingFilesAreGoneOver) {
  Settle(1);
  for (const int number : {52, 53}) {
    SCOPED_TRACE(number);
    sheet.readFailure = number;
    EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
    sheet.readFailure = 0;
    Go(number == 52 ? 2 : 3);
    inRun = [&]() -> bool { Raise(FailureNumber{number}); };
    EXPECT_EQ(watch.Pass(), WatchPass::Ran) << "the step goes on behind the run";
    EXPECT_NE(watch.WatchFormula(), "Orvdata model");
    EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, OtherFailuresAreTold) {
  Settle(1);
  for (const int number : {5, 6, 9, 13, 448, 1004}) {
    SCOPED_TRACE(number);
    dialogs.boxes.clear();
    sheet.readFailure = number;
    EXPECT_EQ(watch.Pass(), WatchPass::Failed);
    ASSERT_EQ(dialogs.boxes.size(), 2u);
    EXPECT_EQ(dialogs.boxes[0].text, "failure " + std::to_string(number));
    EXPECT_EQ(dialogs.boxes[0].title, "Error W D");
    EXPECT_EQ(dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
    EXPECT_EQ(watch.State(), LinkState::Faulty);
    EXPECT_EQ(watch.Pass(), WatchPass::Failed);
    EXPECT_EQ(dialogs.boxes.size(), 2u) << "not at each tick";
    sheet.readFailure = 0;
    EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  }
  sheet.readFailure = 13;
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(watch.Pass(), ProgramEnd);
  EXPECT_EQ(watch.ExcelWatchBusy(), 0);
}

TEST_F(ExcelWatchTest, ARunThatFailsIsNotRepeated) {
  Settle(1);
  Go(2);
  inRun = []() -> bool { Raise(FailureNumber::TypeMismatch); };
  EXPECT_EQ(watch.Pass(), WatchPass::Failed);
  EXPECT_EQ(dialogs.Count("Type mismatch"), 1);
  EXPECT_EQ(watch.RunBusy(), 0);
  EXPECT_FALSE(session.watchRun);
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  EXPECT_EQ(runs, 1);
}

TEST_F(ExcelWatchTest, ARunThatLostTheSpreadsheetIsRepeated) {
  Settle(1);
  Go(2);
  inRun = [] { return false; };
  EXPECT_EQ(watch.Pass(), WatchPass::Failed);
  EXPECT_EQ(watch.State(), LinkState::Busy);
  EXPECT_EQ(lists.PlotLoaded, 1) << "the view stays";
  EXPECT_EQ(lists.PlotNormalised, 1);
  inRun = []() -> bool { Raise(FailureNumber::CannotCreateObject); };
  EXPECT_EQ(watch.Pass(), WatchPass::Failed);
  EXPECT_EQ(watch.State(), LinkState::Absent);
  EXPECT_EQ(lists.PlotLoaded, 1);
  inRun = nullptr;
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
  EXPECT_EQ(lists.PlotLoaded, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ExcelWatchTest, AnAbortAnswerInTheRunLeavesNoMark) {
  Settle(1);
  Go(2);
  inRun = []() -> bool { throw ProgramEnd{}; };
  EXPECT_THROW(watch.Pass(), ProgramEnd);
  EXPECT_EQ(watch.RunBusy(), 0);
  EXPECT_FALSE(session.watchRun);
  inRun = nullptr;
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
}

// mnuUpdateExcel.

TEST_F(ExcelWatchTest, TheMenuForgetsWhatWasChosenAndRuns) {
  Settle(2);
  session.SourceMode = session.ExcelState = 2;
  session.FileMode = session.SpecEntered = 1;
  session.SpecText = "=MAX(A1:C2)";
  session.attachFailures = 1;
  watch.ChooseFile();
  lists.VectorCount = 7;
  lists.rotation.present = true;
  lists.rotation.main.start = 12;
  watch.mnuUpdateExcel();
  EXPECT_EQ(calls, (Calls{"ForgetPlot", "menus off", "Check1(7) off", "CommExcel"}));
  EXPECT_FALSE(runByWatch) << "who asked for it is told when there is nothing to plot";
  EXPECT_EQ(firstDrawInRun, 1);
  EXPECT_EQ(lists.FirstDraw, 0);
  EXPECT_EQ(lists.VectorCount, 0);
  EXPECT_FALSE(lists.rotation.present) << "the turn of the plot before ends";
  EXPECT_EQ(lists.rotation.main.start, 0);
  EXPECT_EQ(session.SourceMode, 0);
  EXPECT_EQ(session.ExcelState, 0);
  EXPECT_EQ(session.FileMode, 0);
  EXPECT_EQ(session.SpecEntered, 0);
  EXPECT_EQ(session.SpecText, "");
  EXPECT_EQ(session.attachFailures, 0);
  EXPECT_FALSE(watch.FileChosen());
  EXPECT_EQ(watch.WatchFormula(), "=MAX(A2:C60)");
  calls.clear();
  watch.mnuUpdateExcel();
  EXPECT_EQ(calls, (Calls{"ForgetPlot", "menus off", "CommExcel"})) << "interactivity was off by then";
}

TEST_F(ExcelWatchTest, TheMenuRunsItselfUntilALinkWasThere) {
  session.LinkReady = 0;
  Go(4);
  inRun = [&] {
    session.LinkReady = 1;
    return true;
  };
  watch.mnuUpdateExcel();
  EXPECT_EQ(runs, 1);
  EXPECT_FALSE(runByWatch);
  EXPECT_EQ(busyInRun, 1);
  EXPECT_EQ(watch.WatchArmed(), 0) << "the cell was acted on";
  EXPECT_EQ(watch.State(), LinkState::Following);
  watch.Pass();
  watch.Pass();
  EXPECT_EQ(runs, 1) << "the watch does not run the same once more";
}

TEST_F(ExcelWatchTest, TheMenuAsksForASpreadsheetThatWentAway) {
  Settle(1);
  sheet.applicationRunning = false;
  watch.mnuUpdateExcel();
  EXPECT_EQ(runs, 1);
  EXPECT_FALSE(runByWatch);
  EXPECT_FALSE(watch.Wanted());
}

TEST_F(ExcelWatchTest, TheMenuWaitsForABusySpreadsheet) {
  Settle(1);
  Go(2);
  interactive = false;
  sheet.busyOperations = 1;
  watch.mnuUpdateExcel();
  EXPECT_EQ(runs, 0);
  EXPECT_TRUE(watch.Wanted());
  clock.now += 0.2;
  EXPECT_EQ(watch.Tick(), WatchPass::Ran);
  EXPECT_TRUE(runByWatch);
  EXPECT_FALSE(watch.Wanted());

  sheet.busyOperations = 1;
  watch.mnuUpdateExcel();
  EXPECT_TRUE(watch.Wanted());
  sheet.applicationRunning = false;
  clock.now += 0.2;
  EXPECT_EQ(watch.Tick(), WatchPass::Failed);
  EXPECT_FALSE(watch.Wanted()) << "nobody waits for one that went away";
}

// Interactivity.

TEST_F(ExcelWatchTest, InteractivityTakesTheRunningSpreadsheet) {
  session.LinkReady = 0;
  Go(2);
  watch.ChooseFile();
  session.SourceMode = session.ExcelState = 2;
  watch.InteractiveChanged(true);
  EXPECT_EQ(calls, Calls{"menus on"});
  EXPECT_EQ(session.SourceMode, 0);
  EXPECT_FALSE(watch.FileChosen());
  EXPECT_TRUE(watch.Wanted());
  sheet.applicationRunning = false;
  EXPECT_EQ(watch.Tick(), WatchPass::Failed);
  EXPECT_TRUE(watch.Wanted()) << "it is awaited";
  sheet.applicationRunning = true;
  clock.now += 1;
  EXPECT_EQ(watch.Tick(), WatchPass::Ran) << "without a reading before";
  EXPECT_TRUE(runByWatch);
  EXPECT_FALSE(watch.Wanted());
  watch.InteractiveChanged(false);
  EXPECT_EQ(calls.back(), "menus on");
}

TEST_F(ExcelWatchTest, InteractivityOnAPlotOfTheSpreadsheetChangesNothing) {
  Settle(2);
  watch.InteractiveChanged(true);
  EXPECT_FALSE(watch.Wanted());
  EXPECT_EQ(watch.Pass(), WatchPass::Unchanged);
  EXPECT_EQ(runs, 0);
}

TEST_F(ExcelWatchTest, SampleAndFileReplaceEachOther) {
  Settle(2);
  watch.ChooseDemo();
  EXPECT_EQ(session.SourceMode, 1);
  EXPECT_EQ(session.ExcelState, 1);
  Go(3);
  EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  watch.ChooseFile();
  EXPECT_EQ(session.SourceMode, 0);
  EXPECT_EQ(session.ExcelState, 0);
  EXPECT_TRUE(watch.FileChosen());
  EXPECT_EQ(watch.Pass(), WatchPass::Inactive);
  watch.ChooseDemo();
  EXPECT_FALSE(watch.FileChosen());
  watch.InteractiveChanged(true);
  EXPECT_EQ(session.SourceMode, 0);
  EXPECT_EQ(watch.Pass(), WatchPass::Ran);
}

TEST_F(ExcelWatchTest, StatesAreTold) {
  session.ExcelState = 1;
  EXPECT_TRUE(Contains(watch.StateText(), "sample plot"));
  session.ExcelState = 2;
  EXPECT_TRUE(Contains(watch.StateText(), "last plot"));
}

TEST_F(ExcelWatchTest, AnswersQuietly) {
  EXPECT_TRUE(watch.Answers());
  sheet.applicationRunning = false;
  sheet.Release();
  EXPECT_FALSE(watch.Answers());
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST(SourceOfRun, RunningSpreadsheetThenWorkbookThenPlotFileThenDemo) {
  CommExcel::Session session;
  const ChosenFile none;
  const ChosenFile workbook{true, true};
  const ChosenFile plot{true, false};
  EXPECT_EQ(SourceOfRun(session, workbook, false, true), RunSource::Spreadsheet);
  EXPECT_EQ(SourceOfRun(session, workbook, false, false), RunSource::Workbook);
  EXPECT_EQ(SourceOfRun(session, plot, false, false), RunSource::PlotFile);
  EXPECT_EQ(SourceOfRun(session, none, false, false), RunSource::Spreadsheet) << "whose reading asks";
  EXPECT_EQ(SourceOfRun(session, workbook, true, true), RunSource::Workbook) << "just chosen";
  EXPECT_EQ(SourceOfRun(session, plot, true, true), RunSource::PlotFile);
  session.SourceMode = 1;
  EXPECT_EQ(SourceOfRun(session, workbook, true, true), RunSource::Demo);
  session.SourceMode = 2;
  EXPECT_EQ(SourceOfRun(session, none, false, true), RunSource::PlotFile);
  EXPECT_EQ(SourceOfRun(session, workbook, true, true), RunSource::Workbook);
  session.SourceMode = 0;
  session.FileMode = 1;
  EXPECT_EQ(SourceOfRun(session, workbook, false, true), RunSource::PlotFile);
}

TEST(Check1, AMarkThatDoesNotFollowIsTold) {
  testing::ScriptedDialogs dialogs;
  EXPECT_TRUE(Check1_Click(true, true, dialogs));
  EXPECT_TRUE(Check1_Click(false, false, dialogs));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(Check1_Click(true, false, dialogs));
  EXPECT_FALSE(Check1_Click(false, true, dialogs));
  ASSERT_EQ(dialogs.boxes.size(), 2u);
  EXPECT_EQ(dialogs.boxes[0].text, "error Sub Check1_Click Check1(7) = 1 Then mnuOinteractive.Checked = True ");
}

}  // namespace
}  // namespace orv
