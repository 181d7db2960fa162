#pragma once

#include <string>
#include <vector>

#include "view/recording_gl.h"
#include "view/scene_control.h"

namespace orv {

struct SceneText {
  FontHandle font = 0;
  std::string fontName;
  std::string text;
  double x = 0, y = 0, z = 0;
  double size = 0;
  Rgba colour;
};

struct OverlayText {
  std::string text;
  double column = 0, line = 0;
  double points = 0;
  Rgba colour;
};

struct OverlaySquare {
  double column = 0, line = 0, width = 0, height = 0;
  Rgba colour;
};

// Made before the control that draws on it.
struct RecordingOwner {
  RecordingGl recording;
};

// A control that draws nothing and keeps what the scene asked of it.
class RecordingControl : private RecordingOwner, public SceneControl {
 public:
  explicit RecordingControl(int width = 640, int height = 480, double deviceRatio = 1,
                            FontFinder fonts = SystemFonts());

  RecordingGl& Recording() { return recording; }

  // A paint of which alone the records tell afterwards.
  void PaintAnew(GlEvents& events);
  void ForgetRecords();

  // All since the records were forgotten last, also texts that lie outside the view.
  const std::vector<SceneText>& SceneTexts() const { return sceneTexts_; }
  const std::vector<OverlayText>& OverlayTexts() const { return overlayTexts_; }
  const std::vector<OverlaySquare>& OverlaySquares() const { return overlaySquares_; }
  const std::vector<int>& Cursors() const { return cursors_; }
  int RedrawRequests() const { return redrawRequests_; }
  bool HasSceneText(const std::string& text) const;
  bool HasOverlayText(const std::string& text) const;

  void Redraw() override;
  void Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
              const Rgba& colour) override;
  void StatusPrint(const std::string& text, double column, double line) override;
  void StatusSquare(double column, double line, double width, double height) override;
  void ForeColor(const Rgba& colour) override;
  void FontSize(double points) override;
  using SceneControl::Cursor;
  void Cursor(int number) override;

 private:
  Rgba colour_{1, 1, 1, 1};
  double points_ = 10;
  std::vector<SceneText> sceneTexts_;
  std::vector<OverlayText> overlayTexts_;
  std::vector<OverlaySquare> overlaySquares_;
  std::vector<int> cursors_;
  int redrawRequests_ = 0;
};

}  // namespace orv
