#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "geometry/ray_index.h"

namespace orv::testing {

using Corners = std::array<Sight, 4>;

// Numbers, points and quadrilaterals of the kinds that are hard: whole numbers, so that exact zeros are common, planes
// through the thruster, points on surfaces, slivers, and numbers that are very large, very small or none.
class Chance {
 public:
  explicit Chance(std::uint32_t seed) : random_(seed) {}

  int Below(int n) { return static_cast<int>(random_() % static_cast<std::uint32_t>(n)); }
  bool OneIn(int n) { return Below(n) == 0; }
  double Between(double low, double high) { return low + (high - low) * (random_() / 4294967296.0); }
  Sight Whole() { return {Below(7) - 3.0, Below(7) - 3.0, Below(7) - 3.0}; }
  Sight Any(double size) { return {Between(-size, size), Between(-size, size), Between(-size, size)}; }
  Sight Point(double size) { return grid ? size / 3 * Whole() : Any(size); }
  double Odd() {
    const std::array odd = {std::numeric_limits<double>::quiet_NaN(),
                            HUGE_VAL,
                            -HUGE_VAL,
                            1e300,
                            1e-300,
                            1e160,
                            1e-160,
                            5e-324,
                            1e60,
                            1e-60,
                            0.0};
    return odd[static_cast<std::size_t>(Below(static_cast<int>(odd.size())))];
  }
  double Tiny() { return std::pow(10.0, Between(-18, -1)) * (OneIn(2) ? 1 : -1); }

  Corners Quadrilateral(const Sight& o, double size) {
    const Sight p = Point(size);
    const Sight e1 = Point(size);
    const Sight e2 = Point(size);
    const double thin = OneIn(3) ? Tiny() : 1;
    switch (Below(12)) {
      case 0:  // a plane through the thruster, which is beside it
        return {o + e1 + e2, o + 2 * e1 + e2, o + 2 * e1 + 2 * e2, o + e1 + 2 * e2};
      case 1: {  // the thruster on it, at its side or its corner
        const double x = grid ? Below(3) : Between(-0.2, 2);
        const double y = grid ? Below(3) : Between(-0.2, 2);
        const Sight first = o - x * e1 - y * e2;
        return {first, first + 2 * e1, first + 2 * e1 + 2 * e2, first + 2 * e2};
      }
      case 2: {  // nearly so
        const Sight off = Tiny() * Cross(e1, e2);
        return {o + off - e1 - e2, o + off + e1 - e2, o + off + e1 + e2, o + off - e1 + e2};
      }
      case 3:  // a sliver
        return {p, p + e1, p + e1 + thin * e2, p + thin * e2};
      case 4:  // with corners in one place, or nearly
        return {p, p + thin * Any(1e-16), p + e1 + e2, p + e1 + (OneIn(2) ? e2 : (1 + 1e-16) * e2)};
      case 5:  // with corners in one line
        return {p, p + e1, p + 2 * e1, p + 3 * e1 + (OneIn(2) ? 1e-17 : 0.0) * e2};
      case 6:  // a fan from the thruster
        return {o, o, o + e1 + thin * e2, o + e1};
      case 7:  // twisted
        return {Point(size), Point(size), Point(size), Point(size)};
      case 8: {  // an odd number
        Corners corners = {p, p + e1, p + e1 + e2, p + e2};
        corners[static_cast<std::size_t>(Below(4))].x = Odd();
        return corners;
      }
      case 9: {  // huge or tiny
        const double scale = OneIn(2) ? 1e6 : 1e-6;
        return {p, p + scale * e1, p + scale * e1 + scale * e2, p + scale * e2};
      }
      default:
        return {p, p + e1, p + e1 + e2, p + e2};
    }
  }

  // The end of a ray, often where one of the strips makes it hard.
  Sight End(const Sight& o, const std::vector<Corners>& strips, double size) {
    if (strips.empty() || OneIn(6)) return Point(size);
    const Corners& q = strips[static_cast<std::size_t>(Below(static_cast<int>(strips.size())))];
    const auto corner = [&]() { return q[static_cast<std::size_t>(Below(4))]; };
    const std::array far = {2.0, 1.0, 0.5, -1.0, 4.0, 1.5, 100.0, 1e-3};
    const double reach = far[static_cast<std::size_t>(Below(static_cast<int>(far.size())))];
    const double u = Between(0, 1);
    const double v = Between(0, 1);
    switch (Below(9)) {
      case 0:  // through a corner
        return o + reach * (corner() - o);
      case 1:  // through a side
        return o + reach * (0.5 * (corner() + corner()) - o);
      case 2:  // through the inside
        return o + reach * (q[0] + u * (q[1] - q[0]) + v * (q[3] - q[0]) - o);
      case 3:  // in the plane of the thruster and two corners
        return o + Between(-2, 2) * (corner() - o) + Between(-2, 2) * (corner() - o);
      case 4:  // beside a corner
        return o + reach * (corner() + Any(1e-9) - o);
      case 5: {  // along an axis or a diagonal of the cube
        const Sight way = {Below(3) - 1.0, Below(3) - 1.0, Below(3) - 1.0};
        return o + (grid ? 1.0 + Below(4) : Between(0, size)) * way;
      }
      case 6: {  // an odd number
        Sight end = corner();
        (OneIn(2) ? end.y : end.z) = Odd();
        return end;
      }
      case 7:  // very short or very long
        return o + std::pow(10.0, Between(-60, 60)) * (corner() - o);
      default:
        return corner();
    }
  }

  bool grid = false;

 private:
  std::mt19937 random_;
};

}  // namespace orv::testing
