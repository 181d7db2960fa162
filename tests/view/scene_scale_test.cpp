#include "view/scene_scale.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"
#include "support/view_model.h"

namespace orv {
namespace {

struct Scene {
  Scene() : prompt(dialogs) {}
  void Add(float x, float y, float z, float pen = 0, float value = 0) {
    const int i = ++lists.NumberPoints;
    lists.PointList(0, i) = value;
    lists.PointList(1, i) = x;
    lists.PointList(2, i) = y;
    lists.PointList(3, i) = z;
    lists.PointList(4, i) = pen;
  }
  void Normalise() {
    lists.PlotNormalised = 0;
    NormaliseLists(lists, scale, prompt);
  }
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  PointLists lists;
  SceneScale scale;
};

TEST(SceneScale, AFreePlotGetsAGainForEachAxis) {
  Scene s;
  s.Add(0, -10, 100);
  s.Add(4, -5, 105);
  s.Normalise();
  // Each axis spans Scale80; the origin of the data stays the origin of the scene.
  EXPECT_DOUBLE_EQ(s.scale.AxisRange[1].Gain, 2.5);
  EXPECT_DOUBLE_EQ(s.scale.AxisRange[2].Gain, 2);
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 1), 10);
  EXPECT_FLOAT_EQ(s.lists.PointList(2, 0), -20);
  EXPECT_FLOAT_EQ(s.lists.PointList(3, 1), 210);
  for (std::size_t axis = 1; axis <= 3; ++axis) EXPECT_EQ(s.scale.AxisRange[axis].Offset, 0);
  EXPECT_FLOAT_EQ(s.scale.RRMAXAXES, std::sqrt(100.0F + 100 + 210 * 210));
  EXPECT_FLOAT_EQ(s.scale.InverseScale, 1 / s.scale.RRMAXAXES);
  EXPECT_EQ(s.lists.FactorScale, 1);
}

TEST(SceneScale, AFlatAxisTakesTheWholeScale) {
  Scene s;
  s.Add(0, 0, 0.5F);
  s.Add(1, 2, 0.5F);
  s.Normalise();
  EXPECT_DOUBLE_EQ(s.scale.AxisRange[3].Gain, 10);
  EXPECT_FLOAT_EQ(s.lists.PointList(3, 1), 5);
}

TEST(SceneScale, AFixedPlotKeepsItsProportions) {
  Scene s;
  s.lists.IndexPlot = 13;
  s.lists.FactorScale = 1.01;
  s.Add(3, 0, 0);
  s.Add(0, 4, 3);
  s.Normalise();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 0), 6);
  EXPECT_FLOAT_EQ(s.lists.PointList(2, 1), 8);
  EXPECT_EQ(s.scale.RRMAXAXES, 10);
  EXPECT_FLOAT_EQ(s.scale.InverseScale, 0.1F);
  EXPECT_DOUBLE_EQ(s.lists.FactorScale, 1.01 * 2);
  EXPECT_FLOAT_EQ(s.scale.RememberedRadius, 5);
  EXPECT_TRUE(s.dialogs.boxes.empty());
}

TEST(SceneScale, RunsOnceAPlot) {
  Scene s;
  s.lists.IndexPlot = 13;
  s.lists.FactorScale = 1.01;
  s.Add(3, 0, 0);
  s.Normalise();
  NormaliseLists(s.lists, s.scale, s.prompt);
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 0), 10);
  // The user's Reset normalises again; what is in scene units stays there.
  s.Normalise();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 0), 10);
  EXPECT_FLOAT_EQ(s.scale.RememberedRadius, 3);
}

TEST(SceneScale, AReplotKeepsTheScaleOfTheFirstFrame) {
  Scene s;
  s.lists.IndexPlot = 13;
  s.lists.FactorScale = 1.01;
  s.Add(5, 0, 0);
  s.Normalise();
  s.lists.Clear();
  s.lists.FactorScale = 1.01;
  s.lists.IndexPlot = 9;
  s.lists.KeepScale = 1;
  s.Add(2.5F, 0, 0);
  s.Normalise();
  EXPECT_FLOAT_EQ(s.lists.PointList(1, 0), 5);
  EXPECT_EQ(s.scale.RRMAXAXES, 10);
  // A second Reset of the same lists must not scale them once more.
  s.lists.KeepScale = 1;
  s.Normalise();
  EXPECT_LE(s.lists.PointList(1, 0), 10);
}

