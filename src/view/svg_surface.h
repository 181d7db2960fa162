#pragma once

#include "view/drawing_surface.h"
#include "view/text_raster.h"

namespace orv {

// A surface that writes what is drawn as a vector picture for browsers and editors, white at first.
class SvgSurface : public DrawingSurface {
 public:
  // Sides below 1 count as 1. The texts, by which lengths are measured, outlive the surface.
  SvgSurface(TextRaster& texts, double width, double height, double unitsPerPoint);

  double Width() const override { return width_; }
  double Height() const override { return height_; }
  double UnitsPerPoint() const override { return unitsPerPoint_; }
  SurfaceText Measure(const std::string& text) override;
  void Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) override;
  void Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) override;
  void Fill(const SurfaceBox& box, const SurfaceColour& colour) override;

  // The file's whole text, UTF-8.
  std::string File() const;

 private:
  TextRaster& texts_;
  double width_;
  double height_;
  double unitsPerPoint_;
  std::string body_;
};

}  // namespace orv
