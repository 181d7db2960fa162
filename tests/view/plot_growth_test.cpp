#include <gmock/gmock.h>

#include "support/recorded_scene.h"
#include "view/class_gl.h"

// How a plot grows: by the hand of the user and by the timer.
namespace orv {
namespace {

using ::testing::IsEmpty;
using testing::RecordedScene;

// 1200 cells, 7200 entries of outlines.
struct GrowingSheet : RecordedScene {
  explicit GrowingSheet(bool animation) {
    view.animation = animation;
    FillSheet(lists, 40, 30);
    Start();
  }
};

// By hand.

TEST(PlotGrowth, TheEndIsMovedWithTheTraceInProportion) {
  GrowingSheet s(false);
  int previous = 0;
  s.scene->ChangeCURRINDEXI(300, previous);
  EXPECT_EQ(previous, 1199);
  EXPECT_EQ(s.scene->CURRINDEXI(), 300);
  EXPECT_EQ(s.scene->RedrawState(), kJustMoved);
  EXPECT_EQ(s.lists.TraceMax, 1801);  // 300 * 7199 / 1199 = 1801.25
  s.scene->ChangeCURRINDEXI(1199, previous);
  EXPECT_EQ(previous, 300);
  EXPECT_EQ(s.lists.TraceMax, 7199);
}

TEST(PlotGrowth, MinusOneShowsNothing) {
  GrowingSheet s(false);
  s.view.SidesMode = kBothSides;
  int previous = -1;
  s.scene->ChangeCURRINDEXI(-1, previous);
  EXPECT_EQ(s.scene->CURRINDEXI(), -1);
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_POINTS), IsEmpty());
  EXPECT_THAT(s.Drawn(GL_TRIANGLES), IsEmpty());
  EXPECT_THAT(s.Drawn(GL_LINES), IsEmpty());
  s.scene->ChangeCURRINDEXI(previous, previous);
  s.Paint();
  EXPECT_FALSE(s.control.Recording().PrimitivesOf(GL_TRIANGLES).empty());
}

TEST(PlotGrowth, TheStartIsMovedWithTheTraceInProportion) {
  GrowingSheet s(false);
  s.scene->SetRedrawState(kRunning);
  int previous = -1;
  s.scene->ChangeCURRINDEXMINI(600, previous);
  EXPECT_EQ(previous, 0);
  EXPECT_EQ(s.scene->CURRINDEXMINI(), 600);
  EXPECT_EQ(s.lists.TraceMin, 3603);  // 600 * 7199 / 1199 = 3602.50..
  EXPECT_EQ(s.scene->RedrawState(), kRunning);
  s.scene->ChangeCURRINDEXMINI(600, previous);
  EXPECT_EQ(previous, 600);
  EXPECT_EQ(s.scene->RedrawState(), kJustMoved) << "an unchanged start is a move by the user";
}

TEST(PlotGrowth, ASinglePointKeepsItsTrace) {
  RecordedScene s;
  s.AddSquare(1, 2);
  s.Start();
  ASSERT_EQ(s.lists.NumberPoints, 0);
  int previous = 0;
  s.scene->ChangeCURRINDEXI(0, previous);
  EXPECT_EQ(s.lists.TraceMax, 5);
  s.scene->ChangeCURRINDEXMINI(0, previous);
  EXPECT_EQ(s.lists.TraceMin, 0);
}

TEST(PlotGrowth, AnIndexBehindTheEndIsKept) {
  GrowingSheet s(false);
  int previous = 0;
  s.scene->ChangeCURRINDEXI(5000, previous);
  s.Paint();
  EXPECT_EQ(s.scene->CURRINDEXI(), 5000);
  std::size_t dots = 0;
  for (const DrawnPrimitive& drawn : s.control.Recording().PrimitivesOf(GL_POINTS)) dots += drawn.vertices.size();
  EXPECT_EQ(dots, 1200U);
  const long rebuilds = s.scene->Plot().Rebuilds();
  s.Paint();
  EXPECT_EQ(s.scene->Plot().Rebuilds(), rebuilds) << "timer and paint would rebuild for ever";
}

// The start of a plot.

TEST(PlotGrowth, WithAnimationAPlotStartsEmpty) {
  GrowingSheet s(true);
  EXPECT_EQ(s.scene->CURRINDEXI(), 0);
  EXPECT_EQ(s.scene->CURRINDEXMINI(), 0);
  EXPECT_EQ(s.scene->RollingIndex(), 0);
  EXPECT_EQ(s.lists.TraceMax, 0);
  EXPECT_EQ(s.lists.TraceMin, 0);
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_TRIANGLES), IsEmpty());
  EXPECT_THAT(s.Drawn(GL_LINES), IsEmpty());
}

