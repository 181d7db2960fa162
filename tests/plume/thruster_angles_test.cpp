#include "plume/thruster_angles.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "numerics/angles.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

// Primitives of 2 x 3 cells, their places set by hand, before a thruster at S that fires along A.
class AnglesTest : public ::testing::Test {
 protected:
  AnglesTest() { Size(3); }

  void Size(int primitives) {
    cells.CellData.Size(primitives + 10, 5, 5, 120);
    cells.CellCorners.Size(primitives + 10, 5, 5, 120);
    cells.BorderCorners.Size(primitives + 20, 5, 120);
    for (int p = 1; p <= primitives; ++p) {
      cells.CellData(p, 0, 0, 1) = 2;
      cells.CellData(p, 0, 0, 2) = 3;
    }
    input.NumberOfPrimitives = primitives;
    input.numberPrimWithVolumic = primitives;
    frame.axiT = {0, 0, 1};
    frame.AxAzimuth = {1, 0, 0};
    frame.axDeclin = {0, 1, 0};
  }
  void Place(int p, int i, int j, const Vector3& centre, const Vector3& normal, double area = 1) {
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      cells.CellData(p, i, j, axis) = centre(axis);
      cells.CellData(p, i, j, axis + 4) = normal(axis);
    }
    cells.CellData(p, i, j, 4) = area;
  }
  void PlaceCorner(int p, int i, int j, int corner, const Vector3& point) {
    for (int axis = 1; axis <= 3; ++axis) {
      cells.CellCorners(p, i, j, 3 * (corner - 1) + axis) = point(static_cast<std::size_t>(axis));
    }
  }
  // Cells spread so that nothing is at the source.
  void PlaceAll() {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> place(-3, 3);
    for (int p = 1; p <= input.numberPrimWithVolumic; ++p) {
      for (int i = 1; i <= 2; ++i) {
        for (int j = 1; j <= 3; ++j) {
          Vector3 normal(place(random), place(random), place(random));
          double length = 0;
          vUnit(normal, normal, length);
          Place(p, i, j, {place(random), place(random), place(random)}, normal, 0.5 + std::abs(place(random)));
          for (int corner = 1; corner <= 4; ++corner) {
            PlaceCorner(p, i, j, corner, {place(random), place(random), place(random)});
          }
        }
      }
    }
  }
  void Run() { aSpaceApplicationAnglesThrusters(cells, frame, input, prompt); }
  double Data(int p, int i, int j, int q) const { return cells.CellData(p, i, j, q); }
  double Corner(int p, int i, int j, int slot) const { return cells.CellCorners(p, i, j, slot); }

  Cells cells;
  ThrusterFrame frame;
  AnglesInput input;
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

const double kToDegrees = 1 / 0.017453292519943;

double Azimuth(double x, double y) {
  const double degrees = std::atan2(y, x) * kToDegrees;
  return degrees < 0 ? degrees + 360 : degrees;
}

TEST_F(AnglesTest, ACellAheadAndToTheSide) {
  // 3-4-5: on the axis side 3, sideways 4; it faces back along the axis.
  Place(1, 1, 1, {4, 0, 3}, {0, 0, -1}, 2);
  Run();
  const double theta = std::acos(0.6) * kToDegrees;
  EXPECT_NEAR(theta, 53.1301, 1e-4);
  EXPECT_DOUBLE_EQ(Data(1, 1, 1, 8), 5);
  EXPECT_NEAR(Data(1, 1, 1, 9), theta, 1e-10);
  EXPECT_NEAR(Data(1, 1, 1, 10), theta, 1e-10);
  EXPECT_NEAR(Data(1, 1, 1, 11), theta, 1e-10);
  EXPECT_EQ(Data(1, 1, 1, 12), 0);
  EXPECT_NEAR(Data(1, 1, 1, 60), 180 - theta, 1e-10);
  EXPECT_NEAR(Data(1, 1, 1, 35), 2 * 0.6 / 25, 1e-13);
}

