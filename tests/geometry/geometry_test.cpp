#include "geometry/geometry.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/geometry_model.h"
#include "numerics/angles.h"

namespace orv::testing {
namespace {

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";

TEST(Geometry, CountsTheCellsInColumns29And30) {
  GeometryModel model({"A rect 1 1 cells 3 2", "V cyl 1 1 2 cells 4 2"});
  model.Build();
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      EXPECT_EQ(model.Data(1, i, j, 29), i);
      EXPECT_EQ(model.Data(1, i, j, 30), j);
    }
  }
  EXPECT_EQ(model.Data(2, 4, 2, 29), 4);
  EXPECT_EQ(model.Data(3, 4, 2, 29), 0);
  EXPECT_EQ(model.Data(3, 4, 2, 30), 0);
  EXPECT_NE(model.Data(3, 4, 2, 4), 0);
}

TEST(Geometry, EveryShellWalksTheTail) {
  GeometryModel model({"V cyl 2 1 2 cells 4 1 T 0 0 5 R X 90"});
  model.Build();
  for (int k = 1; k <= 2; ++k) {
    EXPECT_NEAR(model.Data(k, 1, 1, 2), -5.5, 1e-12);
    EXPECT_NEAR(model.Corner(k, 1, 1, 1, 1), k == 1 ? 1.5 : 0.5, 1e-12);
  }
}

TEST(Geometry, KeepsTheCellsBeforePlacement) {
  GeometryModel model({"A rect 2 2 cells 2 2 T 5 5 5 R Y 90", "V cyl 2 1 2 cells 4 1 T 0 0 5"});
  model.Build();
  const LocalTable& local = model.state.LocalCellTable;
  EXPECT_EQ(local(1, 1, 2, 1), 0.5F);
  EXPECT_EQ(local(1, 1, 2, 2), 0.5F);
  EXPECT_EQ(local(1, 1, 2, 3), 0.0F);
  EXPECT_EQ(local(1, 1, 2, 7), 1.0F);
  EXPECT_EQ(local(1, 1, 2, 4), 0.0F);
  EXPECT_EQ(local(2, 1, 1, 3), 0.5F);
  EXPECT_EQ(local(3, 1, 1, 3), 0.5F);
  EXPECT_EQ(local(2, 1, 1, 5), static_cast<float>(std::cos(kPi / 4)));
}

TEST(Geometry, TheLocalTableHoldsCellsOfEverySize) {
  GeometryModel model({"A rect 70 2 cells 70 2"});
  model.Build();
  EXPECT_EQ(model.state.LocalCellTable(1, 64, 2, 1), static_cast<float>(35 - 63.5));
  EXPECT_EQ(model.state.LocalCellTable(1, 70, 2, 1), static_cast<float>(35 - 69.5));
  EXPECT_EQ(model.Data(1, 65, 1, 1), 35 - 64.5);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Geometry, PlacedStripsFollowTheCorners) {
  GeometryModel model({"A rect 2 2 cells 2 2 T 0 0 1", "B cyl 1 1 1 cells 6 3 R X 90 T 0 0 1"});
  model.Build();
  ExpectPoint(model.StripPoint(1, 1, 1), -1, -1, 1);
  ExpectPoint(model.StripPoint(1, 1, 3), 1, 1, 1);
  for (int s = 1; s <= 6; ++s) {
    ExpectPoint(model.StripPoint(2, s, 1), model.CornerPoint(2, s, 1, 1), 0);
    ExpectPoint(model.StripPoint(2, s, 2), model.CornerPoint(2, s, 1, 2), 0);
    ExpectPoint(model.StripPoint(2, s, 3), model.CornerPoint(2, s, 3, 3), 0);
    ExpectPoint(model.StripPoint(2, s, 4), model.CornerPoint(2, s, 3, 4), 0);
  }
}

TEST(Geometry, AnUnknownTypeIsRefusedAndKeepsItsCounts) {
  GeometryModel model({"A Torus size 1 2 3 cells 2 3 T 1 0 0"});
  model.Build();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "A Torus size 1 2 3 cells 2 3 T 1 0 0 PB at:TORUS this specification is not allowed. See Hallam ");
  EXPECT_EQ(model.dialogs.boxes[0].title, "");
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.Header(1, 1), 2);
  EXPECT_EQ(model.Header(1, 2), 3);
  EXPECT_EQ(model.Header(1, 10), 0);
  EXPECT_EQ(model.Data(1, 2, 3, 4), 0);
  EXPECT_EQ(model.Data(1, 2, 3, 1), 1);
  EXPECT_EQ(model.Data(1, 2, 3, 30), 3);
}

