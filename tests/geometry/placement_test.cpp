#include "geometry/placement.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/geometry_model.h"
#include "numerics/angles.h"

namespace orv::testing {
namespace {

TEST(Placement, TheOrderOfTheCommandsIsTheOrderOfTheTransforms) {
  GeometryModel model({"A rect 1 1 cells 1 1 T 1 0 0 R Z 90", "B rect 1 1 cells 1 1 R Z 90 T 1 0 0"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 0, 1, 0);
  ExpectPoint(model.Centre(2, 1, 1), 1, 0, 0);
}

TEST(Placement, TranslationMovesCentresAndCornersButNotNormals) {
  GeometryModel model({"A rect 2 4 cells 2 2", "B rect 2 4 cells 2 2 T 1.5 -2 3"});
  model.Build();
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 2; ++j) {
      const Vector3 shift(1.5, -2, 3);
      Vector3 moved;
      vScaleAdd(model.Centre(1, i, j), 1, shift, moved);
      ExpectPoint(model.Centre(2, i, j), moved, 0);
      for (int corner = 1; corner <= 4; ++corner) {
        vScaleAdd(model.CornerPoint(1, i, j, corner), 1, shift, moved);
        ExpectPoint(model.CornerPoint(2, i, j, corner), moved, 0);
      }
      ExpectPoint(model.Normal(2, i, j), 0, 0, 1, 0);
    }
  }
}

struct Turn {
  const char* command;
  Vector3 centre;
  Vector3 corner;
  Vector3 normal;
};

TEST(Placement, RotationsAreRightHandedAroundTheAxesOfTheModel) {
  // Centre (1, 2, 3), corner 1 (0.5, 1.5, 3), normal +Z.
  const Turn turns[] = {{"R X 90", {1, -3, 2}, {0.5, -3, 1.5}, {0, -1, 0}},
                        {"R Y 90", {3, 2, -1}, {3, 1.5, -0.5}, {1, 0, 0}},
                        {"R Z 90", {-2, 1, 3}, {-1.5, 0.5, 3}, {0, 0, 1}},
                        {"R Z -90", {2, -1, 3}, {1.5, -0.5, 3}, {0, 0, 1}},
                        {"R X 180", {1, -2, -3}, {0.5, -1.5, -3}, {0, 0, -1}}};
  for (const Turn& turn : turns) {
    GeometryModel model({std::string("A rect 1 1 cells 1 1 T 1 2 3 ") + turn.command});
    model.Build();
    ExpectPoint(model.Centre(1, 1, 1), turn.centre);
    ExpectPoint(model.CornerPoint(1, 1, 1, 1), turn.corner);
    ExpectPoint(model.Normal(1, 1, 1), turn.normal);
  }
}

TEST(Placement, EveryCornerTurnsWithItsCell) {
  GeometryModel model({"A rect 3 4 cells 3 2 T 1 1 1 R X 20 R Y 30 R Z 40 T 0 1 0"});
  model.Build();
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      Vector3 mean;
      for (int corner = 1; corner <= 4; ++corner) vScaleAdd(model.CornerPoint(1, i, j, corner), 0.25, mean, mean);
      ExpectPoint(model.Centre(1, i, j), mean);
      Vector3 side;
      vCombine(model.CornerPoint(1, i, j, 1), 1, model.CornerPoint(1, i, j, 2), -1, side);
      EXPECT_NEAR(vNorm(side), 1, 1e-12);
      EXPECT_NEAR(vDot(side, model.Normal(1, i, j)), 0, 1e-12);
    }
  }
}

TEST(Placement, TheAxisIsTheFirstLetterOfTheWord) {
  GeometryModel model({"A rect 1 1 cells 1 1 T 1 0 0 Rz 30", "B rect 1 1 cells 1 1 T 1 0 0 R Z 30",
                       "C rect 1 1 cells 1 1 t1 0 0 rzenith 30"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), std::sqrt(3.0) / 2, 0.5, 0);
  ExpectPoint(model.Centre(2, 1, 1), model.Centre(1, 1, 1), 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Placement, AnUnknownAxisIsToldAndYTaken) {
  GeometryModel model({"A rect 1 1 cells 1 1 T 1 0 0 R w 90"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 0, 0, -1);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "A rect 1 1 cells 1 1 T 1 0 0 R w 90 PB at:Error Rotation with no correct axis name in imput data : "
            "t 1 0 0 r w 90 axe Y taken by default");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Information missing");
  EXPECT_EQ(model.dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
}

TEST(Placement, AbortAtAnUnknownAxisEndsTheProgram) {
  GeometryModel model({"A rect 1 1 cells 1 1 R 90"});
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Build(), ProgramEnd);
}

TEST(Placement, AWrongLetterIsSkippedUnlessTheUserAborts) {
  GeometryModel model({"A rect 1 1 cells 1 1 T 1 2 3 q R Z 180"});
  model.dialogs.answers = {Answer::Retry};
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), -1, -2, 3);
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "A rect 1 1 cells 1 1 T 1 2 3 q R Z 180 PB at:Q this specification of rotation translation is not allowed "
            "here. See Hallam ");
  EXPECT_EQ(model.dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  GeometryModel aborted({"A rect 1 1 cells 1 1 qq"});
  aborted.dialogs.answers = {Answer::Ignore, Answer::Abort};
  EXPECT_THROW(aborted.Build(), ProgramEnd);
  EXPECT_EQ(aborted.dialogs.boxes.size(), 2U);
}

