#include "view/trackball.h"

#include <algorithm>
#include <cmath>

#include "numerics/angles.h"

namespace orv {
namespace {

using Axis = std::array<double, 3>;

constexpr double kDegreesPerLength = 90;
constexpr double kNoAxis = 1e-24;  // square of a product that is rounding alone: opposite points of the ball

double Dot(const Axis& a, const Axis& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Axis Cross(const Axis& a, const Axis& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

void Normalise(Axis& a) {
  const double length = std::sqrt(Dot(a, a));
  for (double& part : a) part /= length;
}

// The first three columns made perpendicular unit vectors again: many small turns must not shear the scene.
void Straighten(Matrix4& m) {
  Axis x{m[0], m[1], m[2]};
  Axis y{m[4], m[5], m[6]};
  Normalise(x);
  const double along = Dot(x, y);
  for (std::size_t i = 0; i < 3; ++i) y[i] -= along * x[i];
  Normalise(y);
  const Axis z = Cross(x, y);
  for (std::size_t i = 0; i < 3; ++i) {
    m[i] = x[i];
    m[4 + i] = y[i];
    m[8 + i] = z[i];
  }
}

}  // namespace

Axis Trackball::OnSphere(double x, double y, const Axis& last) {
  const double r = std::min(std::hypot(x, y), 1.0);
  Axis point{x, y, std::cos(kPi / 2 * r)};
  const double length = std::hypot(point[0], point[1], point[2]);
  if (!(length > 0) || !std::isfinite(length)) return last;
  for (double& part : point) part /= length;
  return point;
}

void Trackball::Down(double x, double y) {
  lastTrack_ = OnSphere(x, y, lastTrack_);
  spinAngleDeg_ = 0;
  spinOn_ = false;
  trackDown_ = true;
  moved_ = false;
}

void Trackball::Move(double x, double y) {
  if (!trackDown_) return;
  const Axis now = OnSphere(x, y, lastTrack_);
  const double length = std::hypot(now[0] - lastTrack_[0], now[1] - lastTrack_[1], now[2] - lastTrack_[2]);
  spinAngleDeg_ = length * kDegreesPerLength;
  const Axis axis = Cross(lastTrack_, now);
  if (Dot(axis, axis) > kNoAxis) spinAxis_ = axis;
  lastTrack_ = now;
  moved_ = moved_ || length > 0;
  if (enabled_) Turn(spinAngleDeg_);
}

void Trackball::Up(double, double) {
  if (!trackDown_) return;
  trackDown_ = false;
  if (!moved_) spinAngleDeg_ = 0;
  spinOn_ = spinAngleDeg_ != 0;
}

void Trackball::Update() {
  if (enabled_ && spinOn_) Turn(spinAngleDeg_);
}

void Trackball::Stop() {
  spinOn_ = false;
  spinAngleDeg_ = 0;
}

void Trackball::Clear() {
  Stop();
  matrix_ = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

// Each column turned right-handed about the axis of the spin (O. Rodrigues 1840).
void Trackball::Turn(double angleDeg) {
  if (angleDeg == 0) return;
  Axis axis = spinAxis_;
  Normalise(axis);
  const double c = std::cos(angleDeg * kPi / 180);
  const double s = std::sin(angleDeg * kPi / 180);
  for (std::size_t column = 0; column < 12; column += 4) {
    const Axis v{matrix_[column], matrix_[column + 1], matrix_[column + 2]};
    const Axis across = Cross(axis, v);
    const double along = Dot(axis, v) * (1 - c);
    for (std::size_t i = 0; i < 3; ++i) matrix_[column + i] = v[i] * c + across[i] * s + axis[i] * along;
  }
  Straighten(matrix_);
}

}  // namespace orv