TEST(Geometry, AbortAtAnUnknownTypeEndsTheProgram) {
  GeometryModel model({"A torus 1 2 3 2 3"});
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Build(), ProgramEnd);
}

TEST(Geometry, FreeCylindersHaveNoGenerator) {
  GeometryModel model({"A cylFree 1 2 3 4 5 cells 2 3"});
  model.Build();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "A cylFree 1 2 3 4 5 cells 2 3 PB at:error not set up ");
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.Header(1, 1), 0);
}

TEST(Geometry, ALineWithoutABlankRepeatsTheShapeBefore) {
  GeometryModel model({"A rect 2 2 cells 1 1 T 1 0 0", "B"});
  model.Build();
  EXPECT_EQ(model.Header(2, 10), 1);
  EXPECT_EQ(model.Data(2, 1, 1, 4), 4);
  // Its commands are used up.
  ExpectPoint(model.Centre(2, 1, 1), 0, 0, 0, 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Geometry, CellsInsideTheArraysAreTheSameWhenOthersLieOutside) {
  const std::vector<std::string> lines = {"A rect 3 2 cells 12 7 T 1 2 3 R X 20 T 0 0 1",
                                          "B rectoriented 0 0 0 2 0 1 2 3 1 0 3 0.1 cells 12 7 R Y 10",
                                          "C rect2sides 0 2 0 3 1.3 0.8 -0.2 cells 12 7 R Z 200 A Y",
                                          "D con2 2 3 0.7 20 cells 12 7 A Y",
                                          "E elli 2 3 1 4 cells 12 7 T 0 1 0 A Y",
                                          "F thr 0.1 0.5 cells 12 7 R X 90",
                                          "G cylshape4b 1 2 0.9 cells 12 7 R X 33 T 3 3 3",
                                          "H cylshape44 1 2 0.9 cells 12 7",
                                          "I cylshapex6 1 2 0.9 cells 14 7 T 1 1 1",
                                          "J cylellipse 2 3 2.25 0.6 cells 12 7 R Y 70 T 5 0 0 R X 3"};
  GeometryModel whole(lines);
  GeometryModel cutI(lines);
  GeometryModel cutJ(lines);
  cutI.Size(9, 7);
  cutJ.Size(14, 4);
  for (GeometryModel* model : {&whole, &cutI, &cutJ}) {
    model->dialogs.answers = {Answer::Ignore};
    model->Build();
    model->dialogs.answers = {Answer::Ignore};
    model->Rebuild(123.4);
  }
  EXPECT_TRUE(whole.dialogs.boxes.empty());
  for (int k = 1; k <= 11; ++k) {
    for (int i = 0; i <= 14; ++i) {
      for (int j = 0; j <= 7; ++j) {
        for (int q = 1; q <= 42; ++q) {
          const auto value = [&](const GeometryModel& model) {
            return q <= 30 ? model.Data(k, i, j, q) : model.cells.CellCorners(k, i, j, q - 30);
          };
          if (i <= 9) {
            ASSERT_EQ(value(cutI), value(whole)) << k << " " << i << " " << j << " " << q;
          }
          if (j <= 4) {
            ASSERT_EQ(value(cutJ), value(whole)) << k << " " << i << " " << j << " " << q;
          }
        }
      }
    }
  }
  EXPECT_GT(cutI.dialogs.Count("error faute"), 0);
  EXPECT_GT(cutJ.dialogs.Count("error faute"), 0);
}

TEST(Geometry, CountsTheShellsOfTheLastCylinder) {
  GeometryModel model({"A rect 1 1 1 1", "V cyl 1 1 3 cells 4 1"});
  model.Build();
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 4);
  GeometryModel plain({"A rect 1 1 1 1", "V cyl 1 1 1 cells 4 1"});
  plain.state.VolumicSlices = 7;
  plain.Build();
  EXPECT_EQ(plain.cells.numberPrimWithVolumic, 2);
}

