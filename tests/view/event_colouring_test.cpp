#include "view/event_colouring.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

PointLists Events(std::initializer_list<std::pair<float, float>> events, int twoState, float firstTime = 0) {
  PointLists lists;
  lists.EventTwoState = twoState;
  lists.PointList(0, 0) = firstTime;
  lists.NumberPoints = 0;
  for (const auto& [time, state] : events) {
    lists.EventList(0, ++lists.EventCount) = time;
    lists.EventList(1, lists.EventCount) = state;
  }
  return lists;
}

TEST(EventStates, WithoutEventsNothingIsInAnEvent) {
  EXPECT_EQ(EventStates(PointLists()).At(3), 0);
}

TEST(EventStates, PairsOfBeginningAndEnd) {
  const EventStates states(Events({{1, 1}, {2, 1}, {5, 1}, {6, 1}}, 1));
  EXPECT_EQ(states.At(0.5), 0);
  EXPECT_EQ(states.At(1), 1);
  EXPECT_EQ(states.At(1.5), 1);
  EXPECT_EQ(states.At(2), 1);
  EXPECT_EQ(states.At(3), 0);
  EXPECT_EQ(states.At(5.5), 1);
  EXPECT_EQ(states.At(7), 0);
}

TEST(EventStates, PairsAreCountedFromTheFirstPoint) {
  // The first point lies behind the second event, so the second and the third make the first pair.
  const EventStates states(Events({{1, 1}, {2, 1}, {5, 1}, {6, 1}}, 1, 3));
  EXPECT_EQ(states.At(1.5), 0);
  EXPECT_EQ(states.At(3), 1);
  EXPECT_EQ(states.At(5.5), 0);
}

TEST(EventStates, ABeginningWithoutEndIsNoEvent) {
  const EventStates states(Events({{1, 1}, {2, 1}, {5, 1}}, 1));
  EXPECT_EQ(states.At(9), 0);
}

TEST(EventStates, LevelsHoldUntilTheNextEntry) {
  const EventStates states(Events({{1, 1}, {2, 0}, {3, 2.5F}}, 0));
  EXPECT_EQ(states.At(0.5), 0);
  EXPECT_EQ(states.At(1), 1);
  EXPECT_EQ(states.At(2.5), 0);
  EXPECT_EQ(states.At(3), 2.5);
  EXPECT_EQ(states.At(1e9), 2.5);
  EXPECT_TRUE(EventStates::IsolatedDot(2.5));
  EXPECT_FALSE(EventStates::IsolatedDot(2));
}

TEST(EventStates, ASingleEntryCounts) {
  const EventStates states(Events({{1, 2}}, 0));
  EXPECT_EQ(states.At(0), 0);
  EXPECT_EQ(states.At(2), 2);
}

TEST(EventStates, TheWalkStopsAtTheFirstLaterEntry) {
  // Times out of order: the walk upwards ends before the first entry beyond the time.
  const EventStates states(Events({{1, 1}, {9, 0}, {2, 3}}, 0));
  EXPECT_EQ(states.At(5), 1);
  EXPECT_EQ(states.At(9), 3);
}

TEST(ValueCurve, IsLinearBetweenItsEntries) {
  PointLists lists;
  for (const auto& [time, value] : {std::pair{1.0F, 10.0F}, std::pair{3.0F, 20.0F}, std::pair{3.0F, 40.0F}}) {
    lists.ValueTable(0, ++lists.ValueCount) = time;
    lists.ValueTable(1, lists.ValueCount) = value;
  }
  const ValueCurve curve(lists);
  double value = -1;
  EXPECT_FALSE(curve.At(0.5, value));
  EXPECT_EQ(value, -1);
  EXPECT_TRUE(curve.At(1, value));
  EXPECT_EQ(value, 10);
  EXPECT_TRUE(curve.At(2, value));
  EXPECT_EQ(value, 15);
  EXPECT_TRUE(curve.At(3, value));
  EXPECT_EQ(value, 40);
  EXPECT_FALSE(curve.At(3.5, value));
  EXPECT_FALSE(ValueCurve(PointLists()).At(0, value));
}

}  // namespace
}  // namespace orv
