#pragma once

#include <string>
#include <vector>

#include "view/drawing_surface.h"

namespace orv::testing {

// A surface that keeps what is drawn on it. Every letter is half as wide as its font is high.
class RecordingSurface : public DrawingSurface {
 public:
  struct Printed {
    std::string text;
    SurfacePoint pen;
    SurfaceBox box;
    SurfaceColour colour;
    SurfaceFont font;
  };
  struct Stroke {
    std::vector<SurfaceLine> lines;
    SurfaceColour colour;
    double width = 0;
  };

  RecordingSurface(double width, double height) : width_(width), height_(height) {}

  double Width() const override { return width_; }
  double Height() const override { return height_; }
  double UnitsPerPoint() const override { return 1; }
  SurfaceText Measure(const std::string& text) override {
    const double size = Font().points;
    return {static_cast<double>(text.size()) * size / 2, size * 0.8, size * 0.2};
  }
  void Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) override {
    if (text.empty()) return;
    const SurfaceText extent = Measure(text);
    texts.push_back(
        {text, pen, {pen.x, pen.y - extent.ascent, pen.x + extent.width, pen.y + extent.descent}, colour, Font()});
  }
  void Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) override {
    strokes.push_back({{lines.begin(), lines.end()}, colour, width});
  }
  void Fill(const SurfaceBox& box, const SurfaceColour&) override { fills.push_back(box); }

  // Texts in a size of font, in the order in which they were printed.
  std::vector<Printed> TextsOf(double points) const {
    std::vector<Printed> found;
    for (const Printed& printed : texts) {
      if (printed.font.points == points) found.push_back(printed);
    }
    return found;
  }
  bool Has(const std::string& text) const {
    for (const Printed& printed : texts) {
      if (printed.text == text) return true;
    }
    return false;
  }

  std::vector<Printed> texts;
  std::vector<Stroke> strokes;
  std::vector<SurfaceBox> fills;

 private:
  double width_;
  double height_;
};

}  // namespace orv::testing