TEST_F(AnglesTest, FacingTheThrusterReadsZero) {
  Place(1, 1, 1, {0, 0, 2}, {0, 0, -1});
  Place(1, 1, 2, {0, 0, 2}, {0, 0, 1});
  Run();
  EXPECT_EQ(Data(1, 1, 1, 9), 0);
  EXPECT_NEAR(Data(1, 1, 1, 60), 180, 1e-9);
  EXPECT_NEAR(Data(1, 1, 2, 9), 180, 1e-9);
  EXPECT_EQ(Data(1, 1, 2, 60), 0);
  for (const int j : {1, 2}) EXPECT_NEAR(Data(1, 1, j, 35), 0.25, 1e-12);  // both sides count
}

TEST_F(AnglesTest, TheCompatibilityOptionTurnsTheIncidence) {
  Place(1, 1, 1, {0, 0, 2}, {0, 0, -1});
  for (const auto& [option, incidence] : std::vector<std::pair<double, double>>{
           {0, 0}, {-1, 0}, {0.001, 180}, {15, 180}, {36.999, 180}, {37, 0}, {100, 0}}) {
    input.PlotOptionC = option;
    Run();
    EXPECT_NEAR(Data(1, 1, 1, 9), incidence, 1e-9) << option;
    EXPECT_NEAR(Data(1, 1, 1, 60), 180, 1e-9) << option;
    EXPECT_NEAR(Data(1, 1, 1, 35), 0.25, 1e-12) << option;
  }
}

TEST_F(AnglesTest, AzimuthGoesRoundTheAxis) {
  const double expected[8] = {0, 45, 90, 135, 180, 225, 270, 315};
  for (int k = 0; k < 8; ++k) {
    const double angle = k * 0.78539816339744831;
    Place(1, 1, 1, {std::cos(angle), std::sin(angle), 1}, {0, 0, -1});
    Run();
    EXPECT_NEAR(Data(1, 1, 1, 12), expected[k], 2e-5) << k;  // single precision
    EXPECT_GE(Data(1, 1, 1, 12), 0);
    EXPECT_LE(Data(1, 1, 1, 12), 360);
  }
}

TEST_F(AnglesTest, OnTheAxisTheAzimuthIsZero) {
  Place(1, 1, 1, {0, 0, 7}, {0, 0, -1});
  Place(1, 1, 2, {0, 0, -7}, {0, 0, -1});
  Run();
  EXPECT_EQ(Data(1, 1, 1, 12), 0);
  EXPECT_EQ(Data(1, 1, 1, 10), 0);
  EXPECT_EQ(Data(1, 1, 2, 12), 0);
  EXPECT_NEAR(Data(1, 1, 2, 10), 180, 1e-9);
  EXPECT_NEAR(Data(1, 1, 2, 11), 180, 1e-9);
}

