#include "window/class_interface.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "support/scripted_dialogs.h"
#include "window/window_fixture.h"

namespace orv {
namespace {

struct ClassInterfaceTest : ::testing::Test {
  float Point(int row, int n) const { return lists.PointList(row, n); }
  void Normalise() {
    // As a paint leaves the flags.
    lists.PlotLoaded = lists.PlotNormalised = 1;
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  PointLists lists;
  int paints = 0;
  ClassInterface other{lists, reader, [this] { ++paints; }};
};

TEST_F(ClassInterfaceTest, PointsAreTheFirstThreeItemsTimesTheFactor) {
  Normalise();
  other.GlrayonXls(" 1 \t2\t3\t99\r\n4\t -5\t6.5", 2);
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_EQ(Point(1, 0), 2);
  EXPECT_EQ(Point(2, 0), 4);
  EXPECT_EQ(Point(3, 0), 6);
  EXPECT_EQ(Point(1, 1), 8);
  EXPECT_EQ(Point(2, 1), -10);
  EXPECT_EQ(Point(3, 1), 13);
  EXPECT_EQ(Point(4, 1), 0) << "no break";
  EXPECT_EQ(lists.FactorScale, 2);
  EXPECT_TRUE(lists.EarthOn);
  EXPECT_EQ(lists.PlotLoaded, 0);
  EXPECT_EQ(lists.PlotNormalised, 0);
  EXPECT_EQ(paints, 1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ClassInterfaceTest, TheEndOfTheLastRowBeginsNoFurtherPoint) {
  other.GlrayonXls("1\t2\t3\r\n4\t5\t6\r\n", 1);
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_FALSE(lists.EarthOn);
  other.GlrayonXls("1\t2\t3\n4\t5\t6\n7\t8\t9", 1);
  EXPECT_EQ(lists.NumberPoints, 2);
  EXPECT_EQ(Point(3, 1), 6);
  other.GlrayonXls("", 1);
  EXPECT_EQ(lists.NumberPoints, kNoEntry);
}

TEST_F(ClassInterfaceTest, TextsThatAreNotUtf8AreReadAsWindowsDoes) {
  other.InterFaceXls("caf\xe9", 0);
  EXPECT_EQ(other.Selection(), "café");
  other.GlrayonXls(
      "\xa0"
      "1\t\xa0"
      "2\xa0\t3",
      1);
  EXPECT_EQ(lists.NumberPoints, 0);
  EXPECT_EQ(Point(1, 0), 1);
  EXPECT_EQ(Point(2, 0), 2);
  EXPECT_EQ(lists.Title, "café");
  other.GlrayonXlsT(
      "\xa0"
      "7",
      0);
  EXPECT_EQ(Point(0, 0), 7);
  other.GlEventsXls("1\tS\xa0", 1);
  EXPECT_EQ(lists.EventList(1, 0), 1);
  EXPECT_TRUE(dialogs.boxes.empty());
  const std::string longest(kInterfaceCharacters, '\xe9');
  other.GlrayonXls(longest, 1);
  EXPECT_TRUE(dialogs.boxes.empty()) << "characters count, not bytes";
}

TEST_F(ClassInterfaceTest, AFactorOfZeroLeavesThePoints) {
  other.GlrayonXls("1\t2\t3", 5);
  Normalise();
  other.GlrayonXls("7\t8\t9\r\n1\t1\t1", 0);
  EXPECT_EQ(lists.NumberPoints, 0);
  EXPECT_EQ(Point(1, 0), 5);
  EXPECT_EQ(lists.FactorScale, 5);
  EXPECT_EQ(lists.PlotLoaded, 0);
  EXPECT_EQ(lists.PlotNormalised, 0);
  EXPECT_EQ(paints, 2);
}

TEST_F(ClassInterfaceTest, AFactorThatIsNoNumberIsRefused) {
  other.GlrayonXls("1\t2\t3", 1);
  for (const double factor : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(other.GlrayonXls("4\t5\t6", factor), RuntimeFailure);
    EXPECT_THROW(other.GlEventsXls("4\tS", factor), RuntimeFailure);
  }
  EXPECT_EQ(Point(1, 0), 1);
  EXPECT_EQ(lists.EventCount, kNoEntry);
}

TEST_F(ClassInterfaceTest, ManyRowsAndFortyFieldsAreTaken) {
  std::string text;
  for (int n = 0; n < 5000; ++n) {
    text += std::to_string(n) + "\t1\t2";
    for (int field = 4; field <= 40; ++field) text += "\tx";
    text += "\r\n";
  }
  dialogs.answers = {Answer::Ignore};
  other.GlrayonXls(text, 1);
  EXPECT_EQ(lists.NumberPoints, 4999) << "64 rows are a first size only";
  EXPECT_EQ(Point(1, 4999), 4999);
  EXPECT_EQ(Point(3, 4999), 2);
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(ClassInterfaceTest, ALongTextIsToldAndTakenWhole) {
  const std::string row = "1\t2\t3\r\n";  // 7 characters
  std::string text;
  while (text.size() + row.size() <= 65000) text += row;
  text.append(65000 - text.size(), ' ');
  other.GlrayonXls(text, 1);
  EXPECT_TRUE(dialogs.boxes.empty()) << "65000 characters are allowed";
  const int last = lists.NumberPoints;

  dialogs.answers = {Answer::Ignore};
  other.GlrayonXls(text + "5", 1);
  ASSERT_EQ(dialogs.boxes.size(), 2u);
  EXPECT_EQ(dialogs.boxes[0].text, "Overflow");
  EXPECT_EQ(dialogs.boxes[0].title, "Some Data are to be lost");
  EXPECT_EQ(dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_EQ(lists.NumberPoints, last);
  EXPECT_EQ(Point(1, last), 5) << "the character beyond counts too";

  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(other.GlrayonXls(text + "\r\n6\t6\t6", 1), ProgramEnd);
  EXPECT_EQ(lists.NumberPoints, last) << "an abort answer changes nothing";
  dialogs.answers = {Answer::Abort, Answer::Abort};
  EXPECT_THROW(other.GlrayonXlsT(text + "\r\n", 0), ProgramEnd);
  EXPECT_THROW(other.GlEventsXls(text + "\r\n", 1), ProgramEnd);
}

TEST_F(ClassInterfaceTest, AccentsCountAsOneCharacter) {
  std::string text;
  while (text.size() < 2 * 65000) text += "\xC3\xA9";
  other.GlrayonXlsT(text, 0);
  EXPECT_EQ(dialogs.Count("Overflow"), 0);
}

TEST_F(ClassInterfaceTest, ValuesGoToRow0) {
  other.GlrayonXls("1\t2\t3\r\n4\t5\t6\r\n7\t8\t9", 1);
  other.GlrayonXlsT("10\t1\r\n1e-18\r\n-2.5\r\n", 0);
  EXPECT_EQ(Point(0, 0), 10);
  EXPECT_EQ(Point(0, 1), 0) << "behind the seventeenth decimal nothing is left";
  EXPECT_EQ(Point(0, 2), -2.5F);
  EXPECT_EQ(Point(1, 2), 7) << "the points stay";
  EXPECT_EQ(lists.NumberPoints, 2);
  EXPECT_EQ(lists.PlotValueMin, -2.5);
  EXPECT_EQ(lists.PlotValueMax, 10);
  EXPECT_EQ(lists.legend.LegendMax, 10);
  EXPECT_FALSE(lists.TimePlot);
  EXPECT_EQ(paints, 2);
}

TEST_F(ClassInterfaceTest, ValuesMayComeBeforeThePoints) {
  other.GlrayonXlsT("3\r\n4", 1);
  other.GlrayonXls("1\t1\t1\r\n2\t2\t2", 1);
  EXPECT_EQ(Point(0, 1), 4);
  EXPECT_EQ(lists.PlotValueMax, 4);
  EXPECT_TRUE(lists.TimePlot);
}

TEST_F(ClassInterfaceTest, CommasAreReadAsInCells) {
  other.GlrayonXls("1,5\t2,25\t1,234.5", 1);
  EXPECT_EQ(Point(1, 0), 1.5F);
  EXPECT_EQ(Point(2, 0), 2.25F);
  EXPECT_EQ(Point(3, 0), 1234.5F);
  other.GlrayonXlsT("0,5", 0);
  EXPECT_EQ(Point(0, 0), 0.5F);
}

TEST_F(ClassInterfaceTest, TheFlagMakesATimePlot) {
  other.InterFaceXls("=MAX(A2:C60)", 1);
  EXPECT_EQ(other.Selection(), "=MAX(A2:C60)");
  EXPECT_EQ(other.FlagOptionToPlot(), 1);
  EXPECT_EQ(paints, 1);
  other.GlrayonXls("1\t2\t3", 1);
  EXPECT_TRUE(lists.TimePlot);
  EXPECT_EQ(lists.Title, "=MAX(A2:C60)");
  other.InterFaceXls("orbit", 0);
  EXPECT_FALSE(lists.TimePlot) << "the plot follows at once";
  EXPECT_EQ(lists.NumberPoints, 0) << "and keeps its points";
  EXPECT_EQ(lists.Title, "orbit");
}

TEST_F(ClassInterfaceTest, AnotherSpecificationBeginsAnEmptyPlot) {
  other.InterFaceXls("first", 0);
  other.GlrayonXls("1\t2\t3\r\n4\t5\t6", 1);
  other.GlrayonXlsT("7\r\n8", 1);
  other.GlEventsXls("1\tS", 1);
  other.InterFaceXls("first", 0);
  other.GlrayonXls("1\t1\t1\r\n2\t2\t2", 1);
  EXPECT_EQ(Point(0, 1), 8) << "the same plot goes on";
  other.InterFaceXls("second", 0);
  EXPECT_EQ(lists.EventCount, 0);
  other.GlrayonXls("1\t2\t3\r\n4\t5\t6", 1);
  EXPECT_EQ(Point(0, 1), 0);
  EXPECT_EQ(lists.EventCount, kNoEntry);
  EXPECT_FALSE(lists.TimePlot);
  other.GlEventsXls("1\tS", 1);
  EXPECT_EQ(lists.NumberPoints, 1) << "and what follows belongs to it";
}

TEST_F(ClassInterfaceTest, EventsTakeTheirStateFromTheLastLetter) {
  other.GlEventsXls("100\tS\r\n200\tE\r\n300\t1\r\n400\t0\r\n500\t start s\r\n600\tend E\r\n", 1000);
  EXPECT_EQ(lists.EventCount, 5);
  for (int n = 0; n <= 5; ++n) {
    EXPECT_EQ(lists.EventList(0, n), 100.0F * static_cast<float>(n + 1)) << "times are not scaled";
    EXPECT_EQ(lists.EventList(1, n), n % 2 == 0 ? 1 : 0) << n;
  }
  EXPECT_EQ(lists.FactorScale, 1);
  EXPECT_EQ(paints, 1);
}

TEST_F(ClassInterfaceTest, AnotherStateGoesToTheEventBefore) {
  other.GlEventsXls("1\tS\r\n2\t0.25\r\n3\t21\r\n4\t7\r\n5\tE", 1);
  EXPECT_EQ(lists.EventCount, 4);
  EXPECT_EQ(lists.EventList(1, 0), 0.25F) << "of the second row";
  EXPECT_EQ(lists.EventList(1, 1), 0);
  EXPECT_EQ(lists.EventList(1, 2), 7) << "the 1 at the end of 21 gave way to the fourth row";
  EXPECT_EQ(lists.EventList(1, 3), 0);
  other.GlEventsXls("1\t7\r\n2\tS", 1);
  EXPECT_EQ(lists.EventCount, 1);
  EXPECT_EQ(lists.EventList(1, 0), 0) << "before the first there is none";
}

TEST_F(ClassInterfaceTest, EventsAndPointsStandSideBySide) {
  other.GlEventsXls("1\tS", 1);
  other.GlrayonXls("1\t2\t3", 1);
  EXPECT_EQ(lists.EventCount, 0);
  EXPECT_EQ(lists.EventList(1, 0), 1);
  EXPECT_EQ(lists.NumberPoints, 0);
}

TEST_F(ClassInterfaceTest, APlotOfTheProgramGivesWay) {
  lists.NumberPoints = 3;
  lists.PointList(0, 2) = 5;
  lists.TraceCount = 0;
  lists.TraceList(0, 0) = 4;
  lists.PenUpMode = 1;
  lists.IndexPlot = 13;
  lists.Scaled = true;
  lists.Title = "OrvValis model";
  other.InterFaceXls("text", 0);
  EXPECT_EQ(lists.NumberPoints, 3) << "nothing is there to show instead yet";
  other.GlrayonXls("1\t2\t3\r\n4\t5\t6\r\n7\t8\t9", 1);
  EXPECT_EQ(lists.NumberPoints, 2);
  EXPECT_EQ(Point(0, 2), 0);
  EXPECT_EQ(lists.TraceCount, kNoEntry);
  EXPECT_EQ(lists.PenUpMode, 0);
  EXPECT_EQ(lists.IndexPlot, 0);
  EXPECT_FALSE(lists.Scaled);
  EXPECT_EQ(lists.Title, "text");
}

TEST_F(ClassInterfaceTest, WhatIsNoNumberIsLogged) {
  other.GlrayonXls("a\tb\t1\r\n2\t\t3\r\nnone\t0\t0\r\n1e39\t1\t1\r\n", 1);
  EXPECT_EQ(Point(1, 0), 0);
  EXPECT_EQ(Point(2, 1), 0) << "an empty item is 0 without a word";
  EXPECT_EQ(Point(1, 3), 0);
  ASSERT_EQ(dialogs.log.size(), 2u);
  EXPECT_EQ(dialogs.log[1], "_GlrayonXls, row 1 and 2 more: an item is no number and reads as 0");
  EXPECT_EQ(dialogs.log[0], "_GlrayonXls, row 4: a number is too large for the view and reads as 0");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ClassInterfaceTest, AMillionBadNumbersStopTheUserOnce) {
  std::string text;
  for (int n = 0; n < 50; ++n) text += "1e999\t1e999\t1\r\n";
  other.GlrayonXls(text, 1);
  EXPECT_EQ(dialogs.boxes.size(), 1u);
  EXPECT_EQ(lists.NumberPoints, 49);
  EXPECT_EQ(Point(1, 49), 0);
  EXPECT_EQ(Point(3, 49), 1);
}

TEST_F(ClassInterfaceTest, NulBytesAndWrongBytesAreNoNumbers) {
  other.GlrayonXls(std::string("1\0 2\t\xFF\xFE\t3\r\n4\t5\t6", 17), 1);
  EXPECT_EQ(lists.NumberPoints, 1);
  EXPECT_EQ(Point(1, 0), 1);
  EXPECT_EQ(Point(2, 0), 0);
  EXPECT_EQ(Point(3, 0), 3);
  EXPECT_EQ(Point(3, 1), 6);
  EXPECT_EQ(dialogs.log.size(), 1u);
}

TEST_F(ClassInterfaceTest, RowsBeyondTheListsAreTold) {
  dialogs.answers = {Answer::Ignore, Answer::Ignore};
  std::string text;
  text.reserve(3 * (kListEntries + 2));
  for (int n = 0; n < kListEntries + 2; ++n) text += "1\r\n";
  other.GlEventsXls(text, 1);
  EXPECT_EQ(lists.EventCount, kListEntries - 1);
  ASSERT_EQ(dialogs.log.size(), 1u);
  EXPECT_EQ(dialogs.log[0], "_GlEventsXls, row 1048577 and 1 more: no room is left for these rows");
}

TEST_F(ClassInterfaceTest, APointIsThePointInEveryLocale) {
  CellText german{prompt, Locale{",", "."}};
  ClassInterface there{lists, german, {}};
  there.GlrayonXls("1.5\t2,5\t1.234,5", 1);
  EXPECT_EQ(Point(1, 0), 1.5F);
  EXPECT_EQ(Point(2, 0), 2.5F);
  EXPECT_EQ(Point(3, 0), 1234.5F);
}

using ClassInterfaceScene = testing::WindowFixture;

TEST_F(ClassInterfaceScene, ThePaintBehindACallScalesThePlot) {
  int paints = 0;
  ClassInterface other(run.lists, reader, [&] { ++paints; });
  ShowPlot();
  scene.Draw();
  other.GlrayonXls("1000\t0\t0\r\n0\t500\t0\r\n0\t0\t0", 0.001);
  scene.Draw();
  EXPECT_EQ(paints, 1);
  EXPECT_EQ(run.lists.PlotLoaded, 1);
  EXPECT_NEAR(run.lists.PointList(1, 0), scene.Scale().Scale80, 1e-3) << "the real size fills the scene";
  EXPECT_NEAR(run.lists.PointList(2, 1), scene.Scale().Scale80 / 2, 1e-3);
  EXPECT_FALSE(run.lists.FreeScale);
  other.GlrayonXlsT("1\r\n2\r\n3", 0);
  scene.Draw();
  EXPECT_NEAR(run.lists.PointList(1, 0), scene.Scale().Scale80, 1e-3) << "a second scaling changes nothing";
  other.GlrayonXls("1\t0\t0\r\n0\t50\t0\r\n0\t0\t0", 1);
  scene.Draw();
  EXPECT_TRUE(run.lists.FreeScale);
  EXPECT_NEAR(run.lists.PointList(2, 1), scene.Scale().Scale80, 1e-3);
}

}  // namespace
}  // namespace orv
