#include "window/plot_controls.h"

#include "view/turn_playback.h"
#include "window/window_fixture.h"

namespace orv::testing {
namespace {

constexpr ClickKeys kPlain{};
constexpr ClickKeys kRight{.right = true};
constexpr ClickKeys kShift{.shift = true};
constexpr ClickKeys kCtrl{.ctrl = true};

class Controls : public WindowFixture {
 protected:
  int Index() const { return scene.CURRINDEXI(); }
};

// --- scroll bars
// -------------------------------------------------------------------------------------------------------

TEST_F(Controls, StartWithTheirTexts) {
  EXPECT_EQ(main.text3, "Redraw 1000");
  EXPECT_EQ(main.text2, "Redraw speed9");
  EXPECT_EQ(main.text10, "Starting");
  EXPECT_EQ(view.STEPPT, 81);
  EXPECT_DOUBLE_EQ(view.AutoRotPeriod, 8.11);
  EXPECT_EQ(main.hscroll1.value, 1000);
  EXPECT_EQ(main.hscroll4.value, 0);
  EXPECT_EQ(main.hscroll2.maximum, 32);
}

TEST_F(Controls, HScroll1SetsTheEndOfThePlot) {
  ShowPlot();
  ASSERT_EQ(run.lists.NumberPoints, 399);
  controls.ChangeHScroll1(500, true);
  EXPECT_EQ(Index(), 200) << "halves go to the even number";
  EXPECT_EQ(main.text3, "Redraw 500");
  EXPECT_EQ(scene.RedrawState(), kJustMoved);
  EXPECT_DOUBLE_EQ(view.redrawFraction, 0.5);
  controls.ChangeHScroll1(1000, true);
  EXPECT_EQ(Index(), 399);
  EXPECT_EQ(run.lists.TraceMax, run.lists.TraceCount);
}

TEST_F(Controls, HScroll1IsNeverZero) {
  ShowPlot();
  controls.ChangeHScroll1(0, true);
  EXPECT_EQ(main.hscroll1.value, 1);
  EXPECT_EQ(main.text3, "Redraw 1");
  EXPECT_EQ(Index(), 0);
  controls.ChangeHScroll1(5000, true);
  EXPECT_EQ(main.hscroll1.value, 1000);
}

TEST_F(Controls, AMoveOfTheUserMovesAFrozenPlot) {
  ShowPlot();
  scene.SetRedrawState(kFrozen);
  controls.ChangeHScroll1(250, true);
  EXPECT_EQ(Index(), 100);
}

TEST_F(Controls, AChangeByTheProgramLeavesAFrozenPlot) {
  ShowPlot();
  controls.ChangeHScroll1(500, true);
  scene.SetRedrawState(kFrozen);
  controls.ChangeHScroll1(900, false);
  EXPECT_EQ(Index(), 200);
  EXPECT_EQ(main.text3, "Redraw 501") << "where the plot stands: 200 of 399";
  scene.SetRedrawState(kRunning);
  controls.ChangeHScroll1(900, false);
  EXPECT_EQ(Index(), 359);
}

TEST_F(Controls, HScroll4SetsTheStart) {
  ShowPlot();
  controls.ChangeHScroll4(250, true);
  EXPECT_EQ(scene.CURRINDEXMINI(), 100);
  EXPECT_EQ(main.text10, "Starting250");
  EXPECT_DOUBLE_EQ(view.startFraction, 0.25);
  scene.SetRedrawState(kFrozen);
  controls.ChangeHScroll4(800, false);
  EXPECT_EQ(scene.CURRINDEXMINI(), 100);
  EXPECT_EQ(main.text10, "Starting251");
  controls.ChangeHScroll4(0, true);
  EXPECT_EQ(scene.CURRINDEXMINI(), 0) << "the start of all plots can be reached again";
  EXPECT_EQ(main.text10, "Starting0");
}

TEST_F(Controls, BarsWithoutAPlotOnlyTell) {
  controls.ChangeHScroll1(500, true);
  controls.ChangeHScroll4(300, true);
  EXPECT_EQ(Index(), 0);
  EXPECT_EQ(scene.RedrawState(), kRunning);
  EXPECT_EQ(main.text3, "Redraw 500");
  EXPECT_EQ(main.text10, "Starting300");
}

TEST_F(Controls, APlotOfOnePointDividesNothing) {
  ShowPlot();
  run.lists.NumberPoints = 0;
  scene.SetRedrawState(kFrozen);
  controls.ChangeHScroll1(500, false);
  EXPECT_EQ(main.text3, "Redraw 0");
  controls.FrozenStart(8);
  EXPECT_EQ(main.text3, "Redraw Start0");
}

TEST_F(Controls, HScroll2SetsSpeedAndPeriod) {
  controls.ChangeHScroll2(3);
  EXPECT_EQ(view.STEPPT, 9);
  EXPECT_DOUBLE_EQ(view.AutoRotPeriod, 0.91);
  EXPECT_EQ(main.text2, "Redraw speed3");
  controls.ChangeHScroll2(0);
  EXPECT_EQ(view.STEPPT, 0);
  EXPECT_DOUBLE_EQ(view.AutoRotPeriod, 0.01);
  controls.ChangeHScroll2(99);
  EXPECT_EQ(main.hscroll2.value, 32);
  EXPECT_EQ(view.STEPPT, 1024);
}

TEST_F(Controls, HScroll2TellsThePeriodWhileATurnIsPlayed) {
  view.AutoRotMode = kVariableData;
  controls.ChangeHScroll2(4);
  EXPECT_EQ(main.text2, "Auto-Rotation 1.61");
  controls.ChangeHScroll2(0);
  EXPECT_EQ(main.text2, "Auto-Rotation 0.01");
}

// --- colours
// -----------------------------------------------------------------------------------------------------------

TEST_F(Controls, Command7StepsTheColourStyles) {
  EXPECT_EQ(main.command7Caption, "color scale");
  for (const int style : {1, 2, 3, 4, 5, 6, 0, 1}) {
    const int paints = control.RedrawRequests();
    controls.ClickCommand7(kPlain);
    EXPECT_EQ(view.ColorStyle, style);
    EXPECT_EQ(main.command7Caption, std::to_string(style));
    EXPECT_GT(control.RedrawRequests(), paints);
  }
}

TEST_F(Controls, Command7StepsTheScaleWithRightOrShift) {
  const std::string plain =
      "Scales colors 32  64 or 26 levels,  with RIGHT or SHIFT Scale on axis, with CTRL plot Vectors Normal, tangent";
  EXPECT_EQ(main.command7Tip, plain);
  int k = 0;
  for (const int mode : {1, 2, 3, 4, 5, 0, 1}) {
    controls.ClickCommand7(++k % 2 == 0 ? kRight : kShift);
    EXPECT_EQ(view.ScaleMode, mode);
    EXPECT_EQ(main.command7Tip, mode == 5 ? "All scales in color; Try Shift+Click" : plain);
  }
  EXPECT_EQ(view.ColorStyle, 0);
  EXPECT_EQ(main.command7Caption, "color scale");
}

TEST_F(Controls, Command7ShowsTheVectorsWithCtrl) {
  ShowPlot();
  const int outlines = run.lists.TraceCount;
  controls.ClickCommand7(kCtrl);
  EXPECT_EQ(main.command7Caption, "color scale") << "there are none";
  EXPECT_FALSE(run.lists.VectorsShown);
  run.lists.VectorCount = 4;
  controls.ClickCommand7(kPlain);
  controls.ClickCommand7(kCtrl);
  EXPECT_EQ(main.command7Caption, "CheckPLOTvectorsNb");
  EXPECT_EQ(run.lists.TraceCount, outlines + 4);
  controls.ClickCommand7(kCtrl);
  EXPECT_EQ(main.command7Caption, "1");
  EXPECT_EQ(run.lists.TraceCount, outlines);
}

TEST_F(Controls, TheFirstMoveBehindCommand7SlowsThePlot) {
  ShowPlot();
  controls.ChangeHScroll1(900, true);
  EXPECT_EQ(main.hscroll2.value, 9);
  controls.ClickCommand7(kPlain);
  controls.ChangeHScroll1(800, true);
  EXPECT_EQ(main.hscroll2.value, 7);
  EXPECT_EQ(view.STEPPT, 49);
  EXPECT_EQ(main.text2, "Redraw speed7");
  controls.ChangeHScroll2(9);
  controls.ChangeHScroll1(700, true);
  EXPECT_EQ(main.hscroll2.value, 9) << "the first move only";
  controls.ClickCommand7(kPlain);
  controls.ChangeHScroll2(5);
  controls.ChangeHScroll1(600, true);
  EXPECT_EQ(main.hscroll2.value, 5) << "another speed stays";
}

// --- the turn
// ----------------------------------------------------------------------------------------------------------

TEST_F(Controls, Command8CyclesThroughTheModes) {
  EXPECT_EQ(main.command8Tip, "mean data only");
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kMeanData) << "it is not enabled";
  controls.NewPlot(true);
  EXPECT_EQ(main.command8Tip, "Mean data only");
  controls.ChangeHScroll2(20);
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kVariableData);
  EXPECT_EQ(main.command8Tip, "view variable data");
  EXPECT_EQ(main.hscroll2.maximum, 10);
  EXPECT_EQ(main.hscroll2.value, 10);
  EXPECT_EQ(main.text2, "Auto-Rotation 10.01");
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kTurnWithData);
  EXPECT_EQ(main.command8Tip, "Rotation with variable data");
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kReturnFromTurn);
  EXPECT_EQ(main.command8Tip, "Mean data only");
  EXPECT_EQ(main.hscroll2.maximum, 32);
  EXPECT_EQ(main.hscroll2.value, 9);
  EXPECT_EQ(main.text2, "Redraw speed9");
  // The next click comes before the scene was rebuilt, then behind it.
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kVariableData);
  controls.ClickCommand8();
  controls.ClickCommand8();
  view.AutoRotMode = kMeanData;
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kVariableData);
}

