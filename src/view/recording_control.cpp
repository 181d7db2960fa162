#include "view/recording_control.h"

#include <algorithm>

namespace orv {

RecordingControl::RecordingControl(int width, int height, double deviceRatio, FontFinder fonts)
    : SceneControl(recording, width, height, deviceRatio, std::move(fonts)) {}

void RecordingControl::PaintAnew(GlEvents& events) {
  ForgetRecords();
  Paint(events);
}

void RecordingControl::ForgetRecords() {
  recording.StartPaint();
  sceneTexts_.clear();
  overlayTexts_.clear();
  overlaySquares_.clear();
  cursors_.clear();
  redrawRequests_ = 0;
}

bool RecordingControl::HasSceneText(const std::string& text) const {
  return std::ranges::any_of(sceneTexts_, [&](const SceneText& drawn) { return drawn.text == text; });
}

bool RecordingControl::HasOverlayText(const std::string& text) const {
  return std::ranges::any_of(overlayTexts_, [&](const OverlayText& drawn) { return drawn.text == text; });
}

void RecordingControl::Redraw() {
  ++redrawRequests_;
  SceneControl::Redraw();
}

void RecordingControl::Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
                              const Rgba& colour) {
  sceneTexts_.push_back({font, FontOf(font).name, text, x, y, z, size, colour});
  SceneControl::Text3D(font, text, x, y, z, size, colour);
}

void RecordingControl::StatusPrint(const std::string& text, double column, double line) {
  overlayTexts_.push_back({text, column, line, points_, colour_});
  SceneControl::StatusPrint(text, column, line);
}

void RecordingControl::StatusSquare(double column, double line, double width, double height) {
  overlaySquares_.push_back({column, line, width, height, colour_});
  SceneControl::StatusSquare(column, line, width, height);
}

void RecordingControl::ForeColor(const Rgba& colour) {
  colour_ = colour;
  SceneControl::ForeColor(colour);
}

void RecordingControl::FontSize(double points) {
  points_ = points;
  SceneControl::FontSize(points);
}

void RecordingControl::Cursor(int number) {
  cursors_.push_back(number);
  SceneControl::Cursor(number);
}

}  // namespace orv
