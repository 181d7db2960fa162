#include "geometry/rigid_motion.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace orv::testing {
namespace {

constexpr TurnQuaternion kNone = {1, 0, 0, 0};

// A turn about a unit axis with a translation.
RigidMotion Turn(std::array<double, 3> axis, double degrees, std::array<double, 3> translation = {}) {
  const double half = degrees * std::acos(-1.0) / 360;
  const double s = std::sin(half);
  RigidMotion motion = MotionAboutCentres({}, {std::cos(half), s * axis[0], s * axis[1], s * axis[2]});
  motion.translation = translation;
  return motion;
}

std::vector<Point3> Apply(const RigidMotion& motion, const std::vector<Point3>& points) {
  std::vector<Point3> moved;
  for (const Point3& point : points) moved.push_back(Moved(motion, point));
  return moved;
}

void ExpectSame(const RigidMotion& found, const RigidMotion& expected, double tolerance = 2e-6) {
  for (std::size_t k = 0; k < 9; ++k) EXPECT_NEAR(found.rotation[k], expected.rotation[k], tolerance) << k;
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(found.translation[k], expected.translation[k], 10 * tolerance) << k;
}

const std::vector<Point3> kPlate = {{0, 0, 2}, {1, 0, 2}, {2, 0, 2}, {0, 3, 2}, {1, 3, 2}, {2, 3, 2}};

TEST(RigidMotion, AQuarterTurnTakesXToY) {
  const Point3 p = Moved(Turn({0, 0, 1}, 90, {0, 0, 5}), {1, 0, 0});
  EXPECT_NEAR(p[0], 0, 1e-6);
  EXPECT_NEAR(p[1], 1, 1e-6);
  EXPECT_NEAR(p[2], 5, 1e-6);
}

TEST(RigidMotion, AFlatPlateTellsItsMotion) {
  for (const double degrees : {0.0, 10.0, 90.0, 180.0, 270.0, 350.0}) {
    SCOPED_TRACE(degrees);
    const RigidMotion turn = Turn({0.6, 0, 0.8}, degrees, {1, -2, 3});
    const std::vector<Point3> behind = Apply(turn, kPlate);
    const FittedMotion found = FitMotion({kPlate, behind, {}, {}}, kNone);
    EXPECT_TRUE(found.unique);
    ExpectSame(found.motion, turn);
  }
}

TEST(RigidMotion, AnyCloudAnyTurn) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> number(-1, 1);
  for (int round = 0; round < 50; ++round) {
    std::vector<Point3> cloud(5);
    for (Point3& point : cloud) {
      for (float& x : point) x = static_cast<float>(3 * number(random));
    }
    std::array<double, 3> axis = {number(random), number(random), number(random)};
    const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
    for (double& x : axis) x /= length;
    const RigidMotion turn = Turn(axis, 180 * number(random), {number(random), 10, number(random)});
    ExpectSame(FitMotion({cloud, Apply(turn, cloud), {}, {}}, kNone).motion, turn, 2e-5);
  }
}

TEST(RigidMotion, ALineNeedsDirections) {
  const std::vector<Point3> line = {{0, 1, 0}, {0, 2, 0}, {0, 3, 0}};
  const RigidMotion turn = Turn({0, 1, 0}, 60);  // about the line itself: no point moves
  const std::vector<Point3> behind = Apply(turn, line);
  const FittedMotion open = FitMotion({line, behind, {}, {}}, kNone);
  EXPECT_FALSE(open.unique);
  ExpectSame(open.motion, RigidMotion{});
  const std::vector<Point3> normals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
  const std::vector<Point3> turned = Apply(turn, normals);
  const FittedMotion told = FitMotion({line, behind, normals, turned}, kNone);
  EXPECT_TRUE(told.unique);
  ExpectSame(told.motion, turn);
}

TEST(RigidMotion, OneCellTurnsWithItsNormal) {
  const std::vector<Point3> centre = {{2, 0, 0}};
  const std::vector<Point3> normal = {{1, 0, 0}};
  TurnQuaternion previous = kNone;
  for (double degrees = 30; degrees < 360; degrees += 30) {
    SCOPED_TRACE(degrees);
    const RigidMotion turn = Turn({0, 0, 1}, degrees);
    const FittedMotion found = FitMotion({centre, Apply(turn, centre), normal, Apply(turn, normal)}, previous);
    EXPECT_FALSE(found.unique);
    ExpectSame(found.motion, turn);  // also at half a turn, where the normal alone leaves every axis open
    previous = found.quaternion;
  }
}

TEST(RigidMotion, OneCentreAloneIsCarriedWithoutATurn) {
  const FittedMotion found = FitMotion({std::vector<Point3>{{1, 2, 3}}, std::vector<Point3>{{4, 4, 4}}, {}, {}}, kNone);
  EXPECT_FALSE(found.unique);
  RigidMotion carried;
  carried.translation = {3, 2, 1};
  ExpectSame(found.motion, carried);
}

TEST(RigidMotion, NeverAMirror) {
  std::vector<Point3> mirrored = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}};
  std::vector<Point3> shape = mirrored;
  for (Point3& point : mirrored) point[2] = -point[2];
  const auto r = FitMotion({shape, mirrored, {}, {}}, kNone).motion.rotation;
  const double determinant =
      r[0] * (r[4] * r[8] - r[5] * r[7]) - r[1] * (r[3] * r[8] - r[5] * r[6]) + r[2] * (r[3] * r[7] - r[4] * r[6]);
  EXPECT_NEAR(determinant, 1, 1e-12);
}

}  // namespace
}  // namespace orv::testing