TEST_F(Controls, TheReturnRestoresPlaceAndMeanAtTheNextPaint) {
  ShowPlot();
  AutoRotation& rotation = run.lists.rotation;
  rotation.present = rotation.hasValues = true;
  rotation.frames = 2;
  rotation.values = {{0.5F}, {0.2F}, {0.9F}};
  rotation.minimum = {0.5F, 0.1F, 0.9F};
  rotation.maximum = {0.5F, 0.3F, 0.9F};
  rotation.main.start = rotation.main.count = 1;
  const Point3 place{run.lists.PointList(1, 1), run.lists.PointList(2, 1), run.lists.PointList(3, 1)};
  rotation.main.positions = {{place}, {{-place[1], place[0], place[2]}}, {{-place[0], -place[1], place[2]}}};
  run.lists.PlotLoaded = 1;
  run.lists.PointList(0, 1) = 0.5F;
  control.Attach(scene);
  control.Paint(scene);
  controls.NewPlot(true);
  controls.ClickCommand8();
  controls.ClickCommand8();
  control.Paint(scene);
  ASSERT_EQ(run.lists.PointList(1, 1), -place[1]);
  ASSERT_NE(run.lists.PointList(0, 1), 0.5F);
  controls.ClickCommand8();
  EXPECT_EQ(view.AutoRotMode, kReturnFromTurn);
  EXPECT_EQ(run.lists.PointList(1, 1), -place[1]) << "it waits for the paint";
  control.Paint(scene);
  EXPECT_EQ(view.AutoRotMode, kMeanData);
  EXPECT_EQ(run.lists.PointList(1, 1), place[0]);
  EXPECT_EQ(run.lists.PointList(2, 1), place[1]);
  EXPECT_EQ(run.lists.PointList(4, 1), kPenUp);
  EXPECT_EQ(run.lists.PointList(0, 1), 0.5F);
  EXPECT_EQ(scene.Playback().AutoRotFrame(), 0);
  controls.ClickCommand8();
  EXPECT_EQ(main.command8Tip, "view variable data") << "and round again";
}

