#include "geometry/rigid_motion.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orv {
namespace {

using Vector = std::array<double, 3>;
using Matrix3 = std::array<Vector, 3>;
using Matrix4 = std::array<std::array<double, 4>, 4>;

constexpr double kOpenTurn =
    1e-8;  // share of the spread; places in single precision tell a smaller one not from a line
constexpr int kMostSweeps = 50;

Vector ToVector(const Point3& p) {
  return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
}

Vector CentreOf(std::span<const Point3> points) {
  Vector centre{};
  for (const Point3& point : points) {
    for (std::size_t axis = 0; axis < 3; ++axis) centre[axis] += static_cast<double>(point[axis]);
  }
  for (double& x : centre) x /= static_cast<double>(std::max<std::size_t>(points.size(), 1));
  return centre;
}

double SquaredNorm(const Vector& v) {
  return v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
}

// Sums of the products of coordinates before (rows) and behind (columns).
struct Correlation {
  Matrix3 sums{};
  double weight = 0;  // sum of the squared lengths before

  void Add(const Vector& before, const Vector& behind, double w) {
    for (std::size_t r = 0; r < 3; ++r) {
      for (std::size_t c = 0; c < 3; ++c) sums[r][c] += w * before[r] * behind[c];
    }
    weight += w * SquaredNorm(before);
  }
};

Correlation CorrelationOf(const MotionPairs& pairs) {
  const Vector centreBefore = CentreOf(pairs.pointsBefore);
  const Vector centreBehind = CentreOf(pairs.pointsBehind);
  const auto from = [](const Point3& point, const Vector& centre) {
    Vector v = ToVector(point);
    for (std::size_t axis = 0; axis < 3; ++axis) v[axis] -= centre[axis];
    return v;
  };
  Correlation correlation;
  for (std::size_t n = 0; n < pairs.pointsBefore.size(); ++n) {
    correlation.Add(from(pairs.pointsBefore[n], centreBefore), from(pairs.pointsBehind[n], centreBehind), 1);
  }
  if (pairs.directionsBefore.empty()) return correlation;
  // The directions weigh as much as the points do together.
  const double count = static_cast<double>(pairs.directionsBefore.size());
  const double spread = correlation.weight > 0 ? correlation.weight / count : 1;
  for (std::size_t n = 0; n < pairs.directionsBefore.size(); ++n) {
    correlation.Add(ToVector(pairs.directionsBefore[n]), ToVector(pairs.directionsBehind[n]), spread);
  }
  return correlation;
}

// The symmetric matrix whose eigenvector of the largest eigenvalue is the rotation.
Matrix4 HornMatrix(const Matrix3& s) {
  Matrix4 n{};
  n[0] = {s[0][0] + s[1][1] + s[2][2], s[1][2] - s[2][1], s[2][0] - s[0][2], s[0][1] - s[1][0]};
  n[1] = {n[0][1], s[0][0] - s[1][1] - s[2][2], s[0][1] + s[1][0], s[2][0] + s[0][2]};
  n[2] = {n[0][2], n[1][2], -s[0][0] + s[1][1] - s[2][2], s[1][2] + s[2][1]};
  n[3] = {n[0][3], n[1][3], n[2][3], -s[0][0] - s[1][1] + s[2][2]};
  return n;
}

// Eigenvalues on the diagonal of `m` and eigenvectors in the columns of the result, by Jacobi rotations.
Matrix4 Diagonalise(Matrix4& m) {
  Matrix4 vectors{};
  for (std::size_t k = 0; k < 4; ++k) vectors[k][k] = 1;
  const auto rotate = [](double& a, double& b, double c, double s) {
    const double old = a;
    a = c * old - s * b;
    b = s * old + c * b;
  };
  for (int sweep = 0; sweep < kMostSweeps; ++sweep) {
    bool done = true;
    for (std::size_t p = 0; p < 4; ++p) {
      for (std::size_t q = p + 1; q < 4; ++q) {
        const double size = std::abs(m[p][p]) + std::abs(m[q][q]);
        if (std::abs(m[p][q]) <= 1e-17 * size || m[p][q] == 0) continue;
        done = false;
        const double theta = (m[q][q] - m[p][p]) / (2 * m[p][q]);
        const double t = (theta >= 0 ? 1 : -1) / (std::abs(theta) + std::sqrt(theta * theta + 1));
        const double c = 1 / std::sqrt(t * t + 1);
        const double s = t * c;
        for (std::size_t k = 0; k < 4; ++k) rotate(m[k][p], m[k][q], c, s);
        for (std::size_t k = 0; k < 4; ++k) rotate(m[p][k], m[q][k], c, s);
        for (std::size_t k = 0; k < 4; ++k) rotate(vectors[k][p], vectors[k][q], c, s);
      }
    }
    if (done) break;
  }
  return vectors;
}

std::array<double, 9> MatrixOf(const TurnQuaternion& q) {
  const auto [w, x, y, z] = q;
  return {1 - 2 * (y * y + z * z), 2 * (x * y - w * z),     2 * (x * z + w * y),
          2 * (x * y + w * z),     1 - 2 * (x * x + z * z), 2 * (y * z - w * x),
          2 * (x * z - w * y),     2 * (y * z + w * x),     1 - 2 * (x * x + y * y)};
}

double Length(const TurnQuaternion& q) {
  return std::sqrt(std::inner_product(q.begin(), q.end(), q.begin(), 0.0));
}

}  // namespace

