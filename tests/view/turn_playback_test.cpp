#include "view/turn_playback.h"

#include <gtest/gtest.h>

#include "support/view_model.h"

namespace orv {
namespace {

// Two cells of a sheet, turning by 90 degrees about Z in frame 1 and by 180 in frame 2; the first one is fixed.
PointLists Turning() {
  PointLists lists;
  FillSheet(lists, 1, 2);
  AutoRotation& rotation = lists.rotation;
  rotation.present = true;
  rotation.frames = 2;
  rotation.hasValues = true;
  rotation.values = {{0.5F}, {0.2F}, {0.9F}};
  rotation.minimum = {0.5F, 0.1F, 0.9F};
  rotation.maximum = {0.5F, 0.3F, 0.9F};
  rotation.main.start = 1;
  rotation.main.count = 1;
  rotation.main.outlineStart = 6;
  rotation.main.outlineEntries = 6;
  const Point3 place{lists.PointList(1, 1), lists.PointList(2, 1), lists.PointList(3, 1)};
  rotation.main.positions = {{place}, {{-place[1], place[0], place[2]}}, {{-place[0], -place[1], place[2]}}};
  rotation.main.motions.resize(3);
  rotation.main.motions[1].rotation = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  rotation.main.motions[2].rotation = {-1, 0, 0, 0, -1, 0, 0, 0, 1};
  lists.PointList(0, 1) = 0.5F;
  return lists;
}

TEST(TurnPlayback, StartsWithTheMeanOfTheTurn) {
  PointLists lists = Turning();
  TurnPlayback playback;
  int mode = kMeanData;
  EXPECT_FALSE(playback.Advance(lists, mode, 1, 0));
  EXPECT_EQ(lists.PointList(0, 1), 0.5F);
  EXPECT_EQ(lists.legend.LegendMin, 1e12);
}

TEST(TurnPlayback, PlaysOneFrameAPeriodAndSkipsTheMean) {
  PointLists lists = Turning();
  TurnPlayback playback;
  int mode = kVariableData;
  EXPECT_TRUE(playback.Advance(lists, mode, 2, 0));
  EXPECT_EQ(playback.AutoRotFrame(), 1);
  EXPECT_FLOAT_EQ(lists.PointList(0, 1), 0.5F);  // (0.2 - 0.1) / (0.3 - 0.1)
  EXPECT_FALSE(playback.Advance(lists, mode, 2, 2));
  EXPECT_TRUE(playback.Advance(lists, mode, 2, 2.1));
  EXPECT_EQ(playback.AutoRotFrame(), 2);
  EXPECT_FLOAT_EQ(lists.PointList(0, 1), 0.9F);  // a constant frame keeps its values
  EXPECT_TRUE(playback.Advance(lists, mode, 2, 4.2));
  EXPECT_EQ(playback.AutoRotFrame(), 1);
}

TEST(TurnPlayback, TheLegendTellsTheFrame) {
  PointLists lists = Turning();
  TurnPlayback playback;
  int mode = kVariableData;
  playback.Advance(lists, mode, 2, 0);
  EXPECT_FLOAT_EQ(static_cast<float>(lists.legend.LegendMin), 0.1F);
  EXPECT_FLOAT_EQ(static_cast<float>(lists.legend.LegendMax), 0.3F);
  EXPECT_NEAR(lists.legend.ScaleMin, 1e12 + 0.1 * (5e15 - 1e12), 1e9);
  EXPECT_NEAR(lists.legend.ScaleMax, 1e12 + 0.3 * (5e15 - 1e12), 1e9);
  mode = kMeanData;
  EXPECT_TRUE(playback.Advance(lists, mode, 2, 0));
  EXPECT_EQ(lists.legend.LegendMin, 1e12);
  EXPECT_EQ(lists.legend.ScaleMax, 5e15);
}

TEST(TurnPlayback, TurnsPointsAndOutlinesAndComesBack) {
  PointLists lists = Turning();
  const float x = lists.PointList(1, 1);
  const float y = lists.PointList(2, 1);
  const float cornerX = lists.TraceList(0, 7);
  const float cornerY = lists.TraceList(1, 7);
  const float fixed = lists.TraceList(0, 1);
  TurnPlayback playback;
  int mode = kTurnWithData;
  EXPECT_TRUE(playback.Advance(lists, mode, 1, 0));
  EXPECT_EQ(lists.PointList(1, 1), -y);
  EXPECT_EQ(lists.PointList(2, 1), x);
  EXPECT_EQ(lists.PointList(4, 1), kPenUp);
  EXPECT_EQ(lists.TraceList(0, 7), -cornerY);
  EXPECT_EQ(lists.TraceList(1, 7), cornerX);
  EXPECT_EQ(lists.TraceList(0, 1), fixed);
  EXPECT_EQ(lists.TraceList(3, 11), kPenUp);
  EXPECT_EQ(lists.TraceList(0, 11), 0);
  mode = kReturnFromTurn;
  EXPECT_TRUE(playback.Advance(lists, mode, 1, 0.1));
  EXPECT_EQ(mode, kMeanData);
  EXPECT_EQ(lists.PointList(1, 1), x);
  EXPECT_EQ(lists.TraceList(0, 7), cornerX);
  EXPECT_EQ(lists.PointList(0, 1), 0.5F);
}

// Plots that have no values of the steps, such as the incidence, turn all the same.
TEST(TurnPlayback, WithoutValuesOnlyTheGeometryTurns) {
  for (const double plot : {5.0, 19.0, 90.0}) {
    PointLists lists = Turning();
    lists.IndexPlot = plot;
    lists.rotation.hasValues = false;
    const float x = lists.PointList(1, 1);
    const float y = lists.PointList(2, 1);
    const float cornerX = lists.TraceList(0, 7);
    TurnPlayback playback;
    int mode = kVariableData;
    EXPECT_FALSE(playback.Due(lists, mode, 1, 5));
    EXPECT_FALSE(playback.Advance(lists, mode, 1, 5));
    EXPECT_EQ(lists.PointList(1, 1), x);
    mode = kTurnWithData;
    EXPECT_TRUE(playback.Due(lists, mode, 1, 5));
    EXPECT_TRUE(playback.Advance(lists, mode, 1, 5));
    EXPECT_EQ(lists.PointList(1, 1), -y);
    EXPECT_NE(lists.TraceList(0, 7), cornerX);
    EXPECT_EQ(lists.PointList(0, 1), 0.5F);
    EXPECT_EQ(lists.legend.LegendMax, 5e15);
    mode = kVariableData;
    EXPECT_TRUE(playback.Due(lists, mode, 1, 5.5));
    EXPECT_TRUE(playback.Advance(lists, mode, 1, 5.5));
    EXPECT_EQ(lists.PointList(1, 1), x);
    EXPECT_EQ(lists.TraceList(0, 7), cornerX);
    EXPECT_FALSE(playback.Due(lists, mode, 1, 5.6));
  }
}

TEST(TurnPlayback, WithoutATurnNothingHappens) {
  PointLists lists;
  FillSheet(lists, 1, 2);
  TurnPlayback playback;
  for (int start : {kMeanData, kVariableData, kTurnWithData}) {
    int mode = start;
    EXPECT_FALSE(playback.Advance(lists, mode, 1, 5));
    EXPECT_FALSE(playback.Due(lists, mode, 1, 5));
  }
}

}  // namespace
}  // namespace orv
