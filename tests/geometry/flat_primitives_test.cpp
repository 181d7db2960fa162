#include "geometry/flat_primitives.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/geometry_model.h"

namespace orv::testing {
namespace {

TEST(Rect, OneCellLiesAtTheOrigin) {
  GeometryModel model({"Panel rect size 2 3 cells 1 1"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 0, 0, 0, 0);
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, 1, 0);
  EXPECT_EQ(model.Data(1, 1, 1, 4), 6);
  EXPECT_EQ(model.Data(1, 1, 1, 8), 10000);
  ExpectPoint(model.CornerPoint(1, 1, 1, 1), -1, -1.5, 0, 0);
  ExpectPoint(model.CornerPoint(1, 1, 1, 2), 1, -1.5, 0, 0);
  ExpectPoint(model.CornerPoint(1, 1, 1, 3), 1, 1.5, 0, 0);
  ExpectPoint(model.CornerPoint(1, 1, 1, 4), -1, 1.5, 0, 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Rect, FirstCellIsAtHighXAndLowY) {
  GeometryModel model({"Panel RECT size 4 2 cells 4 2", "Free rectfree 1 5 10 14 cells 2 4"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 1.5, -0.5, 0, 0);
  ExpectPoint(model.Centre(1, 4, 2), -1.5, 0.5, 0, 0);
  ExpectPoint(model.Centre(2, 1, 1), 4, 10.5, 0, 0);
  ExpectPoint(model.Centre(2, 2, 4), 2, 13.5, 0, 0);
  EXPECT_EQ(model.Data(2, 1, 1, 4), 2);
}

TEST(Rect, HeaderTellsTheGrid) {
  GeometryModel model({"Panel rect size 4 2 cells 4 2", "Free rectfree 1 5 10 14 cells 2 4"});
  model.Build();
  const double rect[11] = {0, 4, 2, 0, -1, 1, 1.5, -0.5, 1, 1, 1};
  const double rectfree[11] = {0, 2, 4, 0, -2, 1, 4, 10.5, 1, 1, 3};
  for (int column = 1; column <= 10; ++column) {
    EXPECT_EQ(model.Header(1, column), rect[column]) << column;
    EXPECT_EQ(model.Header(2, column), rectfree[column]) << column;
  }
}

TEST(Rect, TheOneStripIsItsWholeSurface) {
  GeometryModel model({"Panel rect size 4 2 cells 4 2"});
  model.Build();
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 1);
  ExpectPoint(model.StripPoint(1, 1, 1), -2, -1, 0, 0);
  ExpectPoint(model.StripPoint(1, 1, 2), 2, -1, 0, 0);
  ExpectPoint(model.StripPoint(1, 1, 3), 2, 1, 0, 0);
  ExpectPoint(model.StripPoint(1, 1, 4), -2, 1, 0, 0);
}

TEST(Rect, WithoutCellsTheStepsOfThePrimitiveBeforeStand) {
  GeometryModel model({"Panel rect size 4 2 cells 4 2", "Empty rect size 4 2 cells 0 0"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.Header(2, 4), -1);
  EXPECT_EQ(model.Header(2, 5), 1);
  EXPECT_EQ(model.Header(2, 6), 1.5);
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Division by zero");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Error fautea_SpaceApplicationGeometry");
}

TEST(Rect, BrokenCellCountsRunToTheWholeNumberBelow) {
  GeometryModel model({"Panel rect size 5 2 cells 2.5 2"});
  model.Build();
  EXPECT_EQ(model.Header(1, 1), 2.5);
  EXPECT_EQ(model.Header(1, 4), -2);
  EXPECT_EQ(model.Data(1, 2, 1, 1), -0.5);
  EXPECT_EQ(model.Data(1, 3, 1, 4), 0);
}

TEST(RectOriented, AnExactRectangleTakesItsFirstCorner) {
  GeometryModel model({"Plate rectOriented size 1 1 0  3 1 0  3 2 0  1 2 0 cells 2 1"});
  model.Build();
  const double header[11] = {0, 2, 1, 0, -1, 1, -0.5, 0.5, 1, 1, 3.5};
  for (int column = 1; column <= 10; ++column) EXPECT_EQ(model.Header(1, column), header[column]) << column;
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, 1, 0);
  ExpectPoint(model.Centre(1, 1, 1), 2.5, 1.5, 0);
  ExpectPoint(model.Centre(1, 2, 1), 1.5, 1.5, 0);
  EXPECT_EQ(model.Data(1, 2, 1, 4), 1);
  ExpectPoint(model.CornerPoint(1, 1, 1, 1), 2, 1, 0);
  ExpectPoint(model.CornerPoint(1, 1, 1, 3), 3, 2, 0);
  ExpectPoint(model.StripPoint(1, 1, 1), 1, 1, 0);
  ExpectPoint(model.StripPoint(1, 1, 3), 3, 2, 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());
  EXPECT_TRUE(model.dialogs.log.empty());
}

TEST(RectOriented, TheOrderOfTheCornersTurnsTheNormal) {
  GeometryModel model(
      {"A rectoriented 0 0 0  0 2 0  0 2 3  0 0 3 cells 1 1", "B RECTORIENTED 0 0 0  0 0 3  0 2 3  0 2 0 cells 1 1"});
  model.Build();
  ExpectPoint(model.Normal(1, 1, 1), 1, 0, 0);
  ExpectPoint(model.Normal(2, 1, 1), -1, 0, 0);
  ExpectPoint(model.Centre(1, 1, 1), 0, 1, 1.5);
  ExpectPoint(model.Centre(2, 1, 1), 0, 1, 1.5);
  EXPECT_DOUBLE_EQ(model.Data(2, 1, 1, 4), 6);
}

TEST(RectOriented, SquaresUpTheCornerNearestToARightAngle) {
  // Right angles at C1, C2 only; the deviation at t compares edge t + 1 with the squared-up one, so t = 1 (corner C2's
  // angle) and t = 4 (corner C1's) are exact and the lowest wins.
  GeometryModel model({"Plate rectoriented 0 0 0  2 0 0  2 1 0  0 3 0 cells 1 1"});
  model.Build();
  ExpectPoint(model.CornerPoint(1, 1, 1, 1), 0, 0, 0);
  ExpectPoint(model.CornerPoint(1, 1, 1, 3), 2, 1, 0);
  EXPECT_DOUBLE_EQ(model.Data(1, 1, 1, 4), 2);
  // Only the angle between edges 2 and 3 is right: the rectangle starts where edge 2 does, at C2.
  GeometryModel other({"Plate rectoriented 1.5 0.5 0  3 2 0  0 2 0  0 0 0 cells 1 1"});
  other.Build();
  ExpectPoint(other.CornerPoint(1, 1, 1, 1), 3, 2, 0);
  ExpectPoint(other.CornerPoint(1, 1, 1, 3), 0, 0, 0);
  ExpectPoint(other.Normal(1, 1, 1), 0, 0, 1);
}

TEST(RectOriented, TheNormalIsNotMadeUnitAgain) {
  // A parallelogram of 60 and 120 degrees: every deviation is alike, the normal has the sine as its length.
  GeometryModel model({"Plate rectoriented 0 0 0  2 0 0  3 1.7320508075688772 0  1 1.7320508075688772 0 cells 1 1"});
  model.Build();
  EXPECT_NEAR(model.Data(1, 1, 1, 7), std::sqrt(3.0) / 2, 1e-12);
  EXPECT_NEAR(model.Data(1, 1, 1, 4), 4, 1e-12);
}

TEST(RectOriented, ACollapsedEdgeFails) {
  GeometryModel model({"Plate rectoriented 0 0 0  0 0 0  0 0 0  0 0 0 cells 1 1"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.dialogs.Count("Overflow"), 1);
  EXPECT_EQ(model.Header(1, 10), 3.5);
}

TEST(Rect2Sides, EvenCellsWithoutGapEqualThePlainPlate) {
  GeometryModel model({"Two rect2sides 1 5 10 14 1 1 0 cells 4 2", "Free rectfree 1 5 10 14 cells 4 2"});
  model.Build();
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 2; ++j) {
      for (int q = 1; q <= 8; ++q) EXPECT_EQ(model.Data(1, i, j, q), model.Data(2, i, j, q));
      for (int corner = 1; corner <= 4; ++corner) {
        ExpectPoint(model.CornerPoint(1, i, j, corner), model.CornerPoint(2, i, j, corner), 0);
      }
    }
  }
  for (const int column : {1, 2, 3, 4, 5, 6, 7, 8, 9}) EXPECT_EQ(model.Header(1, column), model.Header(2, column));
  EXPECT_EQ(model.Header(1, 10), 16);
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 1);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Rect2Sides, WidthsGrowToTheMiddleAndHeightsUpward) {
  // Weights 1 2 4 2 1 along i and 1 3 along j.
  GeometryModel model({"Two rect2sides 0 10 0 8 2 3 0 cells 5 2"});
  model.Build();
  const double widths[6] = {0, 1, 2, 4, 2, 1};
  double edge = 10;
  for (int i = 1; i <= 5; ++i) {
    EXPECT_DOUBLE_EQ(model.Data(1, i, 1, 1), edge - widths[i] / 2) << i;
    EXPECT_DOUBLE_EQ(model.Data(1, i, 1, 4), widths[i] * 2);
    EXPECT_DOUBLE_EQ(model.Data(1, i, 2, 4), widths[i] * 6);
    EXPECT_DOUBLE_EQ(model.Data(1, i, 2, 2), 5);
    edge -= widths[i];
  }
  EXPECT_DOUBLE_EQ(model.Header(1, 4), -1);
  EXPECT_DOUBLE_EQ(model.Header(1, 5), 2);
  EXPECT_DOUBLE_EQ(model.Header(1, 6), 10 - 1 * 8 / 2.0);
  EXPECT_DOUBLE_EQ(model.Header(1, 7), 1);
  EXPECT_FLOAT_EQ(model.state.Rect2SidesLocalTable(1, 3, 2, 1), 5);
  EXPECT_FLOAT_EQ(model.state.Rect2SidesLocalTable(1, 3, 2, 2), 5);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Rect2Sides, BothFacesLookOutward) {
  GeometryModel model({"Up rect2sides 0 2 0 2 1 1 0.5 cells 2 4", "Down rect2sides 0 2 0 2 1 1 -0.5 cells 2 4"});
  model.Build();
  EXPECT_EQ(model.Header(1, 10), 15.5);
  EXPECT_EQ(model.Header(2, 10), 15);
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, -1, 0);
  ExpectPoint(model.Normal(1, 1, 3), 0, 0, 1, 0);
  ExpectPoint(model.Normal(2, 1, 2), 0, 0, 1, 0);
  ExpectPoint(model.Normal(2, 1, 4), 0, 0, -1, 0);
  ExpectPoint(model.Centre(1, 2, 2), 0.5, 1.5, 0, 0);
  ExpectPoint(model.Centre(1, 2, 3), 0.5, 0.5, 0.5, 0);
  ExpectPoint(model.Centre(2, 2, 4), 0.5, 1.5, -0.5, 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Rect2Sides, TheSecondFaceRepeatsTheHeightsOfTheFirst) {
  GeometryModel model({"Two rect2sides 0 1 0 7 1 2 1 cells 1 6"});
  model.Build();
  for (int j = 1; j <= 3; ++j) {
    EXPECT_EQ(model.Data(1, 1, j, 4), model.Data(1, 1, j + 3, 4));
    EXPECT_EQ(model.Data(1, 1, j, 2), model.Data(1, 1, j + 3, 2));
  }
  EXPECT_DOUBLE_EQ(model.Data(1, 1, 3, 4), 4);
}