TEST_F(AnglesTest, AnyFrameAgainstThePlainFormula) {
  frame.ThrusterPosition = {0.3, -1.3, -0.2};
  frame.axiT = {0.48, 0.6, 0.64};
  frame.AxAzimuth = {0.8, 0, -0.6};
  frame.axDeclin = {-0.36, 0.8, -0.48};
  PlaceAll();
  Run();
  for (int p = 1; p <= 3; ++p) {
    for (int i = 1; i <= 2; ++i) {
      for (int j = 1; j <= 3; ++j) {
        const Vector3 to(Data(p, i, j, 1) - 0.3, Data(p, i, j, 2) + 1.3, Data(p, i, j, 3) + 0.2);
        const Vector3 normal(Data(p, i, j, 5), Data(p, i, j, 6), Data(p, i, j, 7));
        const double r = std::hypot(to(1), to(2), to(3));
        const double old = std::acos(vDot(to, normal) / r) * kToDegrees;
        const double theta = std::acos(vDot(to, frame.axiT) / r) * kToDegrees;
        const double a = 180 - old;
        SCOPED_TRACE("cell " + std::to_string(p) + " " + std::to_string(i) + " " + std::to_string(j));
        EXPECT_NEAR(Data(p, i, j, 8), r, 1e-13 * r);
        EXPECT_NEAR(Data(p, i, j, 60), old, 1e-9);
        EXPECT_NEAR(Data(p, i, j, 9), a, 1e-9);
        EXPECT_NEAR(Data(p, i, j, 10), theta, 1e-9);
        EXPECT_NEAR(Data(p, i, j, 11), theta, 1e-9);
        EXPECT_NEAR(Data(p, i, j, 12), Azimuth(vDot(frame.AxAzimuth, to), vDot(frame.axDeclin, to)), 5e-5);
        EXPECT_NEAR(Data(p, i, j, 35), Data(p, i, j, 4) * std::abs(std::cos(a / kToDegrees)) / (r * r), 1e-12);
        EXPECT_GE(Data(p, i, j, 35), 0);
        for (int corner = 1; corner <= 4; ++corner) {
          const int slot = 3 * (corner - 1);
          const Vector3 w(Corner(p, i, j, slot + 1) - 0.3, Corner(p, i, j, slot + 2) + 1.3,
                          Corner(p, i, j, slot + 3) + 0.2);
          EXPECT_NEAR(Corner(p, i, j, 12 + corner), std::acos(vDot(w, frame.axiT) / vNorm(w)) * kToDegrees, 1e-9);
          EXPECT_NEAR(Corner(p, i, j, 16 + corner), Azimuth(vDot(frame.AxAzimuth, w), vDot(frame.axDeclin, w)), 5e-5);
        }
      }
    }
  }
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(AnglesTest, AZeroNormalReadsNinetyDegrees) {
  Place(1, 1, 1, {1, 2, 3}, {0, 0, 0});
  Run();
  EXPECT_NEAR(Data(1, 1, 1, 9), 90, 1e-9);
  EXPECT_NEAR(Data(1, 1, 1, 60), 90, 1e-9);
  EXPECT_NEAR(Data(1, 1, 1, 35), 0, 1e-12);
}

TEST_F(AnglesTest, ACellAtTheSourceIsTold) {
  frame.ThrusterPosition = {1, 1, 1};
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 3; ++j) Place(1, i, j, {1, 1, 3}, {0, 0, -1});
  }
  Place(1, 1, 2, {1, 1, 1}, {0.6, 0, 0.8}, 2);
  cells.CellData(1, 1, 2, 35) = -5;
  input.NumberOfPrimitives = input.numberPrimWithVolumic = 1;
  Run();
  EXPECT_EQ(Data(1, 1, 2, 8), 0);
  EXPECT_EQ(Data(1, 1, 2, 35), -5);  // the statement failed
  // The direction is still that of the cell before, straight ahead.
  EXPECT_NEAR(Data(1, 1, 2, 60), std::acos(0.8) * kToDegrees, 1e-9);
  EXPECT_NEAR(Data(1, 1, 2, 9), std::acos(-0.8) * kToDegrees, 1e-9);
  EXPECT_EQ(Data(1, 1, 2, 10), 0);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "Division by zero");
  EXPECT_EQ(dialogs.boxes[0].title, "Error aSpaceApplicationAnglesThrusters");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  EXPECT_NEAR(Data(1, 1, 3, 8), 2, 1e-15);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Run(), ProgramEnd);
}