TEST(PlotGrowth, WithoutAnimationFractionsDecide) {
  RecordedScene s;
  s.view.redrawFraction = 0.3;
  s.view.startFraction = 0.1;
  FillSheet(s.lists, 40, 25);
  s.Start();
  EXPECT_EQ(s.scene->CURRINDEXI(), 300);     // 0.3 * 999 = 299.7
  EXPECT_EQ(s.scene->CURRINDEXMINI(), 100);  // 0.1 * 999 = 99.9
  EXPECT_EQ(s.lists.TraceMax, 1800);         // 0.3 * 5999 = 1799.7
  EXPECT_EQ(s.lists.TraceMin, 600);          // 0.1 * 5999 = 599.9
}

// The timer.

TEST(PlotGrowth, EveryFifthTickAddsAStep) {
  GrowingSheet s(true);
  s.scene->ChangeSTEPPT(100);
  int ticks = 0;
  while (s.scene->CURRINDEXI() == 0 && ticks < 20) {
    s.scene->TheUpdateTimer_ThatTime();
    ++ticks;
  }
  EXPECT_LE(ticks, 5);
  EXPECT_EQ(s.scene->CURRINDEXI(), 100);
  for (int tick = 0; tick < 4; ++tick) EXPECT_FALSE(s.scene->TheUpdateTimer_ThatTime());
  EXPECT_EQ(s.scene->CURRINDEXI(), 100);
  EXPECT_TRUE(s.scene->TheUpdateTimer_ThatTime());
  EXPECT_EQ(s.scene->CURRINDEXI(), 200);
}

TEST(PlotGrowth, AStepOfZeroIsAHundred) {
  GrowingSheet s(true);
  s.scene->ChangeSTEPPT(0);
  s.WorkingTick();
  EXPECT_EQ(s.scene->CURRINDEXI(), 100);
  EXPECT_EQ(s.view.STEPPT, 100);
}

TEST(PlotGrowth, GrowthEndsAtTheLastPointAndTheLastOutline) {
  GrowingSheet s(true);
  s.scene->ChangeSTEPPT(500);
  EXPECT_TRUE(s.WorkingTick());
  EXPECT_EQ(s.scene->CURRINDEXI(), 500);
  EXPECT_NEAR(s.lists.TraceMax, 3002, 1);  // 500 * 7199 / 1199
  EXPECT_TRUE(s.WorkingTick());
  EXPECT_EQ(s.scene->CURRINDEXI(), 1000);
  EXPECT_TRUE(s.WorkingTick());
  EXPECT_EQ(s.scene->CURRINDEXI(), 1199);
  EXPECT_EQ(s.lists.TraceMax, 7199);
  EXPECT_FALSE(s.WorkingTick()) << "nothing more to paint";
  EXPECT_EQ(s.scene->CURRINDEXI(), 1199);
  EXPECT_EQ(s.lists.TraceMax, 7199);
}

TEST(PlotGrowth, AStepThatJustReachesTheEndEndsThere) {
  GrowingSheet s(true);
  s.scene->ChangeSTEPPT(1199);
  s.WorkingTick();
  EXPECT_EQ(s.scene->CURRINDEXI(), 1199);
  EXPECT_EQ(s.lists.TraceMax, 7199);
}

TEST(PlotGrowth, ASinglePointIsNotDividedBy) {
  RecordedScene s;
  s.view.animation = true;
  s.AddSquare(1, 2);
  s.Start();
  ASSERT_EQ(s.lists.NumberPoints, 0);
  const int trace = s.lists.TraceMax;
  for (int i = 0; i < 3; ++i) s.WorkingTick();
  EXPECT_EQ(s.scene->CURRINDEXI(), 0);
  EXPECT_EQ(s.lists.TraceMax, trace);
  EXPECT_EQ(s.scene->RollingIndex(), 0);
}

TEST(PlotGrowth, WithoutAPlotTheTimerDoesNothing) {
  RecordedScene s;
  s.view.animation = true;
  s.Start();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(s.WorkingTick());
  EXPECT_EQ(s.scene->CURRINDEXI(), 0);
  EXPECT_THAT(s.dialogs.boxes, IsEmpty());
}

TEST(PlotGrowth, TheRollingIndexGoesRound) {
  RecordedScene s;
  s.view.animation = true;
  FillCurve(s.lists, 4);
  s.Start();
  const int expected[] = {1, 2, 0, 1};
  for (const int index : expected) {
    s.WorkingTick();
    EXPECT_EQ(s.scene->RollingIndex(), index);
  }
}

TEST(PlotGrowth, AMoveByTheUserFreezesAtTheNextStep) {
  GrowingSheet s(true);
  int previous = 0;
  s.scene->ChangeCURRINDEXI(300, previous);
  EXPECT_TRUE(s.WorkingTick());
  EXPECT_EQ(s.scene->RedrawState(), kFrozen);
  EXPECT_EQ(s.scene->CURRINDEXI(), 300);
  EXPECT_FALSE(s.WorkingTick());
  EXPECT_EQ(s.scene->CURRINDEXI(), 300);
  EXPECT_EQ(s.scene->RollingIndex(), 0);
}

