#pragma once

#include <array>
#include <span>
#include <vector>

#include "view/point_lists.h"

namespace orv {

// A rotation as four numbers of unit length, scalar first.
using TurnQuaternion = std::array<double, 4>;

// Pairs of places before and behind a motion, and of directions that turn with it.
struct MotionPairs {
  std::span<const Point3> pointsBefore, pointsBehind;
  std::span<const Point3> directionsBefore, directionsBehind;  // may be empty
};

struct FittedMotion {
  RigidMotion motion;
  TurnQuaternion quaternion{1, 0, 0, 0};
  bool unique = false;  // false: the pairs leave a turn open
};

// The motion without reflection that takes the points, and the directions where there are some, as near as can be to
// where they are behind it, in least squares; B. K. P. Horn, Closed-form solution of absolute orientation using unit
// quaternions, 1987. Where the pairs leave a turn open (one point, points on a line), the rotation nearest to `start`.
FittedMotion FitMotion(const MotionPairs& pairs, const TurnQuaternion& start);

// The rotation of `quaternion` with the translation that takes the centre of the points where it is behind the motion.
RigidMotion MotionAboutCentres(const MotionPairs& pairs, const TurnQuaternion& quaternion);

// The place of a point behind a motion.
Point3 Moved(const RigidMotion& motion, const Point3& point);

}  // namespace orv
