#include "window/replot.h"

#include <gmock/gmock.h>
#include <utility>

#include "analysis/run_driver.h"
#include "analysis/run_fixture.h"
#include "view/turn_playback.h"
#include "window/window_fixture.h"

namespace orv::testing {
namespace {

const char* const kModelText = "Model: \"title\" Click here to re-Plot";
const char* const kRotationText =
    "autorotation NOT performed. To compute autorotation please use UpdateExcel and select plot 19 or plot>=90";
constexpr ClickKeys kPlain{};
constexpr ClickKeys kRight{.right = true};
constexpr ClickKeys kShift{.shift = true};
constexpr ClickKeys kCtrl{.ctrl = true};
constexpr ClickKeys kAlt{.alt = true};

class StatusBar : public WindowFixture {
 protected:
  // A finished run, and the memorised plots in the selection.
  void Memorise(const std::vector<int>& plots, double computed, int rotating = 0) {
    FinishRun(computed, rotating);
    form.Open("", run, {});
    for (const int plot : plots) ChooseNumber(plot);
  }
  // One whole click that re-plots; returns the plot, 0 when the selection was shown or nothing happened.
  double Walked(const ClickKeys& keys = kPlain) {
    PassFirstClick();
    const ReplotAction action = replot.Click(keys);
    if (action != ReplotAction::Replot) {
      replot.Ended(false);
      return 0;
    }
    const double plot = run.plot.IndexPlotRequest;
    run.plot.IndexPlot = plot;
    replot.Ended(true);
    replot.Release();
    return plot;
  }
  // The first click opens the selection, which is cancelled.
  void PassFirstClick() {
    if (std::exchange(passed_, true)) return;
    EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection);
    form.Cancel();
    EXPECT_EQ(replot.TakeSelection(), ReplotAction::None);
  }
  // A choice in the selection that a right click opened.
  ReplotAction Choose(int plot) {
    EXPECT_EQ(replot.Click(kRight), ReplotAction::ShowSelection);
    replot.OpenSelection();
    ChooseNumber(plot);
    EXPECT_TRUE(form.GoPlot(main));
    chosenPanel = main.panel;
    return replot.TakeSelection();
  }

  std::string chosenPanel;  // the panel as the selection left it

 private:
  bool passed_ = false;
};

// --- which click does what
// ---------------------------------------------------------------------------------------------

TEST_F(StatusBar, BeforeAFinishedRunAnyClickIsAFullRun) {
  for (const ClickKeys& keys : {kPlain, kRight, kShift, kCtrl, kAlt}) {
    run.plot.IndexPlotRequest = 9;
    EXPECT_EQ(replot.Click(keys), ReplotAction::FullRun);
    EXPECT_EQ(run.plot.IndexPlotRequest, 0);
    EXPECT_EQ(main.statusTag, "busy");
    replot.Ended(false);
    EXPECT_EQ(main.panel, "Re-Plots");
    EXPECT_EQ(view.SidesMode, 1);
  }
}

TEST_F(StatusBar, CtrlStepsTheSidesOfOutlinesFromRanges) {
  run.lists.PenUpMode = 1;
  EXPECT_EQ(replot.Click(kCtrl), ReplotAction::None);
  EXPECT_EQ(view.SidesMode, 2);
  EXPECT_EQ(main.panel, "RECTO side");
  EXPECT_EQ(main.statusTag, "");
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::FullRun) << "any other click reads the ranges anew";
}

TEST_F(StatusBar, RightShiftAndTheFirstClickShowTheSelection) {
  FinishRun(13);
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection) << "the selection was never open";
  replot.Ended(false);
  form.Open("", run, {});
  ChooseNumber(9);
  for (const ClickKeys& keys : {kRight, kShift}) {
    EXPECT_EQ(replot.Click(keys), ReplotAction::ShowSelection);
    replot.Ended(false);
  }
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
}

TEST_F(StatusBar, TheFirstClickBehindARunShowsTheSelection) {
  Memorise({9, 13}, 13);  // the run itself has asked for its plot
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection);
  replot.Ended(false);
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
  replot.Ended(true);
  replot.PrepareUpdate();
  form.Open("", run, {});
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection) << "another run, another first click";
  replot.Ended(false);
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
}

