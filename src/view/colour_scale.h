#pragma once

#include <array>
#include <cstdint>

#include "view/gl_api.h"

// Values to colours, for the plot and its legend alike.
namespace orv {

inline constexpr double kColorLevels = 32;

struct ColourScale {
  double ColorStyle = 0;  // 0 .. 6
  double LogScale = 0;    // 1 or 2: the bottom of the scale is grey

  // The colour of a value between two bounds, components 0 .. 1. Equal bounds give a valid colour. Hues run on without
  // steps and the styles with sines have their own number of levels, so no colour depends on `maxScale` and `levels`.
  void ColorScale(double colorNorm, double& rred, double& ggreen, double& bblue, double& aalpha, double miniVALPen,
                  double maxiVALPen, double maxScale = kColorLevels, double levels = 0) const;
  Rgba Of(double value, double minimum, double maximum) const;
  // The same as red, green, blue, alpha 0 .. 255, each the rounded component.
  std::array<std::uint8_t, 4> Bytes(double value, double minimum, double maximum) const;

  // Squares of the legend: 64 in style 0, 26 in style 6, else 32.
  int LegendLevels() const;
};

// Hue 0 .. 360 (h360) or 0 .. 1, saturation and value 0 .. 1.
void HSVtoRGB(double h, double s, double v, double& r, double& g, double& b, bool h360);
// Hue in degrees, 0 for a grey.
void RGBtoHSV(double r, double g, double b, double& h, double& s, double& v);

// A component as a whole number 0 .. 255, rounded; 0 for one that is no number.
void Hexad(double value, int& out);

}  // namespace orv
