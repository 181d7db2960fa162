#include "geometry/round_primitives.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/geometry_model.h"

namespace orv::testing {
namespace {

const double kTurn = 2 * kPi;

double Length(const Vector3& v) {
  return vNorm(v);
}

// Projection of a point or direction on the outward radius of the cell.
double Outward(const Vector3& direction, const Vector3& centre) {
  return direction(1) * centre(1) + direction(2) * centre(2);
}

TEST(Cone, HasItsApexAtTheOriginAndItsWideEndAtItsHeight) {
  GeometryModel model({"Cone con size 2 4 1 cells 8 2"});
  model.Build();
  for (int i = 1; i <= 8; ++i) {
    ExpectPoint(model.CornerPoint(1, i, 1, 1), 0, 0, 0, 0);
    ExpectPoint(model.CornerPoint(1, i, 2, 3), 2 * std::cos(i * kTurn / 8), 2 * std::sin(i * kTurn / 8), 4);
    ExpectPoint(model.CornerPoint(1, i, 2, 4), 2 * std::cos((i - 1) * kTurn / 8), 2 * std::sin((i - 1) * kTurn / 8), 4);
    ExpectPoint(model.CornerPoint(1, i, 1, 3), model.CornerPoint(1, i, 2, 2));
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Cone, HeaderTellsAnglesAndRadii) {
  GeometryModel model(
      {"Cone con size 2 4 0.5 cells 9 2", "Disc disc size 2 1 1 cells 10 4", "Cut con2 size 3 2 1 45 cells 8 2"});
  model.Build();
  const double con[11] = {0, 9, 2, 0.5, 20, 1, 10, 0.5, 2, 4, 4};
  const double disc[11] = {0, 10, 4, 1, 36, 0.25, 18, 1.125, 2, 4, 2};
  const double con2[11] = {0, 8, 2, 1, 45, 1, 22.5, 1.5, 2, 4, 4};
  for (int column = 1; column <= 10; ++column) {
    EXPECT_NEAR(model.Header(1, column), con[column], 1e-9) << column;
    EXPECT_NEAR(model.Header(2, column), disc[column], 1e-9) << column;
    EXPECT_NEAR(model.Header(3, column), con2[column], 1e-9) << column;
  }
}

TEST(Cone, CentreIsTheMeanOfTheCornersAndTheNormalIsUnit) {
  GeometryModel model({"Cone con2 size 3 2 1 30 cells 12 3"});
  model.Build();
  for (int i = 1; i <= 12; ++i) {
    for (int j = 1; j <= 3; ++j) {
      Vector3 mean;
      for (int corner = 1; corner <= 4; ++corner) vScaleAdd(model.CornerPoint(1, i, j, corner), 0.25, mean, mean);
      ExpectPoint(model.Centre(1, i, j), mean);
      EXPECT_NEAR(Length(model.Normal(1, i, j)), 1, 1e-12);
      // The inner side of the cone, seen from its wide end.
      EXPECT_LT(Outward(model.Normal(1, i, j), model.Centre(1, i, j)), 0);
      EXPECT_NEAR(model.Data(1, i, j, 7), std::sin(kPi / 6), 0.02);
      EXPECT_EQ(model.Data(1, i, j, 8), 10000);
    }
  }
  // Circle to chord: r (1 - cos(da / 2)) of the widest row, summed over the axes.
  const double r = 3 - std::tan(kPi / 6) * 2 + 2.5 / 3 * std::tan(kPi / 6) * 2;
  double widest = 0;
  for (int i = 1; i <= 12; ++i) {
    const double a = (i - 0.5) * kTurn / 12;
    widest = std::max(widest, r * (1 - std::cos(kTurn / 24)) * (std::abs(std::cos(a)) + std::abs(std::sin(a))));
  }
  EXPECT_NEAR(model.state.LargestCentreShift, widest, 1e-9);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Cone, AFractionAboveOneIsAWholeTurn) {
  GeometryModel model({"Cone con size 2 4 1.7 cells 8 2", "Ball sph size 1 2 3 cells 8 2"});
  model.Build();
  EXPECT_EQ(model.Header(1, 3), 1);
  EXPECT_NEAR(model.Header(1, 4), 45, 1e-9);
  EXPECT_EQ(model.Header(2, 3), 1);
}

TEST(Cone, ARowHasTheAreaOfItsFirstCell) {
  GeometryModel model({"Cone con size 3 4 1 cells 400 3", "Ball sph size 1 2 1 cells 200 100"});
  model.Build();
  double area = 0;
  for (int j = 1; j <= 3; ++j) {
    for (int i = 1; i <= 400; ++i) {
      EXPECT_EQ(model.Data(1, i, j, 4), model.Data(1, 1, j, 4));
      area += model.Data(1, i, j, 4);
    }
  }
  EXPECT_NEAR(area, kPi * 3 * 5, 0.01);  // pi R s
  double ball = 0;
  for (int j = 1; j <= 100; ++j) ball += 200 * model.Data(2, 1, j, 4);
  EXPECT_NEAR(ball, 4 * kPi, 0.02);
  EXPECT_EQ(model.Data(2, 77, 50, 4), model.Data(2, 1, 50, 4));
}

TEST(Disc, IsOneMillimetreHighWithItsInnerRadiusAsSecondNumber) {
  GeometryModel model({"Ring disc size 5 2 1 cells 8 3"});
  model.Build();
  ExpectPoint(model.CornerPoint(1, 1, 1, 1), 2, 0, 0);
  ExpectPoint(model.CornerPoint(1, 1, 3, 4), 5, 0, 0.001);
  EXPECT_GT(model.Data(1, 1, 2, 7), 0.99);
}

TEST(RoundingCheck, WarnsOnceAndAsksThePromptOnCancel) {
  // Below the lowest point no height has a radius, so X and Y of the corners stay as they were: twisted cells.
  GeometryModel model({"A elli size 1 -1 1 1 cells 3 2"});
  GeometryCall call(model.Input(), model.names, model.cells, model.state, model.reader);
  for (int i = 1; i <= 3; ++i) {
    const double corners[12] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, -1, 0};
    for (int n = 1; n <= 12; ++n) {
      model.cells.CellCorners(1, i, 1, n) = corners[n - 1];
      model.cells.CellCorners(1, i, 2, n) = corners[n - 1];
    }
  }
  model.dialogs.answers = {Answer::Cancel, Answer::Ignore};
  ReadPrimitive(call, 1);
  BuildEllipsoid(call, 5);
  ASSERT_EQ(model.dialogs.Count("small error rounding in Geometry, see hallam "), 1);
  const auto& box = model.dialogs.boxes[0];
  EXPECT_EQ(box.title, "Error rounding");
  EXPECT_EQ(box.buttons, Buttons::OkCancel);
  EXPECT_NE(box.text.find("  that should be very small or null"), std::string::npos);
  ASSERT_EQ(model.dialogs.log.size(), 1U);
  EXPECT_EQ(model.dialogs.log[0], "faute x13 ");
  EXPECT_EQ(call.roundingCounter, 3);
}

TEST(RoundingCheck, TheWarningComesOnceACall) {
  // The cells of a con2 without slope have a normal that is rounding only.
  GeometryModel model({"A con2 size 2 1 1 0 cells 8 2", "B con2 size 2 1 1 0 cells 8 2"});
  model.Build();
  EXPECT_EQ(model.dialogs.Count("small error rounding in Geometry, see hallam "), 1);
  EXPECT_TRUE(model.dialogs.log.empty());
  model.dialogs.answers = {Answer::Cancel};
  model.Build();
  EXPECT_EQ(model.dialogs.Count("small error rounding in Geometry, see hallam "), 2);
  EXPECT_EQ(model.dialogs.log.at(0), "faute x12 ");
}

TEST(RoundingCheck, ConeAndSphereShareTheCounter) {
  GeometryModel model({"A con2 size 2 1 1 0 cells 8 2"});
  GeometryCall call(model.Input(), model.names, model.cells, model.state, model.reader);
  call.roundingCounter = 1;  // a sphere has warned
  ReadPrimitive(call, 1);
  BuildCone(call, 4);
  EXPECT_EQ(model.dialogs.Count("small error rounding in Geometry"), 0);
  EXPECT_GT(call.roundingCounter, 1);
}

TEST(Ellipsoid, ASphereOfTwiceItsRadiusIsClosed) {
  GeometryModel model({"Ball sph size 2 4 1 cells 12 8"});
  model.Build();
  for (int i = 1; i <= 12; ++i) {
    ExpectPoint(model.CornerPoint(1, i, 1, 1), 0, 0, 0);
    ExpectPoint(model.CornerPoint(1, i, 8, 3), 0, 0, 4, 1e-7);
    for (int j = 1; j <= 8; ++j) {
      for (int corner = 1; corner <= 4; ++corner) {
        Vector3 fromMiddle = model.CornerPoint(1, i, j, corner);
        fromMiddle(3) -= 2;
        EXPECT_NEAR(Length(fromMiddle), 2, 1e-7);
      }
    }
  }
  EXPECT_LT(model.Data(1, 1, 1, 3), 0.5);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Ellipsoid, NormalsPointToTheAxisAlsoAtThePole) {
  GeometryModel model({"Ball sph size 2 4 1 cells 12 8"});
  model.Build();
  for (int i = 1; i <= 12; ++i) {
    for (int j = 1; j <= 8; ++j) {
      EXPECT_NEAR(Length(model.Normal(1, i, j)), 1, 1e-12);
      EXPECT_LT(Outward(model.Normal(1, i, j), model.Centre(1, i, j)), 0) << i << " " << j;
    }
    EXPECT_GT(model.Data(1, i, 1, 7), 0);
    EXPECT_LT(model.Data(1, i, 8, 7), 0);
  }
}

TEST(Ellipsoid, TooGreatAHeightIsCutToThePole) {
  GeometryModel model({"Ball sph size 2 5 1 cells 12 8", "Ball sph size 2 4 1 cells 12 8"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "warning : Sphere or ellipsoid not well defined, Height truncated to the maximum");
  EXPECT_EQ(model.dialogs.boxes[0].title, "WARNING");
  EXPECT_EQ(model.dialogs.boxes[1].title, "Petite erreur");
  EXPECT_EQ(model.dialogs.log.at(0), "warning : Sphere or ellipsoid not well defined,");
  for (int j = 1; j <= 8; ++j) ExpectPoint(model.Centre(1, 3, j), model.Centre(2, 3, j), 0);
}

TEST(Ellipsoid, TooDeepAHeightIsCutToo) {
  GeometryModel model({"Ball sph size 2 -5 1 cells 12 8"});
  model.Build();
  EXPECT_EQ(model.dialogs.boxes.at(0).text,
            "warning : Sphere or ellipsoid not well defined, Height truncated to the minimum negative");
  EXPECT_EQ(model.Header(1, 5), -0.5);
}

TEST(Ellipsoid, TakesItsSemiAxesFromTheType) {
  GeometryModel model({"E elli size 2 3 1 5 cells 12 8", "P par size 2 3 1 cells 12 8", "S sph 2 3 0.5 cells 12 8"});
  model.Build();
  EXPECT_EQ(model.Header(1, 6), 2);
  EXPECT_EQ(model.Header(1, 7), 5);
  EXPECT_EQ(model.Header(2, 7), 12);
  EXPECT_DOUBLE_EQ(model.Header(2, 6), std::sqrt(4 / (1 - 0.75 * 0.75)));
  EXPECT_EQ(model.Header(3, 6), 2);
  EXPECT_EQ(model.Header(3, 7), 2);
  const double header[11] = {0, 12, 8, 0.5, 15, 0.375, 2, 2, 2, 4, 5};
  for (int column = 1; column <= 10; ++column) EXPECT_NEAR(model.Header(3, column), header[column], 1e-9) << column;
  // The paraboloid opens to its radius at its height.
  ExpectPoint(model.CornerPoint(2, 1, 8, 4), 2, 0, 3);
}

TEST(Ellipsoid, WithoutAPolarAxisEveryCoordinateFails) {
  GeometryModel model({"E elli size 2 0 1 0 cells 1 1"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  // z / c is 0 / 0 here.
  EXPECT_EQ(model.dialogs.boxes.at(0).text, "Overflow");
  EXPECT_EQ(model.dialogs.boxes.size(), 1U);
  ExpectPoint(model.CornerPoint(1, 1, 1, 3), 0, 0, 0, 0);
}

TEST(Thruster, StandsAtTheOriginAndFiresAlongZ) {
  GeometryModel model({"Engine thr size 0.1 0.5 cells 6 2"});
  model.Build();
  ExpectPoint(model.Centre(1, 1, 1), 0, 0, 0, 0);
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, 1, 0);
  EXPECT_EQ(model.Data(1, 1, 1, 8), 0);
  EXPECT_EQ(model.Header(1, 3), 1);
  for (const int column : {4, 5, 6, 7, 8, 9, 10}) EXPECT_EQ(model.Header(1, column), 0) << column;
  const double a = kTurn / 6;
  ExpectPoint(model.Centre(1, 2, 2), std::cos(a) * 0.05, std::sin(a) * 0.05, 0.25);
  EXPECT_NEAR(model.Data(1, 2, 2, 4), a * 0.05 * std::hypot(0.25, a * 0.05), 1e-15);
  ExpectPoint(model.CornerPoint(1, 2, 2, 1), model.Centre(1, 2, 2), 0);
  ExpectPoint(model.CornerPoint(1, 2, 2, 2), 0, 0, 1, 0);
  ExpectPoint(model.CornerPoint(1, 2, 2, 3), 0, 0, 0, 0);
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 6);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Thruster, WithoutAHeightThePlacesStayAsTheyWere) {
  GeometryModel model({"Engine thr size 0.1 0 cells 1 1"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.dialogs.Count("Overflow"), 1);
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, 1, 0);
}

TEST(Cylinder, NormalsPointAwayFromTheAxis) {
  GeometryModel model({"Tube cyl size 2 3 1 cells 8 3"});
  model.Build();
  for (int i = 1; i <= 8; ++i) {
    const double a = (i - 0.5) * kTurn / 8;
    for (int j = 1; j <= 3; ++j) {
      ExpectPoint(model.Normal(1, i, j), std::cos(a), std::sin(a), 0);
      const double chord = 2 * std::cos(kTurn / 16);
      ExpectPoint(model.Centre(1, i, j), std::cos(a) * chord, std::sin(a) * chord, j - 0.5);
      EXPECT_NEAR(model.Data(1, i, j, 4), 4 * std::sin(kTurn / 16), 1e-12);
    }
  }
  const double header[11] = {0, 8, 3, 0, 45, 4, 22.5, 0.5, 2, 1, 7};
  for (int column = 1; column <= 10; ++column) EXPECT_NEAR(model.Header(1, column), header[column], 1e-9) << column;
  ExpectPoint(model.CornerPoint(1, 2, 1, 1), std::sqrt(2.0), std::sqrt(2.0), 0);
  ExpectPoint(model.CornerPoint(1, 2, 1, 3), 0, 2, 1);
  EXPECT_EQ(model.cells.BorderCorners(1, 0, 0), 8);
  ExpectPoint(model.StripPoint(1, 2, 1), model.CornerPoint(1, 2, 1, 1), 0);
  ExpectPoint(model.StripPoint(1, 2, 2), model.CornerPoint(1, 2, 1, 2), 0);
  ExpectPoint(model.StripPoint(1, 2, 3), model.CornerPoint(1, 2, 3, 3), 0);
  ExpectPoint(model.StripPoint(1, 2, 4), model.CornerPoint(1, 2, 3, 4), 0);
}

TEST(Cylinder, OptionFifteenKeepsTheCellsOnTheCircle) {
  GeometryModel model({"Tube cyl size 2 3 1 cells 8 3"}, 15);
  model.Build();
  const double a = kTurn / 16;
  ExpectPoint(model.Centre(1, 1, 1), 2 * std::cos(a), 2 * std::sin(a), 0.5);
  EXPECT_NEAR(model.Data(1, 1, 1, 4), kTurn / 8 * 2, 1e-12);
  EXPECT_EQ(model.Header(1, 5), 4);
}

TEST(Cylinder, OptionsAboveThirtyNineTellTheRadiusOfTheShell) {
  GeometryModel model({"Tube cyl size 3 3 2 cells 8 3"}, 40);
  model.Build();
  EXPECT_EQ(model.Header(1, 5), 1);
  EXPECT_EQ(model.Header(1, 23), 2.25);
  EXPECT_EQ(model.Header(2, 23), 0.75);
  GeometryModel below({"Tube cyl size 3 3 2 cells 8 3"}, 39);
  below.Build();
  EXPECT_EQ(below.Header(1, 5), 1.5);
  EXPECT_EQ(below.Header(1, 23), 0);
}

TEST(Cylinder, AnEllipseKeepsTheNormalOfItsCircle) {
  GeometryModel model({"Tube cylellipse size 2 3 0.5 3 cells 4 1"});
  model.Build();
  const double a = kPi / 8;
  ExpectPoint(model.Normal(1, 1, 1), std::cos(a), std::sin(a), 0);
  ExpectPoint(model.CornerPoint(1, 2, 1, 2), 0, 6, 0);
  EXPECT_EQ(model.Header(1, 10), 7);
  EXPECT_NEAR(model.Header(1, 4), 45, 1e-9);
}

TEST(Cylinder, ShellsAreFurtherPrimitivesOutermostFirst) {
  GeometryModel model({"Panel rect 1 1 2 2", "Volume cyl size 3 2 3.25 cells 5 2"});
  model.Build();
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 4);
  EXPECT_EQ(model.state.VolumicSlices, 3);
  const double radius[3] = {2.5, 1.5, 0.5};
  for (int shell = 0; shell < 3; ++shell) {
    const int k = 2 + shell;
    EXPECT_EQ(model.names[static_cast<std::size_t>(k)], "Volume__" + std::to_string(shell + 1));
    EXPECT_NEAR(model.Header(k, 4), 18, 1e-9);
    EXPECT_EQ(model.Header(k, 1), 5);
    EXPECT_EQ(model.Header(k, 2), 2);
    EXPECT_EQ(model.Header(k, 5), 1);
    EXPECT_EQ(model.Header(k, 10), 7);
    EXPECT_EQ(model.Header(k, 3), shell == 0 ? 3 : 0);
    ExpectPoint(model.CornerPoint(k, 1, 1, 1), radius[shell], 0, 0);
    ExpectPoint(model.CornerPoint(k, 5, 2, 3), 0, radius[shell], 2);
    EXPECT_EQ(model.cells.BorderCorners(k, 0, 0), shell == 0 ? 5 : 0);
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Cylinder, AWholeNumberOfShellsIsAWholeTurnEach) {
  GeometryModel model({"Volume cyl size 3 2 2 cells 5 2"});
  model.Build();
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 2);
  EXPECT_NEAR(model.Header(1, 4), 72, 1e-9);
  EXPECT_NEAR(model.Header(2, 4), 72, 1e-9);
}

TEST(Cylinder, ShellsStopAtTen) {
  GeometryModel model({"Volume cyl size 10 2 12 cells 5 2"});
  model.Build();
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 10);
  EXPECT_EQ(model.Header(1, 3), 12);
  EXPECT_EQ(model.Header(1, 5), 1);
  EXPECT_EQ(model.Header(10, 10), 7);
  EXPECT_EQ(model.Header(11, 10), 0);
  ExpectPoint(model.CornerPoint(10, 1, 1, 1), 0.5, 0, 0);
}

TEST(Cylinder, JustAboveOneIsOneShellWithAFraction) {
  GeometryModel model({"Volume cyl size 2 2 1.5 cells 5 2"});
  model.Build();
  EXPECT_EQ(model.Header(1, 3), 1);
  EXPECT_NEAR(model.Header(1, 4), 36, 1e-9);
  EXPECT_EQ(model.names[1], "Volume");
  EXPECT_EQ(model.cells.numberPrimWithVolumic, 1);
}

TEST(Cylinder, ShellsBelongToTheLastPrimitive) {
  GeometryModel model({"Volume cyl size 3 2 2 cells 5 2", "Panel rect 1 1 2 2"});
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Build(), ProgramEnd);
  EXPECT_EQ(model.dialogs.boxes.at(0).text,
            "Volume cyl size 3 2 2 cells 5 2 PB at:error If cellrVolume > 1 Then If i <> numberPrimWithVolumic::::  "
            "this shall be the last primitive");
  EXPECT_EQ(model.dialogs.boxes.at(1).text, "Do you want to abort? See Hallam if the error cannot be solved ");
}

TEST(Cylinder, WithoutARadiusTheNormalsFail) {
  GeometryModel model({"Wire cyl size 0 2 1 cells 1 1"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes.at(0).text, "Overflow");
  ExpectPoint(model.Normal(1, 1, 1), 0, 0, 0, 0);
  ExpectPoint(model.Centre(1, 1, 1), 0, 0, 1, 0);
}

}  // namespace
}  // namespace orv::testing
