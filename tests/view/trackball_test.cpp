#include "view/trackball.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace orv {
namespace {

using Axis = std::array<double, 3>;
constexpr Matrix4 kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

void ExpectNear(const Axis& a, const Axis& b, double tolerance = 1e-12) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(a[i], b[i], tolerance) << "component " << i;
}

Trackball Enabled() {
  Trackball ball;
  ball.Enable(true);
  return ball;
}

TEST(Trackball, PointerOnTheSphere) {
  const Axis last{0, 1, 0};
  ExpectNear(Trackball::OnSphere(0, 0, last), {0, 0, 1});
  ExpectNear(Trackball::OnSphere(1, 0, last), {1, 0, 0});
  ExpectNear(Trackball::OnSphere(3, -4, last), {0.6, -0.8, 0});  // beyond the ball: on its edge
  // r = 0.5: z = cos 45 degrees, then normalised by sqrt(0.25 + 0.5).
  ExpectNear(Trackball::OnSphere(0.5, 0, last), {0.5 / std::sqrt(0.75), 0, std::sqrt(0.5) / std::sqrt(0.75)});
  ExpectNear(Trackball::OnSphere(std::nan(""), 0, last), last);
  ExpectNear(Trackball::OnSphere(std::numeric_limits<double>::infinity(), 0, last), last);
}

TEST(Trackball, SpeedIsNinetyDegreesForALengthOfOne) {
  Trackball ball = Enabled();
  ball.Down(0, 0);
  ball.Move(1, 0);  // from (0, 0, 1) to (1, 0, 0): length sqrt 2 about +y
  EXPECT_NEAR(ball.SpinAngle(), std::sqrt(2.0) * 90, 1e-12);
  ExpectNear(ball.SpinAxis(), {0, 1, 0});
  EXPECT_FALSE(ball.SpinOn()) << "only after release";
  const double angle = std::sqrt(2.0) * 90 * std::acos(-1.0) / 180;
  EXPECT_NEAR(ball.Matrix()[0], std::cos(angle), 1e-12);
  EXPECT_NEAR(ball.Matrix()[2], -std::sin(angle), 1e-12);
  EXPECT_NEAR(ball.Matrix()[8], std::sin(angle), 1e-12);
  EXPECT_NEAR(ball.Matrix()[5], 1, 1e-12);
}

TEST(Trackball, GoesOnWithTheLastSpeed) {
  Trackball ball = Enabled();
  ball.Down(0, 0);
  ball.Move(0.1, 0);
  ball.Move(0.15, 0);
  const double speed = ball.SpinAngle();
  ball.Up(0.15, 0);
  EXPECT_TRUE(ball.SpinOn());
  EXPECT_FALSE(ball.TrackDown());
  EXPECT_EQ(ball.SpinAngle(), speed);
  const Matrix4 released = ball.Matrix();
  ball.Update();
  const double turned = std::atan2(ball.Matrix()[8], ball.Matrix()[0]) - std::atan2(released[8], released[0]);
  EXPECT_NEAR(turned * 180 / std::acos(-1.0), speed, 1e-9);
}

TEST(Trackball, ClickWithoutMovingStopsTheSpin) {
  Trackball ball = Enabled();
  ball.Down(0, 0);
  ball.Move(0.2, 0.1);
  ball.Up(0.2, 0.1);
  ASSERT_TRUE(ball.SpinOn());
  ball.Down(0.3, 0.3);
  EXPECT_FALSE(ball.SpinOn());
  ball.Move(0.3, 0.3);  // an event without a motion
  ball.Up(0.3, 0.3);
  EXPECT_FALSE(ball.SpinOn());
  EXPECT_EQ(ball.SpinAngle(), 0);
  const Matrix4 before = ball.Matrix();
  ball.Update();
  EXPECT_EQ(ball.Matrix(), before);
}

TEST(Trackball, DisabledTurnsNothing) {
  Trackball ball;
  ball.Down(0, 0);
  ball.Move(0.2, 0.1);
  ball.Up(0.2, 0.1);
  ball.Update();
  EXPECT_EQ(ball.Matrix(), kIdentity);
  EXPECT_TRUE(ball.SpinOn()) << "it would turn once enabled";
}

TEST(Trackball, MovesAndReleasesWithoutAButtonAreNothing) {
  Trackball ball = Enabled();
  ball.Move(0.4, 0.4);
  ball.Up(0.4, 0.4);
  EXPECT_FALSE(ball.SpinOn());
  EXPECT_EQ(ball.Matrix(), kIdentity);
}

TEST(Trackball, StopKeepsTheTurnAndClearTakesItBack) {
  Trackball ball = Enabled();
  ball.Down(0, 0);
  ball.Move(0.2, 0.1);
  ball.Up(0.2, 0.1);
  const Matrix4 turned = ball.Matrix();
  ball.Stop();
  ball.Update();
  EXPECT_EQ(ball.Matrix(), turned);
  EXPECT_FALSE(ball.SpinOn());
  ball.Clear();
  EXPECT_EQ(ball.Matrix(), kIdentity);
}

TEST(Trackball, StaysARotationOverManySteps) {
  Trackball ball = Enabled();
  ball.Down(-0.3, 0.2);
  ball.Move(0.2, 0.31);
  ball.Up(0.2, 0.31);
  for (int i = 0; i < 100000; ++i) ball.Update();
  const Matrix4& m = ball.Matrix();
  for (std::size_t a = 0; a < 3; ++a) {
    for (std::size_t b = 0; b < 3; ++b) {
      double dot = 0;
      for (std::size_t i = 0; i < 3; ++i) dot += m[a * 4 + i] * m[b * 4 + i];
      EXPECT_NEAR(dot, a == b ? 1 : 0, 1e-12);
    }
  }
}

TEST(Trackball, OppositePointsKeepTheAxis) {
  Trackball ball = Enabled();
  ball.Down(1, 0);
  ball.Move(-1, 0);
  ExpectNear(ball.SpinAxis(), {0, 0, 1});
  EXPECT_NEAR(ball.SpinAngle(), 180, 1e-12);
  for (const double entry : ball.Matrix()) EXPECT_TRUE(std::isfinite(entry));
  ball.Move(std::nan(""), 0);
  EXPECT_EQ(ball.SpinAngle(), 0);
}

}  // namespace
}  // namespace orv