TEST(Rect2Sides, AnOddCountLosesARowAndItsStripsReadTheCountAsTyped) {
  GeometryModel model({"Two rect2sides 0 1 0 4 1 1 0.5 cells 3 5"});
  GeometryCall call(model.Input(), model.names, model.cells, model.state, model.reader);
  ReadPrimitive(call, 1);
  BuildRect2Sides(call, 16);
  EXPECT_EQ(model.Header(1, 2), 4);
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 2);
  // Rows 1 to 2.5, which is row 2; then 3.5, which is row 4, to 5, which no cell has.
  ExpectPoint(model.StripPoint(1, 1, 1), model.CornerPoint(1, 3, 1, 1), 0);
  ExpectPoint(model.StripPoint(1, 1, 2), model.CornerPoint(1, 1, 1, 2), 0);
  ExpectPoint(model.StripPoint(1, 1, 3), model.CornerPoint(1, 1, 2, 3), 0);
  ExpectPoint(model.StripPoint(1, 1, 4), model.CornerPoint(1, 3, 2, 4), 0);
  ExpectPoint(model.StripPoint(1, 2, 1), model.CornerPoint(1, 3, 4, 1), 0);
  ExpectPoint(model.StripPoint(1, 2, 2), model.CornerPoint(1, 1, 4, 2), 0);
  ExpectPoint(model.StripPoint(1, 2, 3), 0, 0, 0, 0);
  EXPECT_NE(model.Corner(1, 1, 4, 2, 2), 0);
}