// All numbers of a primitive, for comparison bit by bit.
std::vector<double> Everything(const GeometryModel& model, int k) {
  std::vector<double> all;
  for (int i = 0; i <= model.cells.MaxCellsI; ++i) {
    for (int j = 0; j <= model.cells.MaxCellsJ; ++j) {
      for (int q = 1; q <= 30; ++q) all.push_back(model.Data(k, i, j, q));
      for (int n = 1; n <= 12; ++n) all.push_back(model.cells.CellCorners(k, i, j, n));
    }
    for (int n = 0; n <= 12; ++n) all.push_back(model.cells.BorderCorners(k, i, n));
  }
  return all;
}

TEST(Rebuild, WithoutATailTheRotationComesFirst) {
  GeometryModel model({"Body rect 3 3 2 2", "Wing rect 2 1 cells 2 1 T 0 0 4 A X", "Mast cyl 1 2 1 cells 6 2"});
  model.Build();
  const std::vector<double> body = Everything(model, 1);
  const std::vector<double> wing = Everything(model, 2);
  const std::vector<double> mast = Everything(model, 3);
  model.Rebuild(90);
  // "a x" stands behind the translation, with nothing behind it: the turn is the primitive's own.
  ExpectPoint(model.Centre(2, 1, 1), 0.5, 0, 4);
  ExpectPoint(model.Normal(2, 1, 1), 0, -1, 0);
  EXPECT_EQ(model.Data(2, 2, 1, 29), 2);
  ExpectPoint(model.StripPoint(2, 1, 3), model.CornerPoint(2, 1, 1, 3), 0);
  EXPECT_EQ(Everything(model, 1), body);
  EXPECT_EQ(Everything(model, 3), mast);
  model.Rebuild(0);
  EXPECT_EQ(Everything(model, 2), wing);
  EXPECT_EQ(model.state.AutoRotatedList, (std::vector<int>{1, 2}));
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Rebuild, WithATailTheRotationTakesTheKeywordsPlace) {
  GeometryModel model(
      {"Wing rect 2 1 cells 2 1 T 1 0 0 AutomaticRotation Z R X 90", "Same rect 2 1 cells 2 1 T 1 0 0 R Z 90 R X 90"});
  model.Build();
  model.Rebuild(90);
  for (int i = 1; i <= 2; ++i) {
    ExpectPoint(model.Centre(1, i, 1), model.Centre(2, i, 1), 0);
    ExpectPoint(model.Normal(1, i, 1), model.Normal(2, i, 1), 0);
  }
  EXPECT_NEAR(model.Data(1, 1, 1, 3), 1.5, 1e-12);
}

TEST(Rebuild, TheAngleHasTwoDecimals) {
  GeometryModel model({"Wing rect 2 1 cells 2 1 T 1 0 0 A Z T 0 0 0"});
  model.Build();
  model.Rebuild(30.126);
  EXPECT_NEAR(model.Data(1, 1, 1, 2), 1.5 * std::sin(DegToRad(30.13)), 1e-14);
}

TEST(Rebuild, TheAngleIsTheSameUnderEveryLocale) {
  const std::vector<std::string> lines = {"rect size 1 1 cells 1 1 t 1 0 0 a z t 1 0 0"};
  GeometryModel point(lines);
  GeometryModel dotOfThousands(lines, 0, Locale{",", "."});
  point.Build().Rebuild(22.5);
  dotOfThousands.Build().Rebuild(22.5);
  EXPECT_GT(point.Centre(1, 1, 1)(2), 0.1);
  EXPECT_EQ(dotOfThousands.Centre(1, 1, 1).element, point.Centre(1, 1, 1).element);
  EXPECT_TRUE(dotOfThousands.dialogs.log.empty());
}

