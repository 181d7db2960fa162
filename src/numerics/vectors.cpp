#include "numerics/vectors.h"

#include <cmath>

namespace orv {

double vDot(const Vector3& a, const Vector3& b) {
  return a(1) * b(1) + a(2) * b(2) + a(3) * b(3);
}

double vNorm(const Vector3& a) {
  const double sum = vDot(a, a);
  return sum == 0 ? 0 : std::pow(sum, 0.5);
}

void vUnit(const Vector3& a, Vector3& out, double& normOut) {
  normOut = vNorm(a);
  if (normOut == 0) return;
  const double factor = 1 / normOut;
  for (std::size_t axis = 1; axis <= 3; ++axis) out(axis) = a(axis) * factor;
}

void vcross(const Vector3& a, const Vector3& b, Vector3& out) {
  const Vector3 result(a(2) * b(3) - a(3) * b(2), a(3) * b(1) - a(1) * b(3), a(1) * b(2) - a(2) * b(1));
  out = result;
}

void vCrossPlus(const Vector3& a, const Vector3& b, Vector3& out) {
  const Vector3 result(a(2) * b(3), a(3) * b(1), a(1) * b(2));
  out = result;
}

void vCrossMinus(const Vector3& a, const Vector3& b, Vector3& out) {
  const Vector3 result(-a(3) * b(2), -a(1) * b(3), -a(2) * b(1));
  out = result;
}

void vCombine(const Vector3& a, double s, const Vector3& b, double t, Vector3& out) {
  const Vector3 result(s * a(1) + t * b(1), s * a(2) + t * b(2), s * a(3) + t * b(3));
  out = result;
}

void vScaleAdd(const Vector3& a, double s, const Vector3& b, Vector3& out) {
  const Vector3 result(s * a(1) + b(1), s * a(2) + b(2), s * a(3) + b(3));
  out = result;
}

void vcopy(const Vector3& a, Vector3& out) {
  for (std::size_t axis = 1; axis <= 3; ++axis) out(axis) = a(axis);
}

namespace {

double Length(const Vector3& a, ErrorPrompt& prompt, const char* label) {
  double length = 0;
  try {
    length = Root(Finite(vDot(a, a)));
  } catch (const RuntimeFailure&) {
    prompt(label);
  }
  return length;
}

Vector3 Column(const ColumnMatrix& matrix, int column) {
  return {matrix(1, column), matrix(2, column), matrix(3, column)};
}

}  // namespace

double norm(const Vector3& a, ErrorPrompt& prompt) {
  const double length = Length(a, prompt, "normfaute");
  if (vDot(a, a) == 0) prompt("_normfaute norme nulle ");
  return length;
}

double normseule(const Vector3& a, ErrorPrompt& prompt) {
  return Length(a, prompt, "normseulefaute");
}

double MatColumnNorm(const ColumnMatrix& matrix, int column, ErrorPrompt& prompt) {
  return normseule(Column(matrix, column), prompt);
}

void MatColumnCrossUnit(ColumnMatrix& matrix, int c1, int c2, int c3, ErrorPrompt& prompt) {
  Vector3 cross;
  vcross(Column(matrix, c1), Column(matrix, c2), cross);
  const double product = MatColumnNorm(matrix, c1, prompt) * MatColumnNorm(matrix, c2, prompt);
  const Vector3 result(Divide(cross(1), product), Divide(cross(2), product), Divide(cross(3), product));
  for (std::size_t axis = 1; axis <= 3; ++axis) matrix(axis, c3) = result(axis);
}

}  // namespace orv
