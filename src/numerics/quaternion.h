#pragma once

#include <span>

#include "numerics/array.h"
#include "numerics/vectors.h"

namespace orv {

// Quaternion of four numbers, indices 1 to 4, scalar part first.
struct Quaternion {
  std::array<double, 5> element{};
  Quaternion() = default;
  Quaternion(double scalar, double x, double y, double z) : element{0, scalar, x, y, z} {}
  double operator()(std::size_t index) const { return element[index]; }
};

// Rotation matrix 1..3 by 1..3, row first, in single precision.
using RotationMatrix = Array<float, 2>;

// Fills M; the quaternion is not normalised first.
void ConvQuaterToMat(const Quaternion& q, RotationMatrix& matrix);

// Turns the vector (three numbers, whatever its indices) by the quaternion; the matrix passes through single precision.
void RotateByQuater(std::span<const double, 3> v, const Quaternion& q, Vector3& out);

}  // namespace orv