TEST(Placement, MissingNumbersOfATranslationAreTold) {
  GeometryModel model({"A rect 1 1 cells 1 1 T 1 2"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 1, 2, 0);
  EXPECT_EQ(model.dialogs.Count("Input data in Excel sheet not correct: line ==>1 2<=="), 1);
  GeometryModel angle({"A rect 1 1 cells 1 1 T 1 2 0 R Z"});
  angle.Build();
  ExpectPoint(angle.Centre(1, 1, 1), 1, 2, 0);
  EXPECT_TRUE(angle.dialogs.boxes.empty());
}

TEST(Placement, TheThrusterFollowsItsCommands) {
  GeometryModel model({"Engine thr size 0.1 0.5 cells 4 2 R X 90 T 1 2 3"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 1, 2, 3);
  ExpectPoint(model.Normal(1, 1, 1), 0, -1, 0);
  // The corner elements that hold the normal are shifted too.
  ExpectPoint(model.CornerPoint(1, 1, 1, 2), 1, 1, 3);
}

TEST(Placement, EnteringTheAutomaticRotationKeepsItsForm) {
  struct Form {
    const char* tail;
    const char* keyword;
    double length;
  };
  const Form forms[] = {{"a y", "A", 0},
                        {"A R y", "A", 0},
                        {"Automatic Y", "Automatic", 0},
                        {"AutomaticRotation R Y T 1 0 0", "AutomaticRotation", 7},
                        {"R Z 10 Automatic y R X 5", "Automatic", 5}};
  for (const Form& form : forms) {
    GeometryModel model({"P rect 1 1 1 1", std::string("B rect 1 1 cells 1 1 ") + form.tail});
    model.Build();
    EXPECT_EQ(model.state.rotation.RotatingPrimitive, 2) << form.tail;
    EXPECT_EQ(model.state.rotation.RotationKeyword, form.keyword) << form.tail;
    EXPECT_EQ(model.state.rotation.RotationAxisLetter, "Y") << form.tail;
    EXPECT_EQ(model.state.rotation.RotationTailLength, form.length) << form.tail;
    EXPECT_EQ(model.state.AutoRotatedList, (std::vector<int>{1, 2})) << form.tail;
    EXPECT_TRUE(model.dialogs.boxes.empty()) << form.tail;
  }
}

TEST(Placement, APrimitiveEntersTheListOnce) {
  GeometryModel model({"A rect 1 1 cells 1 1 A X A Y", "B rect 1 1 cells 1 1", "C rect 1 1 cells 1 1 A Z"});
  model.Build();
  EXPECT_EQ(model.state.AutoRotatedList, (std::vector<int>{2, 1, 3}));
  EXPECT_EQ(model.state.rotation.RotatingPrimitive, 3);
  EXPECT_EQ(model.state.rotation.RotationAxisLetter, "Z");
  EXPECT_TRUE(model.state.Rotates(3));
  EXPECT_FALSE(model.state.Rotates(2));
}

TEST(Placement, TransformsReachEveryCellOfABrokenSizedArray) {
  // Corners with fewer columns than the cells: what lies inside moves, the rest is told.
  GeometryModel model({"A rect 4 4 cells 4 4"});
  model.Build();
  GeometryCall call(model.Input(), model.names, model.cells, model.state, model.reader);
  model.dialogs.answers = std::deque<Answer>(100, Answer::Retry);
  model.cells.CellCorners.Size(11, 2, 4, 12);
  TranslatePrimitive(call, 1, 1, 0, 0);
  EXPECT_EQ(model.Data(1, 4, 4, 1), -0.5);
  EXPECT_EQ(model.Corner(1, 2, 4, 1, 1), 1);
  EXPECT_EQ(model.dialogs.Count("error faute"), 2 * 4 * 12);
}

}  // namespace
}  // namespace orv::testing
