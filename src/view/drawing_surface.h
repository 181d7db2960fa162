#pragma once

#include <cstdint>
#include <span>
#include <string>

// A flat surface for plots: a picture, a vector file or a window.
namespace orv {

struct SurfaceColour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const SurfaceColour&, const SurfaceColour&) = default;
};

struct SurfacePoint {
  double x = 0;
  double y = 0;
};

struct SurfaceLine {
  SurfacePoint begin;
  SurfacePoint end;
};

struct SurfaceBox {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  double width() const { return right - left; }
  double height() const { return bottom - top; }
  bool Meets(const SurfaceBox& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
  }
};

// Extent of a text from its pen position: to the right, upwards and downwards.
struct SurfaceText {
  double width = 0;
  double ascent = 0;
  double descent = 0;
  double height() const { return ascent + descent; }
};

struct SurfaceFont {
  std::string family;
  double points = 8;
  bool bold = false;
  friend bool operator==(const SurfaceFont&, const SurfaceFont&) = default;
};

// Lengths are in units of the surface (pixels of a picture) from its top left corner, y downwards; only fonts are
// measured in points. Nothing is drawn at places that are no numbers.
class DrawingSurface {
 public:
  virtual ~DrawingSurface() = default;

  virtual double Width() const = 0;
  virtual double Height() const = 0;
  virtual double UnitsPerPoint() const = 0;

  const SurfaceFont& Font() const { return font_; }
  void setFont(const SurfaceFont& font) { font_ = font; }

  // One line of text in the font that is set; the pen stands on the baseline.
  virtual SurfaceText Measure(const std::string& text) = 0;
  virtual void Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) = 0;

  // Lines with round ends. Those of one call are one stroke: where they meet nothing is drawn twice.
  virtual void Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) = 0;
  virtual void Fill(const SurfaceBox& box, const SurfaceColour& colour) = 0;

 private:
  SurfaceFont font_;
};

// Gives the surface back the font that it had.
class KeepFont {
 public:
  explicit KeepFont(DrawingSurface& surface) : surface_(surface), font_(surface.Font()) {}
  ~KeepFont() { surface_.setFont(font_); }
  KeepFont(const KeepFont&) = delete;
  KeepFont& operator=(const KeepFont&) = delete;

 private:
  DrawingSurface& surface_;
  SurfaceFont font_;
};

// Units per point that let a plot fill a surface with texts of a readable size.
inline double ReadableUnitsPerPoint(double width, double height) {
  constexpr double kPlotWidth = 520;  // points
  constexpr double kPlotHeight = 390;
  constexpr double kSmallest = 96.0 / 72;
  const double fitting = width / kPlotWidth < height / kPlotHeight ? width / kPlotWidth : height / kPlotHeight;
  return fitting > kSmallest ? fitting : kSmallest;
}

}  // namespace orv