FittedMotion FitMotion(const MotionPairs& pairs, const TurnQuaternion& start) {
  const Correlation correlation = CorrelationOf(pairs);
  Matrix4 m = HornMatrix(correlation.sums);
  const Matrix4 vectors = Diagonalise(m);
  double largest = m[0][0];
  for (std::size_t k = 1; k < 4; ++k) largest = std::max(largest, m[k][k]);

  // All rotations of the largest eigenvalue serve alike: `start` as far as it lies among them.
  FittedMotion fitted;
  TurnQuaternion nearest{};
  TurnQuaternion any{};
  int alike = 0;
  for (std::size_t k = 0; k < 4; ++k) {
    if (largest - m[k][k] > kOpenTurn * correlation.weight) continue;
    ++alike;
    double share = 0;
    for (std::size_t r = 0; r < 4; ++r) share += start[r] * vectors[r][k];
    for (std::size_t r = 0; r < 4; ++r) {
      nearest[r] += share * vectors[r][k];
      any[r] = vectors[r][k];
    }
  }
  const double length = Length(nearest);
  fitted.unique = alike == 1;
  fitted.quaternion = length > 1e-9 ? nearest : any;
  const double unit = length > 1e-9 ? length : Length(any);
  for (double& part : fitted.quaternion) part /= unit;
  fitted.motion = MotionAboutCentres(pairs, fitted.quaternion);
  return fitted;
}

RigidMotion MotionAboutCentres(const MotionPairs& pairs, const TurnQuaternion& quaternion) {
  RigidMotion motion;
  motion.rotation = MatrixOf(quaternion);
  const Vector before = CentreOf(pairs.pointsBefore);
  const Vector behind = CentreOf(pairs.pointsBehind);
  for (std::size_t r = 0; r < 3; ++r) {
    double turned = 0;
    for (std::size_t c = 0; c < 3; ++c) turned += motion.rotation[3 * r + c] * before[c];
    motion.translation[r] = behind[r] - turned;
  }
  return motion;
}

Point3 Moved(const RigidMotion& motion, const Point3& point) {
  Point3 result{};
  for (std::size_t r = 0; r < 3; ++r) {
    double x = motion.translation[r];
    for (std::size_t c = 0; c < 3; ++c) x += motion.rotation[3 * r + c] * static_cast<double>(point[c]);
    result[r] = static_cast<float>(x);
  }
  return result;
}

}  // namespace orv
