#pragma once

#include <vector>

#include "view/drawing_surface.h"
#include "view/image_file.h"
#include "view/text_raster.h"

namespace orv {

// A surface of pixels, white at first, with smooth lines.
class RasterSurface : public DrawingSurface {
 public:
  // Sides below 1 pixel and above kLargestImageSide are brought within these. The texts outlive the surface.
  RasterSurface(TextRaster& texts, int width, int height, double unitsPerPoint);

  double Width() const override { return image_.width; }
  double Height() const override { return image_.height; }
  double UnitsPerPoint() const override { return unitsPerPoint_; }
  SurfaceText Measure(const std::string& text) override;
  void Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) override;
  void Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) override;
  void Fill(const SurfaceBox& box, const SurfaceColour& colour) override;

  const Image& Picture() const { return image_; }

 private:
  int Face();
  void Cover(const SurfaceLine& line, double radius, double strength);
  void CoverRow(const SurfaceLine& line, int row, double radius, double strength);
  void Blend(std::size_t pixel, const SurfaceColour& colour, double share);

  TextRaster& texts_;
  double unitsPerPoint_;
  Image image_;
  std::vector<std::uint8_t> coverage_;  // of the stroke at work, 0 .. 255 a pixel
};

}  // namespace orv
