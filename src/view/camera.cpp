#include "view/camera.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numerics/angles.h"

namespace orv {
namespace {

constexpr double kLargest = 1e100;         // of a coordinate: its square must still be a number
constexpr double kSmallestWindow = 1e-30;  // side of a window that still has an inverse in single precision
constexpr double kLargestWindow = 1e30;
constexpr double kPerspectiveDeg = 45;
constexpr double kDegreesPerPixel = 0.5;
constexpr double kNearestPart = 0.02;  // near plane of a perspective, part of the distance to the look-at point
constexpr double kDollyStop = 0.01;    // a dolly comes no nearer than this part of the distance

// False for a number that is not finite, too.
bool Usable(double x) {
  return std::abs(x) < kLargest;
}
bool Usable(const Vec3& v) {
  return Usable(v[0]) && Usable(v[1]) && Usable(v[2]);
}

double Dot(const Vec3& a, const Vec3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Vec3 Minus(const Vec3& a, const Vec3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vec3 PlusScaled(const Vec3& a, double s, const Vec3& b) {
  return {a[0] + s * b[0], a[1] + s * b[1], a[2] + s * b[2]};
}
double Length(const Vec3& v) {
  return std::hypot(v[0], v[1], v[2]);
}

// False for a vector too short to have a direction.
bool Normalise(Vec3& v) {
  const double length = Length(v);
  if (!(length > 1e-100)) return false;
  for (double& part : v) part /= length;
  return true;
}

// v turned right-handed about a unit axis (O. Rodrigues 1840).
Vec3 Turned(const Vec3& v, const Vec3& axis, double angleDeg) {
  const double angle = angleDeg * kPi / 180;
  const Vec3 across = Cross(axis, v);
  Vec3 out{};
  for (std::size_t i = 0; i < 3; ++i) {
    out[i] = v[i] * std::cos(angle) + across[i] * std::sin(angle) + axis[i] * Dot(axis, v) * (1 - std::cos(angle));
  }
  return out;
}

// The world axis that stands most across a direction.
Vec3 AcrossAxis(const Vec3& direction) {
  Vec3 axis{};
  std::size_t least = 0;
  for (std::size_t i = 1; i < 3; ++i) {
    if (std::abs(direction[i]) < std::abs(direction[least])) least = i;
  }
  axis[least] = 1;
  return axis;
}

bool ValidSide(double low, double high) {
  const double side = high - low;
  return Usable(low) && Usable(high) && side >= kSmallestWindow && side <= kLargestWindow;
}

// The window as the viewport shows it: the longer side reaches further on both ends.
OrthoWindow ShownWindow(OrthoWindow w, int width, int height) {
  const auto widen = [](double& low, double& high, double ratio) {
    const double centre = (low + high) / 2;
    const double half = (high - low) / 2 * ratio;
    low = centre - half;
    high = centre + half;
  };
  if (width > height) widen(w.left, w.right, static_cast<double>(width) / height);
  if (height > width) widen(w.bottom, w.top, static_cast<double>(height) / width);
  return w;
}

// The box left .. right, bottom .. top, near .. far ahead mapped to the cube -1 .. 1, as glOrtho does.
Matrix4 Orthographic(const OrthoWindow& w, double nearPlane, double farPlane) {
  Matrix4 m{};
  m[0] = 2 / (w.right - w.left);
  m[5] = 2 / (w.top - w.bottom);
  m[10] = -2 / (farPlane - nearPlane);
  m[12] = -(w.right + w.left) / (w.right - w.left);
  m[13] = -(w.top + w.bottom) / (w.top - w.bottom);
  m[14] = -(farPlane + nearPlane) / (farPlane - nearPlane);
  m[15] = 1;
  return m;
}

// The pyramid through a window at `distance`, as glFrustum does with the window shrunk to the near plane.
Matrix4 Frustum(const OrthoWindow& w, double distance, double nearPlane, double farPlane) {
  Matrix4 m{};
  m[0] = 2 * distance / (w.right - w.left);
  m[5] = 2 * distance / (w.top - w.bottom);
  m[8] = (w.right + w.left) / (w.right - w.left);
  m[9] = (w.top + w.bottom) / (w.top - w.bottom);
  m[10] = -(farPlane + nearPlane) / (farPlane - nearPlane);
  m[11] = -1;
  m[14] = -2 * farPlane * nearPlane / (farPlane - nearPlane);
  return m;
}

}  // namespace

void Camera::RememberDirection() {
  Vec3 back = Minus(position_, target_);
  if (Normalise(back)) lastBack_ = back;
}

void Camera::SetPosition(const Vec3& position) {
  if (!Usable(position)) return;
  RememberDirection();
  position_ = position;
}

void Camera::SetLookAt(const Vec3& target) {
  if (!Usable(target)) return;
  RememberDirection();
  target_ = target;
}

void Camera::SetUp(const Vec3& up) {
  if (Usable(up)) up_ = up;
}

void Camera::SetPlanes(double nearPlane, double farPlane) {
  if (!Usable(nearPlane) || !Usable(farPlane) || nearPlane == farPlane) return;
  near_ = std::min(nearPlane, farPlane);
  far_ = std::max(nearPlane, farPlane);
}

bool Camera::SetWindow(const OrthoWindow& window) {
  if (!ValidSide(window.left, window.right) || !ValidSide(window.bottom, window.top)) return false;
  window_ = window;
  return true;
}

void Camera::SetSceneRange(double range) {
  SetWindow({-range, range, -range, range});
}

void Camera::Viewport(int width, int height) {
  width_ = std::max(width, 1);
  height_ = std::max(height, 1);
}

void Camera::Zoom(double factor) {
  const double x = (window_.left + window_.right) / 2;
  const double y = (window_.bottom + window_.top) / 2;
  const double halfWidth = (window_.right - window_.left) / 2 * factor;
  const double halfHeight = (window_.top - window_.bottom) / 2 * factor;
  SetWindow({x - halfWidth, x + halfWidth, y - halfHeight, y + halfHeight});
}

void Camera::Pan(double dx, double dy, double dz) {
  const Frame axes = Axes();
  const Vec3 shift = PlusScaled(PlusScaled(PlusScaled({}, dx, axes.right), dy, axes.up), dz, axes.back);
  const Vec3 position = PlusScaled(position_, 1, shift);
  const Vec3 target = PlusScaled(target_, 1, shift);
  if (!Usable(position) || !Usable(target)) return;
  RememberDirection();
  position_ = position;
  target_ = target;
}

void Camera::Dolly(double distance) {
  if (!Usable(distance)) return;
  const double before = Length(Minus(position_, target_));
  const double after = std::max(before - distance, before * kDollyStop);
  const double ratio = before > 0 ? after / before : 1;
  SetPosition(PlusScaled(target_, after, Axes().back));
  if (projection_ != kOrthographic) Zoom(ratio);
}

void Camera::Pitch(double pixels) {
  if (!Usable(pixels)) return;
  const Frame axes = Axes();
  const double angle = std::fmod(pixels * kDegreesPerPixel, 360);
  const double distance = Length(Minus(position_, target_));
  lastBack_ = Turned(axes.back, axes.right, angle);
  position_ = PlusScaled(target_, distance, lastBack_);
  up_ = Turned(axes.up, axes.right, angle);
}

void Camera::Yaw(double pixels) {
  if (!Usable(pixels)) return;
  const Frame axes = Axes();
  const double distance = Length(Minus(position_, target_));
  lastBack_ = Turned(axes.back, axes.up, std::fmod(pixels * kDegreesPerPixel, 360));
  position_ = PlusScaled(target_, distance, lastBack_);
  up_ = axes.up;
}

void Camera::Roll(double angleDeg) {
  if (!Usable(angleDeg)) return;
  const Frame axes = Axes();
  up_ = Turned(axes.up, axes.back, -std::fmod(angleDeg, 360));
}

Camera::Frame Camera::Axes() const {
  Frame axes;
  axes.back = Minus(position_, target_);
  if (!Normalise(axes.back)) axes.back = lastBack_;
  Vec3 up = up_;
  if (!Normalise(up)) up = AcrossAxis(axes.back);
  axes.right = Cross(up, axes.back);
  if (Length(axes.right) < 1e-9) axes.right = Cross(AcrossAxis(axes.back), axes.back);
  Normalise(axes.right);
  axes.up = Cross(axes.back, axes.right);
  return axes;
}

double Camera::UnitsPerPixel() const {
  return (window_.top - window_.bottom) / std::min(width_, height_);
}

// The rows are the unit vectors of the camera, as gluLookAt has them.
Matrix4 Camera::ViewMatrix() const {
  const Frame axes = Axes();
  Matrix4 m = IdentityMatrix();
  const std::array<const Vec3*, 3> rows{&axes.right, &axes.up, &axes.back};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) m[column * 4 + row] = (*rows[row])[column];
    m[12 + row] = -Dot(*rows[row], position_);
  }
  return m;
}

// The eye of the perspective stands where its angle takes in the shorter side of the window at the look-at point, so
// that both projections have the same size there; wherever the camera itself is on the line of sight.
Matrix4 Camera::ProjectionMatrix() const {
  const OrthoWindow shown = ShownWindow(window_, width_, height_);
  if (projection_ == kOrthographic) return Orthographic(shown, near_, far_);
  const double side = std::min(window_.right - window_.left, window_.top - window_.bottom);
  const double eye = side / 2 / std::tan(kPerspectiveDeg / 2 * kPi / 180);
  const double shift = Length(Minus(position_, target_)) - eye;
  const double nearPlane = std::max(near_ - shift, eye * kNearestPart);
  const double farPlane = std::max(far_ - shift, nearPlane + eye);
  Matrix4 toEye = IdentityMatrix();
  toEye[14] = shift;
  return Product(Frustum(shown, eye, nearPlane, farPlane), toEye);
}

Matrix4 Product(const Matrix4& a, const Matrix4& b) {
  Matrix4 out{};
  for (std::size_t column = 0; column < 4; ++column) {
    for (std::size_t row = 0; row < 4; ++row) {
      for (std::size_t k = 0; k < 4; ++k) out[column * 4 + row] += a[k * 4 + row] * b[column * 4 + k];
    }
  }
  return out;
}

std::array<double, 4> Transform(const Matrix4& m, const std::array<double, 4>& v) {
  std::array<double, 4> out{};
  for (std::size_t row = 0; row < 4; ++row) {
    for (std::size_t k = 0; k < 4; ++k) out[row] += m[k * 4 + row] * v[k];
  }
  return out;
}

Matrix4 IdentityMatrix() {
  return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

}  // namespace orv
