#pragma once

#include <string>

#include "view/camera.h"
#include "view/gl_api.h"
#include "view/trackball.h"

// The control that hosts the view: a window, an off-screen picture or a recording. The scene speaks to it alone.
namespace orv {

using FontHandle = int;

struct Light {
  std::array<float, 4> ambient{0, 0, 0, 1};
  std::array<float, 4> diffuse{1, 1, 1, 1};
  std::array<float, 4> specular{1, 1, 1, 1};
  std::array<float, 4> position{0, 0, 1, 0};
  bool enabled = false;
};

struct SurfaceMaterial {
  unsigned face = 0x404;  // front
  std::array<float, 4> ambient{0.2F, 0.2F, 0.2F, 1};
  std::array<float, 4> diffuse{0.8F, 0.8F, 0.8F, 1};
  std::array<float, 4> specular{0, 0, 0, 1};
  float shininess = 0;
};

class glxCtl {
 public:
  virtual ~glxCtl() = default;

  virtual GlApi& Gl() = 0;
  virtual orv::Camera& Camera() = 0;
  virtual orv::Trackball& Trackball() = 0;

  // Asks for a paint; it comes later.
  virtual void Redraw() = 0;

  // Size of the view in device pixels, and device pixels in a logical one.
  virtual int Width() const = 0;
  virtual int Height() const = 0;
  virtual double DeviceRatio() const = 0;

  // A font by name and size in points (a point is 4/3 logical pixels). A font that is not there falls back to one
  // that is; with none at all texts are left out and that is logged once.
  virtual FontHandle FontSet(const std::string& name, bool bold, bool italic, double size) = 0;
  // A text in the scene that faces the camera and begins at (x, y, z). `size` is the height of its letters in scene
  // units at the first view of a plot; it stays the same under zoom and never falls below the font's own size.
  virtual void Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
                      const Rgba& colour) = 0;

  // The flat layer in front of the scene. Column and line are logical pixels from the left and the top.
  virtual void ForeColor(const Rgba& colour) = 0;
  virtual void FontSize(double points) = 0;
  virtual void StatusPrint(const std::string& text, double column, double line) = 0;
  virtual void StatusSquare(double column, double line, double width, double height) = 0;
  // Width of a text as StatusPrint would print it, logical pixels.
  virtual double StatusWidth(const std::string& text) = 0;

  virtual void Materials(int slot, const SurfaceMaterial& material) = 0;
  virtual void Lights(int number, const Light& light) = 0;
  // Half the side of the cube that the scene fills; sets the camera's window.
  virtual void SceneRange(double range) = 0;
  virtual void DoubleBuffer(bool on) = 0;
  virtual void PickDepth(int depth) = 0;
  virtual void DrawGrid() = 0;

  // Pointer over the view: a standard number, or one of the pictures 200 to 212.
  virtual void Cursor(int number) = 0;
};

// What the control raises.
class GlEvents {
 public:
  virtual ~GlEvents() = default;
  virtual void init() = 0;
  virtual void InitGL() = 0;
  virtual void Reshape(int width, int height, int& result) = 0;
  virtual void Draw() = 0;
  virtual void DrawGDI() = 0;
  // After each paint.
  virtual void Painted() = 0;
};

}  // namespace orv
