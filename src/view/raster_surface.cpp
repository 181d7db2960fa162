#include "view/raster_surface.h"

#include <algorithm>
#include <cmath>

namespace orv {
namespace {

constexpr double kFar = 1e6;  // pixels; what ends further away is drawn up to there
constexpr double kOpaque = 255;

Rgba ColourOf(const SurfaceColour& colour) {
  const auto part = [](std::uint8_t value) { return static_cast<float>(value / kOpaque); };
  return {part(colour.red), part(colour.green), part(colour.blue), 1};
}

bool IsPlace(const SurfacePoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

SurfacePoint WithinReach(const SurfacePoint& point) {
  return {std::clamp(point.x, -kFar, kFar), std::clamp(point.y, -kFar, kFar)};
}

double Distance(const SurfaceLine& line, double x, double y) {
  const double dx = line.end.x - line.begin.x;
  const double dy = line.end.y - line.begin.y;
  const double square = dx * dx + dy * dy;
  double t = square > 0 ? ((x - line.begin.x) * dx + (y - line.begin.y) * dy) / square : 0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(x - line.begin.x - t * dx, y - line.begin.y - t * dy);
}

}  // namespace

RasterSurface::RasterSurface(TextRaster& texts, int width, int height, double unitsPerPoint)
    : texts_(texts), unitsPerPoint_(unitsPerPoint) {
  image_.width = std::clamp(width, 1, kLargestImageSide);
  image_.height = std::clamp(height, 1, kLargestImageSide);
  const std::size_t pixels = static_cast<std::size_t>(image_.width) * static_cast<std::size_t>(image_.height);
  image_.rgb.assign(pixels * 3, 255);
  coverage_.assign(pixels, 0);
}

int RasterSurface::Face() {
  return texts_.Face(Font().family, Font().bold, false);
}

SurfaceText RasterSurface::Measure(const std::string& text) {
  const TextExtent extent = texts_.Measure(Face(), text, Font().points * unitsPerPoint_);
  return {extent.width, extent.ascent, extent.descent};
}

void RasterSurface::Blend(std::size_t pixel, const SurfaceColour& colour, double share) {
  std::uint8_t* const rgb = image_.rgb.data() + pixel * 3;
  const std::uint8_t parts[3] = {colour.red, colour.green, colour.blue};
  for (std::size_t k = 0; k < 3; ++k) {
    rgb[k] = static_cast<std::uint8_t>(std::lround(rgb[k] + (parts[k] - rgb[k]) * share));
  }
}

void RasterSurface::Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) {
  if (!IsPlace(pen)) return;
  const TextPicture letters = texts_.Render(Face(), text, Font().points * unitsPerPoint_, ColourOf(colour));
  const SurfacePoint place = WithinReach(pen);
  const int left = static_cast<int>(std::lround(place.x)) - letters.originX;
  const int top = static_cast<int>(std::lround(place.y)) - letters.originY;
  for (int y = std::max(0, -top); y < std::min(letters.height, image_.height - top); ++y) {
    for (int x = std::max(0, -left); x < std::min(letters.width, image_.width - left); ++x) {
      const std::size_t from =
          (static_cast<std::size_t>(y) * static_cast<std::size_t>(letters.width) + static_cast<std::size_t>(x)) * 4;
      const std::size_t to = static_cast<std::size_t>(top + y) * static_cast<std::size_t>(image_.width) +
                             static_cast<std::size_t>(left + x);
      Blend(to, colour, letters.rgba[from + 3] / kOpaque);
    }
  }
}

// The pixels of a row near the part of the line that passes it.
void RasterSurface::CoverRow(const SurfaceLine& line, int row, double radius, double strength) {
  const double y = row + 0.5;
  const double dy = line.end.y - line.begin.y;
  double from = 0;
  double to = 1;
  if (std::abs(dy) > 1e-9) {
    const double a = (y - radius - line.begin.y) / dy;
    const double b = (y + radius - line.begin.y) / dy;
    from = std::clamp(std::min(a, b), 0.0, 1.0);
    to = std::clamp(std::max(a, b), 0.0, 1.0);
  }
  const double dx = line.end.x - line.begin.x;
  const double x1 = line.begin.x + from * dx;
  const double x2 = line.begin.x + to * dx;
  const double width = image_.width;
  const int first = static_cast<int>(std::floor(std::clamp(std::min(x1, x2) - radius, 0.0, width)));
  const int last = static_cast<int>(std::ceil(std::clamp(std::max(x1, x2) + radius, 0.0, width)));
  std::uint8_t* const coverage =
      coverage_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(image_.width);
  for (int x = first; x < last; ++x) {
    const double share = std::clamp(radius - Distance(line, x + 0.5, y), 0.0, 1.0) * strength;
    const auto value = static_cast<std::uint8_t>(std::lround(share * kOpaque));
    if (value > coverage[x]) coverage[x] = value;
  }
}

void RasterSurface::Cover(const SurfaceLine& line, double radius, double strength) {
  const double height = image_.height;
  const double top = std::min(line.begin.y, line.end.y) - radius;
  const double bottom = std::max(line.begin.y, line.end.y) + radius;
  const int first = static_cast<int>(std::floor(std::clamp(top, 0.0, height)));
  const int last = static_cast<int>(std::ceil(std::clamp(bottom, 0.0, height)));
  for (int row = first; row < last; ++row) CoverRow(line, row, radius, strength);
}

void RasterSurface::Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) {
  // Half the width and half a pixel for the soft edge; a line thinner than a pixel is a pale one.
  const double radius = std::max(width, 1.0) / 2 + 0.5;
  const double strength = std::clamp(width, 0.0, 1.0);
  for (const SurfaceLine& line : lines) {
    if (IsPlace(line.begin) && IsPlace(line.end)) {
      Cover({WithinReach(line.begin), WithinReach(line.end)}, radius, strength);
    }
  }
  for (std::size_t pixel = 0; pixel < coverage_.size(); ++pixel) {
    if (coverage_[pixel] == 0) continue;
    Blend(pixel, colour, coverage_[pixel] / kOpaque);
    coverage_[pixel] = 0;
  }
}

void RasterSurface::Fill(const SurfaceBox& box, const SurfaceColour& colour) {
  if (!IsPlace({box.left, box.top}) || !IsPlace({box.right, box.bottom})) return;
  const auto column = [&](double x) { return std::lround(std::clamp<double>(x, 0, image_.width)); };
  const auto row = [&](double y) { return std::lround(std::clamp<double>(y, 0, image_.height)); };
  for (long y = row(box.top); y < row(box.bottom); ++y) {
    for (long x = column(box.left); x < column(box.right); ++x) {
      Blend(static_cast<std::size_t>(y) * static_cast<std::size_t>(image_.width) + static_cast<std::size_t>(x), colour,
            1);
    }
  }
}

}  // namespace orv