TEST(SceneScale, ARangePlotBetweenLeavesTheScaleOfTheAnalysis) {
  Scene s;
  s.lists.IndexPlot = 13;
  s.lists.FactorScale = 1.01;
  s.Add(5, 0, 0);
  s.Normalise();
  s.lists.Clear();
  s.lists.FactorScale = 0.001;
  s.Add(42000, 0, 0);
  s.Normalise();
  EXPECT_FLOAT_EQ(s.scale.RememberedRadius, 5);
}

TEST(SceneScale, TheScaleThatWasGivenDecidesOnce) {
  Scene s;
  s.lists.FactorScale = 2;
  s.Add(20, 5, 0);
  s.Normalise();
  // The factor has become 1 by chance; the plot keeps its proportions at the next Reset.
  EXPECT_NEAR(s.lists.FactorScale, 1, 0.05);
  EXPECT_FALSE(s.lists.FreeScale);
  const float y = s.lists.PointList(2, 0);
  s.Normalise();
  EXPECT_NEAR(s.lists.PointList(2, 0), y, 1e-5);
}

TEST(SceneScale, AllPointsAtTheOriginKeepTheViewValid) {
  Scene s;
  s.lists.FactorScale = 1.01;
  s.Add(0, 0, 0);
  s.Normalise();
  EXPECT_EQ(s.scale.RRMAXAXES, s.scale.Scale80);
  EXPECT_TRUE(std::isfinite(s.lists.PointList(1, 0)));
  EXPECT_TRUE(s.dialogs.boxes.empty());
}

TEST(SceneScale, APointAtInfinityIsTold) {
  Scene s;
  s.lists.FactorScale = 1.01;
  s.Add(INFINITY, 0, 0);
  s.Normalise();
  EXPECT_EQ(s.scale.RRMAXAXES, s.scale.Scale80);
  ASSERT_FALSE(s.dialogs.boxes.empty());
  EXPECT_EQ(s.dialogs.boxes.front().text, "error Reset  RRMAXAXES = 0 Then RRMAXAXES = Scale80");
}

TEST(SceneScale, LiftedPointsCountOnlyWithOutlines) {
  Scene s;
  s.lists.FactorScale = 1.01;
  s.Add(1, 0, 0);
  s.Add(9, 0, 0, kPenUp);
  s.scale.NormPass(s.lists);
  EXPECT_EQ(s.scale.RRMAXAXES, 1);
  s.lists.PenUpMode = 1;
  s.scale.NormPass(s.lists);
  EXPECT_EQ(s.scale.RRMAXAXES, 9);
  EXPECT_EQ(s.scale.RRMINAXES, 1);
}

TEST(SceneScale, HiddenVectorsAreScaledWithTheOutlines) {
  Scene s;
  FillSheet(s.lists, 1, 1);
  s.lists.TraceList(0, 6) = 1;
  s.lists.TraceList(0, 7) = 2;
  s.lists.TraceList(3, 8) = kPenUp;
  s.lists.VectorCount = 3;
  const float before = s.lists.PointList(3, 0);
  const float corner = s.lists.TraceList(0, 0);
  s.Normalise();
  const double factor = s.lists.FactorScale / 1.01;
  EXPECT_FLOAT_EQ(s.lists.PointList(3, 0), static_cast<float>(before * factor));
  EXPECT_FLOAT_EQ(s.lists.TraceList(0, 0), static_cast<float>(corner * factor));
  EXPECT_FLOAT_EQ(s.lists.TraceList(0, 7), static_cast<float>(2 * factor));
  EXPECT_EQ(s.lists.TraceCount, 5);
  EXPECT_EQ(s.lists.TraceMax, 5);
}

TEST(SceneScale, EventStatesAreTwoOrMore) {
  PointLists lists;
  const auto set = [&](std::initializer_list<float> states) {
    lists.EventCount = kNoEntry;
    for (const float state : states) lists.EventList(1, ++lists.EventCount) = state;
    return FindEventTwoState(lists);
  };
  EXPECT_EQ(set({1, 1, 1}), 1);
  EXPECT_EQ(set({0, 0}), 1);
  EXPECT_EQ(set({1, 0}), 0);
  EXPECT_EQ(set({0.5F, 0}), 1);
  EXPECT_EQ(set({}), 1);
}

}  // namespace
}  // namespace orv
