#pragma once

#include <functional>
#include <map>
#include <optional>

#include "view/gl_control.h"
#include "view/text_raster.h"

namespace orv {

// What every control does alike: camera, trackball, lights, materials, texts, grid, and the steps of a paint. What
// differs, the OpenGL and where the picture goes, comes from the control built on it.
class SceneControl : public glxCtl {
 public:
  // Size in device pixels, at least 1; `gl` outlives the control.
  SceneControl(GlApi& gl, int width, int height, double deviceRatio, FontFinder fonts = SystemFonts());

  GlApi& Gl() override { return gl_; }
  orv::Camera& Camera() override { return camera_; }
  const orv::Camera& Camera() const { return camera_; }
  orv::Trackball& Trackball() override { return trackball_; }

  void Redraw() override { redrawAsked_ = true; }
  // A paint was asked for since the last one began.
  bool RedrawAsked() const { return redrawAsked_; }

  int Width() const override { return width_; }
  int Height() const override { return height_; }
  double DeviceRatio() const override { return deviceRatio_; }

  FontHandle FontSet(const std::string& name, bool bold, bool italic, double size) override;
  // The text begins with its baseline at the point; it is left out when the point is behind the camera, before the
  // near or behind the far plane.
  void Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
              const Rgba& colour) override;

  void ForeColor(const Rgba& colour) override { foreColour_ = colour; }
  void FontSize(double points) override { overlayPoints_ = points; }
  void StatusPrint(const std::string& text, double column, double line) override;
  void StatusSquare(double column, double line, double width, double height) override;
  double StatusWidth(const std::string& text) override;

  // Slot 0 is the material in force; the others are kept for whoever asks.
  void Materials(int slot, const SurfaceMaterial& material) override;
  const SurfaceMaterial& MaterialIn(int slot) { return materials_[slot]; }
  // Lights 0 to 7; their positions are places in the scene.
  void Lights(int number, const Light& light) override;
  void SceneRange(double range) override;
  double SceneRange() const { return sceneRange_; }
  void DoubleBuffer(bool on) override { doubleBuffer_ = on; }
  bool DoubleBuffered() const { return doubleBuffer_; }
  void PickDepth(int depth) override { pickDepth_ = depth; }
  int PickDepth() const { return pickDepth_; }
  // Lines a tenth of the scene range apart, in the plane of the x and y axes.
  void DrawGrid() override;
  void Cursor(int number) override { cursor_ = number; }
  int Cursor() const { return cursor_; }

  // Raises init, InitGL and Reshape, each once for these events.
  void Attach(GlEvents& events);
  // New size; Reshape is raised by the next paint when it differs.
  void Resize(int width, int height, double deviceRatio);
  // One picture: Reshape when the size changed, viewport, colour and depth cleared, matrices, lights; then Draw,
  // DrawGDI and Painted are raised. A new scene range within
  // Draw holds for what is drawn after it; other changes of the camera for the next paint.
  void Paint(GlEvents& events);

  // From the scene to the eye: the camera's view, the turn of the trackball about the look-at point.
  Matrix4 ModelviewMatrix() const;
  // Where a point of the scene shows, during a paint in the picture that is painted: device pixels from the left and
  // the top, depth 0 .. 1. False when it is not between the planes in front of the camera.
  struct WindowPoint {
    double x = 0, y = 0, depth = 0;
  };
  bool Project(double x, double y, double z, WindowPoint& point) const;
  // Height in pixels of a text of the scene.
  double TextPixels(FontHandle font, double size) const;

  // Receives each message about something that a picture lacks, such as fonts; also those from before.
  void LogTo(std::function<void(const std::string&)> log);

 protected:
  // Makes the OpenGL of the control the current one; called before events are raised. False: nothing can be drawn.
  virtual bool MakeCurrent() { return true; }

  struct Font {
    std::string name;
    bool bold = false;
    bool italic = false;
    double points = 10;
    int face = TextRaster::kNoFace;
    friend bool operator==(const Font&, const Font&) = default;
  };
  const Font& FontOf(FontHandle font) const;
  void TellMessage(const std::string& message);

 private:
  void LoadMatrices();
  void ApplyLight(int number, const Light& light);
  int OverlayFace();
  double OverlayPixels() const;
  void NoteMissingFonts();
  std::optional<TextHalo> HaloFor(const Rgba& colour, double pixels) const;

  GlApi& gl_;
  int width_;
  int height_;
  double deviceRatio_;
  orv::Camera camera_;
  orv::Trackball trackball_;
  TextRaster texts_;
  std::vector<Font> fonts_;
  std::map<int, SurfaceMaterial> materials_;
  std::map<int, Light> lights_;
  Rgba foreColour_{1, 1, 1, 1};
  double overlayPoints_ = 10;
  double sceneRange_ = 10;
  int cursor_ = 0;
  int pickDepth_ = 0;
  bool doubleBuffer_ = false;
  bool redrawAsked_ = false;
  bool sizeChanged_ = false;
  bool painting_ = false;
  Matrix4 modelview_ = IdentityMatrix();  // those of the paint under way
  Matrix4 projection_ = IdentityMatrix();
  bool fontsMissingTold_ = false;
  std::vector<std::string> untold_;
  std::function<void(const std::string&)> log_;
};

}  // namespace orv