TEST_F(AnglesTest, OnlyTheGuardedAngleReportsRounding) {
  frame.axiT = {0, 0, 1 + 6.7e-16};
  Place(1, 1, 1, {0, 0, 1}, {0, 0, -1});
  const OneCell cell{1, 1, 1};
  input.cell = &cell;
  Run();
  EXPECT_EQ(Data(1, 1, 1, 10), 0);
  EXPECT_EQ(Data(1, 1, 1, 11), 0);
  ASSERT_EQ(dialogs.log.size(), 1U);
  EXPECT_EQ(dialogs.log[0].substr(0, 48), "_Acos arrondi faute Abs(cc) - 1# < 400E-18      ");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(AnglesTest, TheThrusterIsLeftOut) {
  PlaceAll();
  input.ThrusterPrimitive = 2;
  Run();
  for (const int q : {8, 9, 10, 12, 35, 60}) {
    EXPECT_EQ(Data(2, 1, 1, q), 0);
    EXPECT_NE(Data(1, 1, 1, q), 0);
    EXPECT_NE(Data(3, 1, 1, q), 0);
  }
  EXPECT_EQ(Corner(2, 1, 1, 13), 0);
}

TEST_F(AnglesTest, AddedShellsAreMeasuredToo) {
  PlaceAll();
  input.NumberOfPrimitives = 1;
  cells.BorderCorners(2, 0, 0) = 1;
  Run();
  EXPECT_NE(Data(3, 1, 1, 8), 0);
  EXPECT_NE(Corner(3, 1, 1, 13), 0);
  EXPECT_EQ(cells.BorderCorners(2, 1, 13), 0);  // outlines only of the model's rows
}

TEST_F(AnglesTest, OnePrimitiveAlone) {
  PlaceAll();
  for (const int p : {1, 2}) cells.BorderCorners(p, 0, 0) = 1;
  cells.CellCorners(1, 2, 1, 13) = 77;
  input.OnePrimitive = 2;
  Run();
  EXPECT_EQ(Data(1, 1, 1, 8), 0);
  EXPECT_NE(Data(2, 1, 1, 8), 0);
  EXPECT_EQ(Data(3, 1, 1, 8), 0);
  EXPECT_NE(cells.BorderCorners(2, 1, 13), 0);
  EXPECT_EQ(cells.BorderCorners(1, 1, 13), 77);  // outlines are gathered for every primitive
}

TEST_F(AnglesTest, OneCellAlone) {
  PlaceAll();
  cells.BorderCorners(2, 0, 0) = 1;
  const OneCell cell{2, 2, 1};
  input.cell = &cell;
  Run();
  for (int j = 1; j <= 3; ++j) {
    EXPECT_EQ(Data(2, 1, j, 8), 0);
    EXPECT_EQ(Data(2, 2, j, 8) != 0, j == 1);
  }
  EXPECT_EQ(Corner(2, 2, 1, 13), 0);
  EXPECT_EQ(cells.BorderCorners(2, 1, 13), 0);
}

TEST_F(AnglesTest, OneStripTakesTheFourExtremeCells) {
  PlaceAll();
  cells.BorderCorners(1, 0, 0) = 1;
  Run();
  for (const int first : {13, 17}) {
    EXPECT_EQ(cells.BorderCorners(1, 1, first), Corner(1, 2, 1, first));
    EXPECT_EQ(cells.BorderCorners(1, 1, first + 1), Corner(1, 1, 1, first + 1));
    EXPECT_EQ(cells.BorderCorners(1, 1, first + 2), Corner(1, 1, 3, first + 2));
    EXPECT_EQ(cells.BorderCorners(1, 1, first + 3), Corner(1, 2, 3, first + 3));
    EXPECT_NE(cells.BorderCorners(1, 1, first), 0);
  }
}

TEST_F(AnglesTest, SeveralStripsTakeTheirOwnColumns) {
  PlaceAll();
  cells.BorderCorners(1, 0, 0) = 2;
  Run();
  for (int k = 1; k <= 2; ++k) {
    for (const int first : {13, 17}) {
      EXPECT_EQ(cells.BorderCorners(1, k, first), Corner(1, k, 1, first));
      EXPECT_EQ(cells.BorderCorners(1, k, first + 1), Corner(1, k, 1, first + 1));
      EXPECT_EQ(cells.BorderCorners(1, k, first + 2), Corner(1, k, 3, first + 2));
      EXPECT_EQ(cells.BorderCorners(1, k, first + 3), Corner(1, k, 3, first + 3));
    }
  }
}

TEST_F(AnglesTest, TheThrustersOutlineIsGatheredToo) {
  cells.BorderCorners(1, 0, 0) = 1;
  cells.CellCorners(1, 2, 1, 13) = 12.5;
  cells.CellCorners(1, 2, 3, 20) = 7.5;
  input.ThrusterPrimitive = 1;
  input.NumberOfPrimitives = input.numberPrimWithVolumic = 1;
  Run();
  EXPECT_EQ(cells.BorderCorners(1, 1, 13), 12.5);
  EXPECT_EQ(cells.BorderCorners(1, 1, 20), 7.5);
}

TEST_F(AnglesTest, ASubscriptIsTold) {
  PlaceAll();
  cells.BorderCorners(1, 0, 0) = 7;  // more strips than the arrays hold
  Run();
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error fautea_SpaceApplicationAnglesThrusters ");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Information);
  EXPECT_EQ(dialogs.boxes[1].text, "Subscript out of range");
  EXPECT_EQ(dialogs.boxes[1].title, "Error aSpaceApplicationAnglesThrusters");
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 1);
}

}  // namespace
}  // namespace orv::testing
