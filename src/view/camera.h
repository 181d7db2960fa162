#pragma once

#include <array>

#include "view/gl_api.h"

namespace orv {

using Vec3 = std::array<double, 3>;

// What the orthographic projection shows, in scene units, for a viewport that is as wide as high.
struct OrthoWindow {
  double left = -10;
  double right = 10;
  double bottom = -10;
  double top = 10;
  friend bool operator==(const OrthoWindow&, const OrthoWindow&) = default;
};

inline constexpr int kOrthographic = 1;
inline constexpr int kPerspective = 0;

// The camera of the view: where it stands, where it looks and how it projects. Right-handed, angles in degrees.
//
// The orthographic window belongs to the shorter side of the viewport; the longer one shows more on both sides. The
// projection 1 is orthographic and does not use the field angle; any other is a perspective of 45 degrees that shows
// the same window at the look-at point.
class Camera {
 public:
  void SetPosition(const Vec3& position);
  const Vec3& Position() const { return position_; }
  void SetLookAt(const Vec3& target);
  const Vec3& LookAt() const { return target_; }
  void SetUp(const Vec3& up);
  const Vec3& Up() const { return up_; }
  // Either may be the larger: the nearer one is taken for the near plane.
  void SetPlanes(double nearPlane, double farPlane);
  double NearPlane() const { return near_; }
  double FarPlane() const { return far_; }
  void SetFieldAngle(double degrees) { fieldDeg_ = degrees; }
  double FieldAngle() const { return fieldDeg_; }
  void SetProjection(int mode) { projection_ = mode; }
  int Projection() const { return projection_; }
  // A window without width or height, or with a number that is not finite, is refused: false, nothing changes.
  bool SetWindow(const OrthoWindow& window);
  const OrthoWindow& Window() const { return window_; }
  // The window reaches from -range to range on both axes.
  void SetSceneRange(double range);

  void Viewport(int width, int height);
  int Width() const { return width_; }
  int Height() const { return height_; }

  // Multiplies the window about its centre: below 1 enlarges what is seen.
  void Zoom(double factor);
  // Moves position and look-at together, in scene units to the right and upwards.
  void Pan(double dx, double dy, double dz = 0);
  // Moves the position towards the look-at point (positive: nearer), never through it. In a perspective the window
  // shrinks with the distance, so that things come nearer.
  void Dolly(double distance);
  // Turns the camera about the look-at point by pixels (half a degree each), right-handed: Pitch about its right, Yaw
  // about its up vector; Roll turns it about the line of sight, so that the picture turns counter-clockwise.
  void Pitch(double pixels);
  void Yaw(double pixels);
  void Roll(double angleDeg);

  // Unit vectors of the camera: to the right, upwards, and from the look-at point to the camera. A camera on its
  // look-at point keeps the direction that it had last; an up vector along the line of sight is replaced by one
  // perpendicular to it.
  struct Frame {
    Vec3 right, up, back;
  };
  Frame Axes() const;
  // Scene units that one pixel covers at the look-at point.
  double UnitsPerPixel() const;

  Matrix4 ViewMatrix() const;
  Matrix4 ProjectionMatrix() const;

 private:
  void RememberDirection();

  Vec3 position_{10, 10, 10};
  Vec3 target_{};
  Vec3 up_{0, 1, 0};
  Vec3 lastBack_{0, 0, 1};  // direction of a camera that stands on its look-at point
  double near_ = -10000;
  double far_ = 10000;
  double fieldDeg_ = 180;
  int projection_ = kOrthographic;
  OrthoWindow window_;
  int width_ = 1;
  int height_ = 1;
};

// Product a b, and the image of a point: x, y, z, w.
Matrix4 Product(const Matrix4& a, const Matrix4& b);
std::array<double, 4> Transform(const Matrix4& m, const std::array<double, 4>& v);
Matrix4 IdentityMatrix();

}  // namespace orv
