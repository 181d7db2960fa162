#include <cmath>
#include <gtest/gtest.h>

#include "analysis/run_fixture.h"

namespace orv::testing {
namespace {

class Frame : public RunFixture {
 protected:
  void Build(double x, double y, double z) {
    run.cells.CellData.Size(2, 5, 5, 120);
    run.cells.CellData(1, 0, 0, 1) = 2;
    run.cells.CellData(1, 0, 0, 2) = 3;
    const double values[8] = {0, 7, 8, 9, 0, x, y, z};
    for (const int q : {1, 2, 3, 5, 6, 7}) run.cells.CellData(1, 1, 1, q) = values[q];
    BuildThrusterFrame(run, 1);
  }
  void ExpectAxes(const Vector3& declination, const Vector3& azimuth) {
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      EXPECT_NEAR(run.thruster.frame.axDeclin(axis), declination(axis), 1e-12) << axis;
      EXPECT_NEAR(run.thruster.frame.AxAzimuth(axis), azimuth(axis), 1e-12) << axis;
    }
  }
};

TEST_F(Frame, NearXTheSecondReferenceServes) {
  Build(1, 0, 0);
  EXPECT_EQ(run.thruster.ThrusterArea, 6);
  EXPECT_EQ(run.thruster.frame.ThrusterPosition(2), 8);
  ExpectAxes({0, 0, 1}, {0, 1, 0});  // x x y = z, z x x = y
  Build(-1, 0, 0);
  ExpectAxes({0, 0, -1}, {0, 1, 0});
  const double side = std::sqrt(1 - 0.91 * 0.91);
  Build(0.91, side, 0);
  ExpectAxes({0, 0, 1}, {-side, 0.91, 0});
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Frame, AtExactlyNineTenthsTheFirstReferenceServes) {
  const double side = std::sqrt(1 - 0.9 * 0.9);
  Build(0.9, side, 0);
  // (0.9, side, 0) x (1, 0, 0) = (0, 0, -side)
  ExpectAxes({0, 0, -1}, {side, -0.9, 0});
}

TEST_F(Frame, ObliqueAxes) {
  Build(0.6, 0, 0.8);
  // (0.6, 0, 0.8) x (1, 0, 0) = (0, 0.8, 0); y x axis = (0.8, 0, -0.6)
  ExpectAxes({0, 1, 0}, {0.8, 0, -0.6});
}

TEST_F(Frame, ANormalOfNoLengthIsTold) {
  Build(0, 0, 0);
  ASSERT_EQ(dialogs.boxes.size(), 6U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error Normalise1 axDeclin(), axDeclin(), errnorm:  If errnorm = 0 ");
  EXPECT_EQ(dialogs.boxes[2].text, "Error Normalise1 AxAzimuth(), AxAzimuth(), errnorm: If errnorm = 0  ");
  EXPECT_EQ(dialogs.boxes[4].text, "Error  If Abs(normAxiT - 1) > 0.000001   ");
  for (const std::size_t k : {1U, 3U, 5U}) EXPECT_EQ(dialogs.boxes[k].text, kAbortText);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Build(0, 0, 0), ProgramEnd);
}

TEST_F(Frame, ANormalOfAnotherLengthIsTold) {
  Build(0, 0, 1.000002);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error  If Abs(normAxiT - 1) > 0.000001   ");
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  dialogs.boxes.clear();
  Build(0, 0, 1.0000009);
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace orv::testing