TEST_F(Controls, ANewPlotStartsWithItsMeanData) {
  controls.NewPlot(true);
  controls.ClickCommand8();
  controls.NewPlot(false);
  EXPECT_EQ(view.AutoRotMode, kMeanData);
  EXPECT_FALSE(main.command8Enabled);
  EXPECT_EQ(main.hscroll2.maximum, 32);
  EXPECT_EQ(main.hscroll2.value, 9);
  EXPECT_EQ(main.text2, "Redraw speed9");
  controls.ChangeHScroll2(20);
  controls.NewPlot(true);
  EXPECT_EQ(main.hscroll2.value, 20) << "the speed of growth is the user's";
}

// --- reset and frozen start
// --------------------------------------------------------------------------------------------

TEST_F(Controls, Command9HasThePlotNormalisedAgain) {
  ShowPlot();
  run.lists.PlotLoaded = 1;
  const int paints = control.RedrawRequests();
  controls.ClickCommand9();
  EXPECT_EQ(run.lists.PlotLoaded, 0);
  EXPECT_GT(control.RedrawRequests(), paints);
}

TEST_F(Controls, FrozenStartEmptiesThePlotUntilTheUserMoves) {
  view.animation = true;
  ShowPlot();
  controls.ChangeHScroll1(500, true);
  EXPECT_EQ(controls.FrozenStart(8), 17);
  EXPECT_TRUE(view.frozen);
  EXPECT_EQ(Index(), -1);
  EXPECT_EQ(main.text3, "Redraw Start501");
  for (int tick = 0; tick < 20; ++tick) scene.TheUpdateTimer_ThatTime();
  EXPECT_EQ(Index(), -1);
  EXPECT_EQ(scene.RedrawState(), kFrozen);
  controls.ChangeHScroll1(300, true);
  EXPECT_EQ(Index(), 120);
  for (int tick = 0; tick < 20; ++tick) scene.TheUpdateTimer_ThatTime();
  EXPECT_EQ(Index(), 120);
  EXPECT_EQ(controls.FrozenStart(6), 6) << "the second press gives the mode back";
  EXPECT_FALSE(view.frozen);
  EXPECT_EQ(scene.RedrawState(), kRunning);
  for (int tick = 0; tick < 50; ++tick) scene.TheUpdateTimer_ThatTime();
  EXPECT_EQ(Index(), run.lists.NumberPoints) << "it grows again";
}

TEST_F(Controls, ResetAndANewPlotEndAFrozenStart) {
  view.animation = true;
  for (const bool reset : {true, false}) {
    ShowPlot();
    controls.FrozenStart(8);
    ASSERT_TRUE(view.frozen);
    if (reset) {
      controls.ClickCommand9();
    } else {
      controls.NewPlot(false);
    }
    EXPECT_FALSE(view.frozen);
    EXPECT_EQ(scene.RedrawState(), kRunning);
    EXPECT_EQ(controls.FrozenStart(8), 17) << "the next press is a first one";
    controls.FrozenStart(8);
  }
}

}  // namespace
}  // namespace orv::testing
