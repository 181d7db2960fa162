#include "numerics/quaternion.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace orv {
namespace {

void ExpectMatrix(const RotationMatrix& matrix, const std::array<float, 9>& expected) {
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) {
      EXPECT_FLOAT_EQ(matrix(i, j), expected[static_cast<std::size_t>(3 * (i - 1) + j - 1)]) << i << ", " << j;
    }
  }
}

TEST(Quaternion, HasTheScalarFirst) {
  const Quaternion q(1, 2, 3, 4);
  for (std::size_t k = 1; k <= 4; ++k) EXPECT_EQ(q(k), static_cast<double>(k));
}

TEST(Quaternion, GivesItsMatrix) {
  struct Row {
    const char* name;
    Quaternion q;
    std::array<float, 9> matrix;
  };
  const double h = std::sqrt(0.5);
  for (const Row& row : {Row{"identity", {1, 0, 0, 0}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
                         Row{"half turn x", {0, 1, 0, 0}, {1, 0, 0, 0, -1, 0, 0, 0, -1}},
                         Row{"half turn y", {0, 0, 1, 0}, {-1, 0, 0, 0, 1, 0, 0, 0, -1}},
                         Row{"half turn z", {0, 0, 0, 1}, {-1, 0, 0, 0, -1, 0, 0, 0, 1}},
                         Row{"third turn", {0.5, 0.5, 0.5, 0.5}, {0, 0, 1, 1, 0, 0, 0, 1, 0}},
                         // not normalised: 1 - 2 (9 + 16) ...
                         Row{"norm 5.5", {1, 2, 3, 4}, {-49, 4, 22, 20, -39, 20, 10, 28, -25}},
                         Row{"zero", {0, 0, 0, 0}, {1, 0, 0, 0, 1, 0, 0, 0, 1}}}) {
    SCOPED_TRACE(row.name);
    RotationMatrix matrix;
    ConvQuaterToMat(row.q, matrix);
    EXPECT_EQ(matrix.bounds(0).lower, 1);
    EXPECT_EQ(matrix.bounds(1).upper, 3);
    ExpectMatrix(matrix, row.matrix);
  }
  RotationMatrix quarter;
  ConvQuaterToMat({h, 0, 0, h}, quarter);
  EXPECT_NEAR(quarter(1, 2), -1, 1e-6);
  EXPECT_NEAR(quarter(2, 1), 1, 1e-6);
}

TEST(Quaternion, TurnsTheVectorNotTheFrame) {
  const double h = std::sqrt(0.5);
  Vector3 out;
  const std::array<double, 3> x = {1, 0, 0};
  RotateByQuater(x, {h, 0, 0, h}, out);
  EXPECT_NEAR(out(1), 0, 1e-6);
  EXPECT_NEAR(out(2), 1, 1e-6);
  EXPECT_NEAR(out(3), 0, 1e-6);
}

TEST(Quaternion, PassesThroughSinglePrecision) {
  const Quaternion q(0.9, 0.1, 0.2, 0.3);
  const std::array<double, 3> v = {1e6, 2, -3};
  const auto single = [](double value) { return static_cast<double>(static_cast<float>(value)); };
  const double m11 = single(1 - 2 * (0.2 * 0.2 + 0.3 * 0.3));
  const double m12 = single(2 * (0.1 * 0.2 - 0.9 * 0.3));
  const double m13 = single(2 * (0.1 * 0.3 + 0.9 * 0.2));
  Vector3 out;
  RotateByQuater(v, q, out);
  EXPECT_DOUBLE_EQ(out(1), m11 * 1e6 + m12 * 2 + m13 * -3);
  EXPECT_NE(out(1), (1 - 2 * (0.2 * 0.2 + 0.3 * 0.3)) * 1e6 + 2 * (0.1 * 0.2 - 0.9 * 0.3) * 2 +
                        2 * (0.1 * 0.3 + 0.9 * 0.2) * -3);
}

TEST(Quaternion, MayWriteOverItsInput) {
  Vector3 v(1, 2, 3);
  RotateByQuater(std::span<const double, 3>(v.element.data() + 1, 3), {0.5, 0.5, 0.5, 0.5}, v);
  EXPECT_FLOAT_EQ(static_cast<float>(v(1)), 3);
  EXPECT_FLOAT_EQ(static_cast<float>(v(2)), 1);
  EXPECT_FLOAT_EQ(static_cast<float>(v(3)), 2);
}

TEST(Quaternion, TakesAVectorOfAnyIndices) {
  const std::vector<double> list = {9, 1, 0, 0, 9};
  Vector3 out;
  RotateByQuater(std::span<const double, 3>(list.data() + 1, 3), {0, 0, 0, 1}, out);
  EXPECT_EQ(out(1), -1);
  EXPECT_EQ(out(2), 0);
}

}  // namespace
}  // namespace orv