TEST(PlotGrowth, TheTrackballSpinsAtEveryTick) {
  GrowingSheet s(true);
  int steps = 0;
  TimerWork work;
  work.spin = [&] { return ++steps % 2 == 0; };
  s.scene->TheUpdateTimer_ThatTime(work);
  EXPECT_EQ(steps, 1);
  while (s.scene->CURRINDEXI() == 0) s.scene->TheUpdateTimer_ThatTime(work);
  steps = 0;
  for (int tick = 1; tick < 5; ++tick) EXPECT_EQ(s.scene->TheUpdateTimer_ThatTime(work), tick % 2 == 0);
  EXPECT_EQ(steps, 4);
}

TEST(PlotGrowth, TheWatchRunsInteractivelyOnEveryOtherStep) {
  GrowingSheet s(true);
  int watches = 0;
  TimerWork work;
  work.watch = [&] { ++watches; };
  for (int i = 0; i < 4; ++i) s.WorkingTick(work);
  EXPECT_EQ(watches, 0);
  s.view.options.Interactive = 1;
  for (int i = 0; i < 4; ++i) s.WorkingTick(work);
  EXPECT_EQ(watches, 2) << "of the steps with 5 and 10 ticks only the first";
}

TEST(PlotGrowth, AWantedWatchRunsWithoutTheOption) {
  GrowingSheet s(true);
  bool wanted = true;
  int watches = 0;
  TimerWork work;
  work.watchWanted = [&] { return wanted; };
  work.watch = [&] { ++watches; };
  for (int i = 0; i < 4; ++i) s.WorkingTick(work);
  EXPECT_EQ(watches, 2);
  wanted = false;
  for (int i = 0; i < 4; ++i) s.WorkingTick(work);
  EXPECT_EQ(watches, 2);
}

TEST(PlotGrowth, ABusyLinkEndsTheTick) {
  GrowingSheet s(true);
  s.view.options.Interactive = 1;
  bool busy = true;
  int watches = 0;
  int frames = 0;
  TimerWork work;
  work.linkBusy = [&] { return busy; };
  work.watch = [&] { ++watches; };
  work.movie = [&] { return ++frames > 0; };
  s.WorkingTick(work);
  EXPECT_GT(s.scene->CURRINDEXI(), 0) << "the plot grows all the same";
  s.WorkingTick(work);
  EXPECT_EQ(watches, 0);
  EXPECT_EQ(frames, 0);
  busy = false;
  s.WorkingTick(work);
  s.WorkingTick(work);
  EXPECT_EQ(watches, 1);
  EXPECT_EQ(frames, 2);
}

// The vectors behind the outlines.

struct SheetWithVectors : RecordedScene {
  SheetWithVectors() {
    AddSquare(0, 0);
    AddSquare(1, 4);
    Behind();
    Start();
  }
  // Two vectors, four entries, that do not count while they are hidden.
  void Behind() {
    for (int i = 0; i < 4; ++i) AddTrace(i, 1, 2, 0);
    lists.TraceCount = lists.TraceMax = 11;
    lists.VectorCount = 4;
  }
};

TEST(PlotGrowth, VectorsAreShownOnce) {
  SheetWithVectors s;
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_LINES), ::testing::SizeIs(1)) << "borders alone";
  s.scene->ShowVectors(true);
  s.scene->ShowVectors(true);
  EXPECT_EQ(s.lists.TraceCount, 15);
  EXPECT_EQ(s.lists.TraceMax, 15);
  s.Paint();
  EXPECT_THAT(s.Drawn(GL_LINES), ::testing::SizeIs(2));
  s.scene->ShowVectors(false);
  s.scene->ShowVectors(false);
  EXPECT_EQ(s.lists.TraceCount, 11);
  EXPECT_EQ(s.lists.TraceMax, 11);
}

TEST(PlotGrowth, ResetsLeaveTheVectorsAsTheyAre) {
  SheetWithVectors s;
  s.scene->ShowVectors(true);
  for (int repeat = 0; repeat < 3; ++repeat) {
    s.lists.PlotNormalised = 0;
    s.scene->Reset();
  }
  EXPECT_EQ(s.lists.TraceCount, 15);
  EXPECT_TRUE(s.lists.VectorsShown);
  s.scene->ShowVectors(false);
  for (int repeat = 0; repeat < 3; ++repeat) {
    s.lists.PlotNormalised = 0;
    s.scene->Reset();
  }
  EXPECT_EQ(s.lists.TraceCount, 11);
}

TEST(PlotGrowth, HiddenVectorsAreScaledWithTheRest) {
  SheetWithVectors s;
  EXPECT_FLOAT_EQ(s.lists.TraceList(0, 15), 7.5F);  // 3 * 10 / 4
  EXPECT_FLOAT_EQ(s.lists.TraceList(2, 12), 5);
}

}  // namespace
}  // namespace orv