TEST_F(StatusBar, EightEmptyButtonsShowTheSelection) {
  Memorise({}, 13);
  PassFirstClick();
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection);
  EXPECT_EQ(main.statusTag, "busy");
}

TEST_F(StatusBar, TheBusyMarkKeepsClicksOutUntilTheRelease) {
  FinishRun(13);
  EXPECT_EQ(replot.Click(kAlt), ReplotAction::None);
  EXPECT_EQ(main.statusTag, "busy") << "the mark alone";
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::None);
  EXPECT_EQ(replot.Click(kCtrl), ReplotAction::None);
  EXPECT_EQ(view.SidesMode, 1) << "a busy bar does not step the sides";
  replot.Release();
  EXPECT_EQ(main.statusTag, "");
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection);
}

TEST_F(StatusBar, TheMarkStaysWhileARunIsUnderWay) {
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::FullRun);
  replot.Release();
  EXPECT_TRUE(replot.Busy());
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::None);
  EXPECT_FALSE(replot.Begin());
  replot.Ended(false);
  EXPECT_FALSE(replot.Busy());
  EXPECT_TRUE(replot.Begin());
  EXPECT_EQ(replot.Click(kRight), ReplotAction::None) << "nor during a pass of the watch";
  replot.Ended(false);
}

TEST_F(StatusBar, CtrlStepsTheSidesAndNamesThem) {
  FinishRun(13);
  const char* const names[] = {"RECTO side", "VERSO side", "Recto&Verso sides", "Recto&Verso dots", "R&V dots&borders"};
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(replot.Click(kCtrl), ReplotAction::None);
    EXPECT_EQ(view.SidesMode, (k + 2) % 5);
    EXPECT_EQ(main.panelTip, names[k]);
    EXPECT_EQ(main.panel, names[k]);
    EXPECT_EQ(main.statusTag, "") << "the tag stays empty";
  }
  EXPECT_EQ(SidesModeName(-1), "");
  EXPECT_EQ(SidesModeName(5), "");
}

// --- the walk
// ----------------------------------------------------------------------------------------------------------

TEST_F(StatusBar, WalksTheMemorisedPlotsInTurn) {
  Memorise({9, 13, 22}, 13);
  EXPECT_EQ(Walked(), 22) << "behind the plot shown";
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(Walked(), 13);
  EXPECT_EQ(Walked(), 22);
}

TEST_F(StatusBar, StartsWithTheFirstPlotWhenThePlotShownHasNoButton) {
  Memorise({9, 22}, 13);
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(Walked(), 22);
}

TEST_F(StatusBar, OneMemorisedPlotIsShownAgain) {
  Memorise({13}, 13);
  EXPECT_EQ(Walked(), 13);
}

TEST_F(StatusBar, PassesOverGapsAndEqualButtons) {
  settings.Write("UseOrv", "PlotsUsed1", "9 a");
  settings.Write("UseOrv", "PlotsUsed4", "9 a");
  settings.Write("UseOrv", "PlotsUsed6", "22 b");
  Memorise({}, 9);
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(Walked(), 22);
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(Walked(), 22) << "two equal buttons do not hold the walk";
}

TEST_F(StatusBar, PassesOverPlotsThatWereNotComputed) {
  struct Row {
    double computed;
    std::vector<double> walked;
  };
  for (const Row& row : {Row{13, {9, 13, 9}}, Row{90, {13, 92, 9}}, Row{96, {13, 92, 97}}, Row{94, {13, 92, 9}}}) {
    SCOPED_TRACE(row.computed);
    settings.Write("UseOrv", "PlotsUsed0", "9 a");
    settings.Write("UseOrv", "PlotsUsed1", "13 b");
    settings.Write("UseOrv", "PlotsUsed2", "92 c");
    settings.Write("UseOrv", "PlotsUsed3", "97 d");
    Memorise({}, row.computed);
    run.plot.IndexPlot = row.computed == 13 ? 13 : 9;
    for (const double plot : row.walked) EXPECT_EQ(Walked(), plot);
  }
}

TEST_F(StatusBar, TellsOfASkippedPlotAndEndsWithTheModel) {
  settings.Write("UseOrv", "PlotsUsed0", "92 c");
  settings.Write("UseOrv", "PlotsUsed1", "9 a");
  Memorise({}, 13);
  PassFirstClick();
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
  EXPECT_EQ(main.panel, "NO DATA for this plot, process not performed");
  replot.Ended(true);
  EXPECT_EQ(main.panel, kModelText);
}

