#pragma once

#include "view/gl_api.h"

namespace orv {

// Turns the scene like a ball under the pointer; let go while moving, it keeps turning.
class Trackball {
 public:
  void Enable(bool on) { enabled_ = on; }
  bool Enabled() const { return enabled_; }

  // Pointer in device coordinates, -1 .. 1 to the right and upwards.
  void Down(double x, double y);
  void Move(double x, double y);
  void Up(double x, double y);

  // One step of the spin: turns by SpinAngle while it spins. Nothing while disabled.
  void Update();
  // Stops the spin; Clear also takes the turn back.
  void Stop();
  void Clear();

  bool SpinOn() const { return spinOn_; }
  double SpinAngle() const { return spinAngleDeg_; }
  const std::array<double, 3>& SpinAxis() const { return spinAxis_; }
  bool TrackDown() const { return trackDown_; }

  // The turn so far: a rotation matrix, in the camera's frame.
  const Matrix4& Matrix() const { return matrix_; }

  // The point of the unit sphere under a pointer position.
  static std::array<double, 3> OnSphere(double x, double y, const std::array<double, 3>& last);

 private:
  void Turn(double angleDeg);

  bool enabled_ = false;
  bool spinOn_ = false;
  bool trackDown_ = false;
  bool moved_ = false;
  double spinAngleDeg_ = 0;
  std::array<double, 3> spinAxis_{0, 0, 1};
  std::array<double, 3> lastTrack_{0, 0, 1};
  Matrix4 matrix_{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

}  // namespace orv
