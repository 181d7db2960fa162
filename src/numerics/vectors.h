#pragma once

#include <array>
#include <cstddef>

#include "numerics/array.h"
#include "numerics/error_prompt.h"

// Three-vectors. Elements 1 to 3 are used, element 0 stays empty; so an index is the number of the axis.
namespace orv {

struct Vector3 {
  std::array<double, 4> element{};
  Vector3() = default;
  Vector3(double x, double y, double z) : element{0, x, y, z} {}
  double& operator()(std::size_t axis) { return element[axis]; }
  double operator()(std::size_t axis) const { return element[axis]; }
};

// a . b
double vDot(const Vector3& a, const Vector3& b);
// Length of a; exactly 0 for a zero vector.
double vNorm(const Vector3& a);
// normOut = length of a; out = a / length, left as it was when the length is 0.
void vUnit(const Vector3& a, Vector3& out, double& normOut);
// a x b and its two halves, which add up to it: the products with a plus sign and those with a minus sign. In all
// routines the output may be one of the inputs.
void vcross(const Vector3& a, const Vector3& b, Vector3& out);
void vCrossPlus(const Vector3& a, const Vector3& b, Vector3& out);
void vCrossMinus(const Vector3& a, const Vector3& b, Vector3& out);
// s a + t b, and s a + b.
void vCombine(const Vector3& a, double s, const Vector3& b, double t, Vector3& out);
void vScaleAdd(const Vector3& a, double s, const Vector3& b, Vector3& out);
void vcopy(const Vector3& a, Vector3& out);

// Length of a, with an error prompt for a zero vector ("_normfaute norme nulle ") or an overflow ("normfaute").
double norm(const Vector3& a, ErrorPrompt& prompt);
// The same without a word for a zero vector.
double normseule(const Vector3& a, ErrorPrompt& prompt);

// Columns of a matrix with rows 1 to 3. Column c3 becomes (column c1 x column c2) / (their lengths' product); it has
// unit length only when the two columns are perpendicular. Failure 11 or 6 when one of them is zero.
using ColumnMatrix = Array<double, 2>;
void MatColumnCrossUnit(ColumnMatrix& matrix, int c1, int c2, int c3, ErrorPrompt& prompt);
double MatColumnNorm(const ColumnMatrix& matrix, int column, ErrorPrompt& prompt);

}  // namespace orv