TEST(Rect2Sides, PlacedStripsAreTheFirstTwoColumns) {
  GeometryModel model({"Two rect2sides 0 1 0 4 1 1 0.5 cells 3 4"});
  model.Build();
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 2);
  for (int s = 1; s <= 2; ++s) {
    ExpectPoint(model.StripPoint(1, s, 1), model.CornerPoint(1, s, 1, 1), 0);
    ExpectPoint(model.StripPoint(1, s, 2), model.CornerPoint(1, s, 1, 2), 0);
    ExpectPoint(model.StripPoint(1, s, 3), model.CornerPoint(1, s, 4, 3), 0);
    ExpectPoint(model.StripPoint(1, s, 4), model.CornerPoint(1, s, 4, 4), 0);
  }
}

TEST(Rect2Sides, OneRowAndAGapDoNotFit) {
  GeometryModel model({"Two rect2sides 0 1 0 4 1 1 0.5 cells 2 1"});
  model.Build();
  EXPECT_EQ(model.Header(1, 2), 0);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
  int told = 0;
  for (const auto& box : model.dialogs.boxes) {
    told += box.text == "Problem coherence, see hallam" && box.title == "Difficult problem" ? 1 : 0;
  }
  EXPECT_EQ(told, 2);
  EXPECT_EQ(model.dialogs.Count("Do you want to abort?"), 2);
}

TEST(Rect2Sides, AbortAtAProblemOfCoherenceEndsTheProgram) {
  // Two and a half columns: the two whole ones do not fill the side.
  GeometryModel model({"Two rect2sides 0 1 0 4 1 1 0 cells 2.5 2"});
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Build(), ProgramEnd);
  ASSERT_EQ(model.dialogs.Count("Problem coherence"), 1);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Two rect2sides 0 1 0 4 1 1 0 cells 2.5 2 PB at:Problem coherence, see hallam");
  EXPECT_EQ(model.dialogs.boxes[0].title, "");
}

TEST(Rect2Sides, WithoutGapAWrongHeightNamesThePrimitive) {
  GeometryModel model({"Two rect2sides 0 1 0 4 1 1 0 cells 1 2.5"});
  model.Build();
  ASSERT_FALSE(model.dialogs.boxes.empty());
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Two rect2sides 0 1 0 4 1 1 0 cells 1 2.5 PB at: Problem coherence, see hallam");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Difficult problem");
}

}  // namespace
}  // namespace orv::testing