TEST_F(StatusBar, ShowsTheSelectionWhenNoneCanBeTaken) {
  settings.Write("UseOrv", "PlotsUsed0", "92 c");
  settings.Write("UseOrv", "PlotsUsed1", "99 d");
  Memorise({}, 13);
  PassFirstClick();
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection);
  EXPECT_EQ(main.panel, "NO DATA for this plot, process not performed");
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
}

TEST(Computed, FollowsTheProcessesOfTheRun) {
  EXPECT_TRUE(IsComputed(89, 13));
  EXPECT_FALSE(IsComputed(90, 89));
  EXPECT_TRUE(IsComputed(94, 90));
  EXPECT_FALSE(IsComputed(95, 94));
  EXPECT_TRUE(IsComputed(104, 95));
  EXPECT_TRUE(IsComputed(19, 13)) << "shown without its turn";
}

// --- the plot taken
// ----------------------------------------------------------------------------------------------------

TEST_F(StatusBar, ATakenPlotSetsTheSides) {
  Memorise({9, 92}, 92);
  PassFirstClick();
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
  EXPECT_EQ(run.plot.IndexPlotRequest, 9);
  EXPECT_EQ(view.SidesMode, 2);
  EXPECT_EQ(main.panelTip, "RECTO side");
  run.plot.IndexPlot = 9;
  replot.Ended(true);
  EXPECT_EQ(main.panelTip, kModelText);
  EXPECT_EQ(main.panel, kModelText);
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::Replot);
  EXPECT_EQ(view.SidesMode, 1);
  EXPECT_EQ(main.panelTip, "R&V dots&borders");
}

TEST_F(StatusBar, RectoOfTheSelectionStaysWhileItsPlotIsMade) {
  Memorise({}, 92);
  EXPECT_EQ(Choose(92), ReplotAction::Replot);
  EXPECT_EQ(view.SidesMode, 1);
  EXPECT_EQ(main.panelTip, "RECTO");
  replot.Ended(true);
  EXPECT_EQ(main.panelTip, kModelText);
  EXPECT_EQ(Choose(9), ReplotAction::Replot);
  EXPECT_EQ(view.SidesMode, 2);
  EXPECT_EQ(main.panelTip, "RECTO side");
}

TEST_F(StatusBar, AChosenPlotTakesItsOptionsAlong) {
  Memorise({13}, 13);
  EXPECT_EQ(replot.Click(kShift), ReplotAction::ShowSelection);
  replot.OpenSelection();
  EXPECT_EQ(form.Title(), "Selection To Plot Model: ");
  form.ChangeCheck1(true);
  form.ChangeDirectives("G");
  ChooseNumber(9);
  ASSERT_TRUE(form.GoPlot(main));
  EXPECT_EQ(replot.TakeSelection(), ReplotAction::Replot);
  EXPECT_EQ(run.plot.IndexPlotRequest, 9);
  EXPECT_EQ(run.plot.LogScale, 1);
  EXPECT_EQ(run.plot.PlotOptionText, "G");
}

TEST_F(StatusBar, ACancelledSelectionLeavesAllAsItWas) {
  Memorise({13}, 13);
  run.plot.LogScale = 2;
  EXPECT_EQ(replot.Click(kRight), ReplotAction::ShowSelection);
  replot.OpenSelection();
  ChooseNumber(9);
  form.Cancel();
  EXPECT_EQ(replot.TakeSelection(), ReplotAction::None);
  EXPECT_FALSE(replot.Busy());
  EXPECT_EQ(run.plot.LogScale, 2);
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
  EXPECT_EQ(view.SidesMode, 1);
}