TEST(Rebuild, AnotherItemBehindTheAxisDoesNotComply) {
  GeometryModel model({"Wing rect 2 1 cells 2 1 T 1 0 0 A Z A X 10"});
  model.Build();
  // The last command counts: axis X, two characters behind it.
  EXPECT_EQ(model.state.rotation.RotationTailLength, 2);
  model.dialogs.boxes.clear();
  model.dialogs.log.clear();
  model.Rebuild(90);
  const std::string line = "Wing rect 2 1 cells 2 1 T 1 0 0 A Z A X 10";
  ASSERT_GE(model.dialogs.boxes.size(), 3U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            line + " PB at:Automatic rotation specification not compliant , see user manual... Primitive " + line);
  ASSERT_GE(model.dialogs.log.size(), 2U);
  EXPECT_EQ(model.dialogs.log.rbegin()[0], "Automatic rotation specification not compliant");
  EXPECT_EQ(model.dialogs.log.rbegin()[1], "Automatic rotation specification not compliant ");
  // The tail was replaced all the same.
  EXPECT_NEAR(model.Data(1, 1, 1, 2), 1.5, 1e-12);
}

TEST(Rebuild, ATailOfOneCharacterIsLeftAlone) {
  GeometryModel model({"Wing rect 2 1 cells 2 1 T 1 0 0 A Z 5"});
  model.Build();
  EXPECT_EQ(model.state.rotation.RotationTailLength, 1);
  const std::vector<double> before = Everything(model, 1);
  model.Rebuild(90);
  EXPECT_EQ(Everything(model, 1), before);
}

TEST(Rebuild, TwoPrimitivesTurnTogether) {
  GeometryModel model({"A rect 2 1 cells 2 1 T 0 0 1 A Y", "B rect 2 1 cells 2 1 T 0 0 2 A Y", "C rect 2 1 cells 2 1"});
  model.Build();
  EXPECT_EQ(model.state.AutoRotatedList, (std::vector<int>{2, 1, 2}));
  model.Rebuild(90);
  ExpectPoint(model.Normal(1, 1, 1), 1, 0, 0);
  ExpectPoint(model.Normal(2, 1, 1), 1, 0, 0);
  ExpectPoint(model.Normal(3, 1, 1), 0, 0, 1);
}

TEST(Rebuild, APrimitiveOutsideTheListStopsThePass) {
  GeometryModel model({"A rect 2 1 cells 2 1 A Y", "B rect 2 1 cells 2 1", "C rect 2 1 cells 2 1 A Y"});
  model.Build();
  model.Rebuild(90);
  ExpectPoint(model.Normal(1, 1, 1), 1, 0, 0);
  ExpectPoint(model.Normal(3, 1, 1), 0, 0, 1);
}

TEST(Rebuild, InnerShellsWalkTheTextAsTyped) {
  GeometryModel model({"V cyl 2 1 2 cells 4 1 A X"});
  model.Build();
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 2);
  model.cells.numberPrimWithVolumic = 77;
  model.Rebuild(90);
  EXPECT_NEAR(model.Data(1, 1, 1, 2), -0.5, 1e-12);
  EXPECT_NEAR(model.Data(2, 1, 1, 3), 0.5, 1e-12);
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 77);
  EXPECT_EQ(model.names[1], "V__1");
  EXPECT_EQ(model.names[2], "V__2");
}

TEST(Rebuild, AnEmptyListBuildsNothing) {
  GeometryModel model({"A rect 2 1 cells 2 1"});
  model.state.rotation.RotatingPrimitive = 1;
  model.Build();
  EXPECT_EQ(model.Header(1, 1), 0);
}

TEST(Rebuild, EqualsAModelWithTheRotationTyped) {
  const char* const shapes[] = {"rect 2 1 cells 3 2",        "sph 1 2 1 cells 8 4",
                                "sph 0.3 0.6 1 cells 4 5",  // its top row has corners that its formula leaves alone
                                "con 1 2 0.5 cells 6 3",     "rect2sides 0 1 0 2 1.5 1.2 0.1 cells 4 4",
                                "cylshape4 1 2 1 cells 9 2", "cylellipse 1 2 1 0.5 cells 8 2"};
  for (const char* shape : shapes) {
    GeometryModel turning({std::string("A ") + shape + " T 1 2 3 Automatic Y R Z 25"});
    turning.Build();
    turning.Rebuild(12.5);
    turning.Rebuild(-77.25);
    GeometryModel typed({std::string("A ") + shape + " T 1 2 3 R Y -77.25 R Z 25"});
    typed.Build();
    EXPECT_EQ(Everything(turning, 1), Everything(typed, 1)) << shape;
  }
}

}  // namespace
}  // namespace orv::testing
