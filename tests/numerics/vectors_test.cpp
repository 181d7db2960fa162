#include "numerics/vectors.h"

#include <cmath>
#include <gtest/gtest.h>

#include "numerics/quaternion.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

void ExpectVector(const Vector3& v, double x, double y, double z) {
  EXPECT_EQ(v(1), x);
  EXPECT_EQ(v(2), y);
  EXPECT_EQ(v(3), z);
}

const Vector3 kA(1, 2, 3);
const Vector3 kB(-4, 5, 7);

TEST(Vectors, DotAndNorm) {
  EXPECT_EQ(vDot(kA, kB), 27);
  EXPECT_EQ(vNorm(Vector3(2, -3, 6)), 7);
  EXPECT_EQ(vNorm(Vector3()), 0);
}

TEST(Vectors, UnitOfAZeroVectorLeavesTheOutput) {
  Vector3 out(7, 8, 9);
  double length = -1;
  vUnit(Vector3(), out, length);
  EXPECT_EQ(length, 0);
  ExpectVector(out, 7, 8, 9);
  vUnit(Vector3(0, -4, 0), out, length);
  EXPECT_EQ(length, 4);
  ExpectVector(out, 0, -1, 0);
}

TEST(Vectors, UnitMultipliesByTheReciprocal) {
  Vector3 out;
  double length = 0;
  vUnit(Vector3(1, 2, 2), out, length);
  EXPECT_EQ(length, 3);
  ExpectVector(out, 1 * (1 / 3.0), 2 * (1 / 3.0), 2 * (1 / 3.0));
}

TEST(Vectors, CrossAndItsHalves) {
  Vector3 cross;
  Vector3 plus;
  Vector3 minus;
  vcross(kA, kB, cross);
  vCrossPlus(kA, kB, plus);
  vCrossMinus(kA, kB, minus);
  ExpectVector(cross, -1, -19, 13);
  ExpectVector(plus, 14, -12, 5);
  ExpectVector(minus, -15, -7, 8);
  ExpectVector(cross, plus(1) + minus(1), plus(2) + minus(2), plus(3) + minus(3));
}

TEST(Vectors, TheOutputMayBeAnInput) {
  Vector3 a = kA;
  vCombine(a, 1, a, -1, a);
  ExpectVector(a, 0, 0, 0);
  a = kA;
  vcross(a, kB, a);
  ExpectVector(a, -1, -19, 13);
  a = kA;
  vcross(kB, a, a);
  ExpectVector(a, 1, 19, -13);
  a = kA;
  vScaleAdd(a, -1, kB, a);
  ExpectVector(a, -5, 3, 4);
  a = kA;
  vCrossPlus(kB, a, a);
  ExpectVector(a, 15, 7, -8);
  a = kA;
  vCrossMinus(kB, a, a);
  ExpectVector(a, -14, 12, -5);
}

TEST(Vectors, CombineAndCopy) {
  Vector3 out;
  vCombine(kA, 2, kB, 3, out);
  ExpectVector(out, -10, 19, 27);
  vcopy(kA, out);
  ExpectVector(out, 1, 2, 3);
}

TEST(Vectors, NormTellsAZeroVectorOnce) {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  EXPECT_EQ(norm(Vector3(), prompt), 0);
  ASSERT_EQ(dialogs.log.size(), 1U);
  EXPECT_EQ(dialogs.log[0], "_normfaute norme nulle ");
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(normseule(Vector3(), prompt), 0);
  EXPECT_EQ(dialogs.log.size(), 1U);
  EXPECT_EQ(norm(Vector3(2, -3, 6), prompt), 7);
  EXPECT_EQ(normseule(Vector3(2, -3, 6), prompt), 7);
  EXPECT_EQ(dialogs.log.size(), 1U);
}

TEST(Vectors, NormTellsAnOverflowByItsLabel) {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  EXPECT_EQ(norm(Vector3(1e200, 0, 0), prompt), 0);
  EXPECT_EQ(dialogs.log.at(0), "normfaute");
  EXPECT_EQ(normseule(Vector3(1e200, 0, 0), prompt), 0);
  EXPECT_EQ(dialogs.log.at(0), "normseulefaute");
}

class MatrixColumns : public ::testing::Test {
 protected:
  void Set(int column, const Vector3& v) {
    for (int axis = 1; axis <= 3; ++axis) matrix(axis, column) = v(static_cast<std::size_t>(axis));
  }
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  ColumnMatrix matrix{{Bounds{1, 3}, Bounds{1, 4}}};
};

TEST_F(MatrixColumns, CrossUnitDividesByBothLengths) {
  Set(1, {3, 0, 0});
  Set(2, {0, 0, 4});
  MatColumnCrossUnit(matrix, 1, 2, 4, prompt);
  ExpectVector({matrix(1, 4), matrix(2, 4), matrix(3, 4)}, 0, -1, 0);
  // Not perpendicular: the sine is left.
  Set(2, {1, 1, 0});
  MatColumnCrossUnit(matrix, 1, 2, 3, prompt);
  EXPECT_DOUBLE_EQ(matrix(3, 3), std::sqrt(0.5));
  EXPECT_DOUBLE_EQ(MatColumnNorm(matrix, 2, prompt), std::sqrt(2.0));
}

TEST_F(MatrixColumns, AZeroColumnFailsAndLeavesTheResult) {
  Set(1, {3, 0, 0});
  Set(3, {7, 8, 9});
  EXPECT_THROW(MatColumnCrossUnit(matrix, 1, 2, 3, prompt), RuntimeFailure);
  ExpectVector({matrix(1, 3), matrix(2, 3), matrix(3, 3)}, 7, 8, 9);
  EXPECT_TRUE(dialogs.log.empty());
}

TEST(Quaternions, KnownMatrices) {
  RotationMatrix matrix;
  ConvQuaterToMat({1, 0, 0, 0}, matrix);
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 3; ++column) EXPECT_EQ(matrix(row, column), row == column ? 1.0F : 0.0F);
  }
  ConvQuaterToMat({0, 1, 0, 0}, matrix);
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 3; ++column) {
      EXPECT_EQ(matrix(row, column), row != column ? 0.0F : (row == 1 ? 1.0F : -1.0F));
    }
  }
}

TEST(Quaternions, TurnsTheVectorThroughSinglePrecision) {
  // 90 degrees around Z: X goes to Y.
  const double half = std::sqrt(0.5);
  const std::array<double, 3> x = {1, 0, 0};
  Vector3 out;
  RotateByQuater(x, {half, 0, 0, half}, out);
  EXPECT_NEAR(out(1), 0, 1e-7);
  EXPECT_NEAR(out(2), 1, 1e-7);
  EXPECT_EQ(out(3), 0);
  const double angle = 0.3;
  RotateByQuater(x, {std::cos(angle / 2), 0, 0, std::sin(angle / 2)}, out);
  EXPECT_EQ(out(2), static_cast<double>(static_cast<float>(2 * std::cos(angle / 2) * std::sin(angle / 2))));
}

TEST(Quaternions, TheQuaternionIsNotNormalised) {
  RotationMatrix matrix;
  ConvQuaterToMat({2, 0, 0, 1}, matrix);
  EXPECT_EQ(matrix(1, 1), -1.0F);
  EXPECT_EQ(matrix(2, 1), 4.0F);
  EXPECT_EQ(matrix(1, 2), -4.0F);
  EXPECT_EQ(matrix(3, 3), 1.0F);
}

}  // namespace
}  // namespace orv