TEST_F(StatusBar, AnExplicitChoiceGetsTheMessageAndIsShown) {
  struct Row {
    double computed;
    int rotating;
    int plot;
    const char* chosen;   // as the selection words it
    const char* message;  // as the window does
  };
  const char* const redeposition = "NO DATA: redeposition process not performed";
  const char* const cleaning = "NO DATA: Cleaning process not performed";
  for (const Row& row : {Row{13, 0, 91, "NO DATA: redeposition process not performed ", redeposition},
                         Row{92, 0, 96, "NO DATA: cleaning process not performed ", cleaning},
                         Row{13, 0, 96, "NO DATA: cleaning process not performed ", cleaning},
                         Row{13, 3, 19, kRotationText, kRotationText}, Row{19, 3, 19, nullptr, nullptr},
                         Row{96, 3, 101, nullptr, nullptr}, Row{13, 0, 19, nullptr, nullptr}}) {
    SCOPED_TRACE(std::to_string(row.computed) + " then " + std::to_string(row.plot));
    settings = WatchedSettings();
    Memorise({}, row.computed, row.rotating);
    main.panel = "before";
    EXPECT_EQ(Choose(row.plot), ReplotAction::Replot);
    EXPECT_EQ(chosenPanel, row.chosen == nullptr ? "before" : row.chosen);
    EXPECT_EQ(run.plot.IndexPlotRequest, row.plot);
    EXPECT_EQ(main.panel, row.message == nullptr ? "before" : row.message);
    run.plot.IndexPlot = row.plot;
    replot.Ended(true);
    EXPECT_EQ(main.panel, row.message == nullptr ? kModelText : row.message) << "it stays to be read";
    EXPECT_EQ(main.panelTip, kModelText);
    EXPECT_EQ(replot.Click(kRight), ReplotAction::ShowSelection);
    replot.OpenSelection();
    form.Cancel();
    EXPECT_EQ(replot.TakeSelection(), ReplotAction::None);
  }
}

TEST_F(StatusBar, Command8IsForRotationPlots) {
  struct Row {
    double computed;
    int rotating;
    double shown;
    bool enabled;
  };
  for (const Row& row : {Row{19, 2, 19, true}, Row{19, 0, 19, false}, Row{19, 2, 13, false}, Row{90, 2, 19, true},
                         Row{90, 2, 93, true}, Row{22, 2, 22, true}, Row{22, 2, 70, true}, Row{22, 2, 19, false},
                         Row{13, 2, 13, false}, Row{13, 2, 19, false}}) {
    SCOPED_TRACE(std::to_string(row.computed) + " shows " + std::to_string(row.shown));
    FinishRun(row.computed, row.rotating);
    run.plot.IndexPlot = row.shown;
    view.AutoRotMode = kTurnWithData;
    main.command8Tip = "Rotation with variable data";
    replot.Ended(true);
    EXPECT_EQ(main.command8Enabled, row.enabled);
    EXPECT_EQ(view.AutoRotMode, kMeanData);
    EXPECT_EQ(main.command8Tip, "Mean data only");
  }
}

TEST_F(StatusBar, ACancelledRunLeavesTheTurnAlone) {
  FinishRun(19, 2);
  replot.Ended(true);
  controls.ClickCommand8();
  EXPECT_TRUE(replot.Begin());
  replot.Ended(false);
  EXPECT_EQ(view.AutoRotMode, kVariableData);
  EXPECT_TRUE(main.command8Enabled);
  EXPECT_EQ(main.panel, kModelText);
}

TEST_F(StatusBar, AgainRepeatsTheLastPlot) {
  EXPECT_EQ(replot.Again(), ReplotAction::None) << "there is none yet";
  FinishRun(13);
  run.plot.IndexPlot = 9;
  EXPECT_EQ(replot.Again(), ReplotAction::Replot);
  EXPECT_EQ(run.plot.IndexPlotRequest, 9);
  EXPECT_EQ(replot.Again(), ReplotAction::None) << "it is under way";
  replot.Ended(true);
  EXPECT_EQ(main.panel, kModelText);
  run.plot.IndexPlot = 92;
  EXPECT_EQ(replot.Again(), ReplotAction::Replot);
  EXPECT_EQ(main.panel, "NO DATA: redeposition process not performed");
}

TEST_F(StatusBar, AFullRunThatShowsAModelStartsAnew) {
  Memorise({9, 13}, 13);
  EXPECT_EQ(Walked(), 9);
  EXPECT_EQ(view.SidesMode, 2);
  replot.StartAnew();
  EXPECT_EQ(view.SidesMode, 1);
  EXPECT_EQ(main.panelTip, "R&V dots&borders");
  EXPECT_EQ(replot.Click(kPlain), ReplotAction::ShowSelection) << "its first click";
}

