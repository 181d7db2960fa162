#include "numerics/quaternion.h"

namespace orv {

void ConvQuaterToMat(const Quaternion& q, RotationMatrix& matrix) {
  matrix.Size({Bounds{1, 3}, Bounds{1, 3}});
  const auto set = [&](int row, int column, double value) { matrix(row, column) = static_cast<float>(value); };
  set(1, 1, 1 - 2 * (q(3) * q(3) + q(4) * q(4)));
  set(1, 2, 2 * (q(2) * q(3) - q(1) * q(4)));
  set(1, 3, 2 * (q(2) * q(4) + q(1) * q(3)));
  set(2, 1, 2 * (q(2) * q(3) + q(1) * q(4)));
  set(2, 2, 1 - 2 * (q(2) * q(2) + q(4) * q(4)));
  set(2, 3, 2 * (q(3) * q(4) - q(1) * q(2)));
  set(3, 1, 2 * (q(2) * q(4) - q(1) * q(3)));
  set(3, 2, 2 * (q(3) * q(4) + q(1) * q(2)));
  set(3, 3, 1 - 2 * (q(2) * q(2) + q(3) * q(3)));
}

void RotateByQuater(std::span<const double, 3> v, const Quaternion& q, Vector3& out) {
  RotationMatrix matrix;
  ConvQuaterToMat(q, matrix);
  Vector3 result;
  for (std::size_t i = 1; i <= 3; ++i) {
    for (std::size_t j = 1; j <= 3; ++j) result(i) += static_cast<double>(matrix(i, j)) * v[j - 1];
  }
  out = result;
}

}  // namespace orv