TEST_F(StatusBar, AnUpdateForgetsWhatWasBefore) {
  Memorise({9, 13}, 13);
  ShowPlot();
  run.lists.VectorCount = 6;
  controls.ClickCommand7(kCtrl);
  EXPECT_EQ(main.command7Caption, "CheckPLOTvectorsNb");
  view.SidesMode = 3;
  run.plot.IndexPlotRequest = 9;
  replot.PrepareUpdate();
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(run.lists.VectorsShown);
  EXPECT_EQ(main.command7Caption, "color scale");
  EXPECT_EQ(view.SidesMode, 1);
  EXPECT_EQ(main.panelTip, "R&V dots&borders");
  EXPECT_EQ(main.panel, "R&V dots&borders");
}

// --- with a run
// --------------------------------------------------------------------------------------------------------

// The selection as the run asks for it: the user takes a number and goes.
class FormSelection : public PlotSelection {
 public:
  FormSelection(ToPlotForm& form, MainState& main) : form_(form), main_(main) {}
  PlotChoice Select(const std::string& caption, const RunContext& run) override {
    form_.Open(caption, run, {});
    for (std::size_t k = 0; k < form_.Items().size(); ++k) {
      if (form_.Items()[k].number == number) form_.ChooseItem(static_cast<int>(k));
    }
    form_.ChangeCheck1(true);
    if (number == 0 || !form_.GoPlot(main_)) form_.Cancel();
    return form_.Choice();
  }
  int number = 13;

 private:
  ToPlotForm& form_;
  MainState& main_;
};

class WholeRun : public RunFixture {
 protected:
  ViewState view;
  RecordingControl control{64, 48, 1, [](const std::string&, bool, bool) { return std::optional<FontFile>(); }};
  ClassGl scene{control, run.lists, view, prompt, clock};
  MainState main;
  PlotControls controls{scene, main};
  ToPlotForm form{settings, prompt};
  orv::Replot bar{run, view, form, controls, main};
  FormSelection chooser{form, main};
};

TEST_F(WholeRun, IsChosenRunAndReplottedFromTheStatusBar) {
  Load();
  ASSERT_EQ(bar.Click(kPlain), ReplotAction::FullRun);
  EXPECT_TRUE(a_SpaceApplication(run, chooser, phases));
  bar.Ended(true);
  EXPECT_EQ(run.plot.IndexPlot, 13);
  EXPECT_EQ(run.plot.LogScale, 1);
  EXPECT_EQ(main.panel, run.record.PlotButtonTip);
  EXPECT_TRUE(form.Title().starts_with("Selection To Plot Model: "));
  EXPECT_EQ(settings.Read("UseOrv", "PlotsUsedLastSelected", ""), "13");

  ASSERT_EQ(bar.Click(kRight), ReplotAction::ShowSelection);
  bar.OpenSelection();
  for (std::size_t k = 0; k < form.Items().size(); ++k) {
    if (form.Items()[k].number == 9) form.ChooseItem(static_cast<int>(k));
  }
  ASSERT_TRUE(form.GoPlot(main));
  ASSERT_EQ(bar.TakeSelection(), ReplotAction::Replot);
  EXPECT_TRUE(a_SpaceApplication(run, chooser, phases));
  bar.Ended(true);
  EXPECT_EQ(run.plot.IndexPlot, 9);
  EXPECT_EQ(run.record.RunNumber, 1) << "nothing was computed again";

  ASSERT_EQ(bar.Click(kPlain), ReplotAction::Replot);
  EXPECT_TRUE(a_SpaceApplication(run, chooser, phases));
  bar.Ended(true);
  EXPECT_EQ(run.plot.IndexPlot, 13) << "the walk comes round";
}

TEST_F(WholeRun, ACancelledSelectionEndsItWithNothingChanged) {
  Load();
  chooser.number = 0;
  ASSERT_EQ(bar.Click(kPlain), ReplotAction::FullRun);
  EXPECT_FALSE(a_SpaceApplication(run, chooser, phases));
  bar.Ended(false);
  EXPECT_FALSE(run.record.finished);
  EXPECT_EQ(main.panel, "Re-Plots");
  EXPECT_EQ(bar.Click(kPlain), ReplotAction::FullRun);
}

}  // namespace
}  // namespace orv::testing
