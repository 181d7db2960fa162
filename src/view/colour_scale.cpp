#include "view/colour_scale.h"

#include <algorithm>
#include <cmath>

#include "numerics/angles.h"

namespace orv {
namespace {

constexpr double kDeadHue = 0.16;
constexpr double kSmoothLevels = 64;
constexpr double kFlipPhase = 9.42477796076938 / 2;  // of the two alternating halves of style 6
constexpr double kAlternatingLevels = 26;
constexpr double kGreyReach = 0.02;
constexpr double kGrey = 0.75;

// Where a value stands between two bounds, about 0 .. 1. Values at a bound and beyond are pulled in by a hair; with
// bounds so large and close that the hair would leave the scale the bound itself counts.
double PlaceOnScale(double value, double minimum, double maximum) {
  const double span = maximum - minimum;
  const double slack = 0.01 * std::abs(span);
  double v = std::isnan(value) ? minimum : value;
  if (v >= maximum) {
    v = maximum * 0.99999999;
    if (!(std::abs(v - maximum) <= slack)) v = maximum;
  }
  if (v <= minimum) {
    v = minimum * 1.00000001 + 1 - 0.99999999;
    if (!(std::abs(v - minimum) <= slack)) v = minimum;
  }
  const double t = std::abs((v - minimum) / span);
  return std::isfinite(t) ? std::min(t, 1.0) : 0;
}

// Position on the scale and what its style makes of it.
struct Shade {
  double t;
  double Sat = 1;
  double Val = 1;
  double Dead = kDeadHue;
};

void TwoRainbows(Shade& s) {
  if (s.t < 0.5) {
    s.t *= 2;
    s.Val = 0.85;
    s.Sat = 0.95;
    s.Dead = 0.15;
  } else {
    s.t = (s.t - 0.5) * 2;
    s.Val = 1;
    s.Dead = 0;
  }
}

// Every other level from the other end of a short piece of the hues.
void Alternating(Shade& s) {
  s.Val = (1 - 0.0125) + 0.0125 * std::sin(s.t * kPi * kAlternatingLevels + kPi / 4);
  if (!(std::sin(kAlternatingLevels * s.t * kPi + kFlipPhase) > 0)) s.t = 1 - s.t;
  s.Dead = 0.75;
}

Shade ShadeOf(double t, double style) {
  Shade s{t};
  if (style == 1) {
    TwoRainbows(s);
  } else if (style == 2) {
    s.Val = (t + 3) / 4;
    s.Sat = (1 - 0.06) + 0.06 * std::sin(t * kPi * kSmoothLevels + kPi / 4);
    s.Dead = 0.15;
  } else if (style == 3) {
    s.Val = ((1 - t) + 3) / 4;
    s.Dead = 0.05;
  } else if (style == 4) {
    s.t = 1 - t;
  } else if (style == 5) {
    s.Val = (1 - 0.15) + 0.15 * std::sin(t * kPi * kColorLevels + kPi / 4);
  } else if (style == 6) {
    Alternating(s);
  }
  return s;
}

}  // namespace

void ColourScale::ColorScale(double colorNorm, double& rred, double& ggreen, double& bblue, double& aalpha,
                             double miniVALPen, double maxiVALPen, double, double) const {
  if (maxiVALPen == miniVALPen) maxiVALPen = miniVALPen + 1;
  const double place = PlaceOnScale(colorNorm, miniVALPen, maxiVALPen);
  const Shade s = ShadeOf(place, ColorStyle);
  HSVtoRGB(std::abs(1 - (s.t * (1 - s.Dead) + s.Dead)), s.Sat, s.Val, rred, ggreen, bblue, false);
  // The place itself, not where a style has moved it: grey belongs to the bottom of the scale.
  if (LogScale >= 1 && std::abs(place - miniVALPen) < kGreyReach) rred = ggreen = bblue = kGrey;
  aalpha = 1;
}

Rgba ColourScale::Of(double value, double minimum, double maximum) const {
  double r = 0;
  double g = 0;
  double b = 0;
  double a = 1;
  ColorScale(value, r, g, b, a, minimum, maximum);
  return {static_cast<float>(r), static_cast<float>(g), static_cast<float>(b), static_cast<float>(a)};
}

std::array<std::uint8_t, 4> ColourScale::Bytes(double value, double minimum, double maximum) const {
  std::array<double, 4> colour{};
  ColorScale(value, colour[0], colour[1], colour[2], colour[3], minimum, maximum);
  std::array<std::uint8_t, 4> bytes{};
  for (std::size_t i = 0; i < 4; ++i) {
    int whole = 0;
    Hexad(colour[i], whole);
    bytes[i] = static_cast<std::uint8_t>(whole);
  }
  return bytes;
}

int ColourScale::LegendLevels() const {
  if (ColorStyle == 0) return static_cast<int>(kSmoothLevels);
  return static_cast<int>(ColorStyle == 6 ? kAlternatingLevels : kColorLevels);
}

void HSVtoRGB(double h, double s, double v, double& r, double& g, double& b, bool h360) {
  if (s == 0) {
    r = g = b = v;
    return;
  }
  const double x = h360 ? h / 60 : h * 6;
  const double i = std::floor(x);
  const double f = x - i;
  const double p = v * (1 - s);
  const double q = v * (1 - s * f);
  const double t = v * (1 - s * (1 - f));
  const auto take = [&](double red, double green, double blue) {
    r = red;
    g = green;
    b = blue;
  };
  if (i == 0) return take(v, t, p);
  if (i == 1) return take(q, v, p);
  if (i == 2) return take(p, v, t);
  if (i == 3) return take(p, q, v);
  if (i == 4) return take(t, p, v);
  take(v, p, q);
}

void RGBtoHSV(double r, double g, double b, double& h, double& s, double& v) {
  const double largest = std::max({r, g, b});
  const double span = largest - std::min({r, g, b});
  h = s = 0;
  v = largest;
  if (largest == 0 || span == 0) return;
  s = span / largest;
  if (r == largest) {
    h = (g - b) / span;
  } else if (g == largest) {
    h = 2 + (b - r) / span;
  } else {
    h = 4 + (r - g) / span;
  }
  h *= 60;
  if (h < 0) h += 360;
}

void Hexad(double value, int& out) {
  const double scaled = value * 255;
  if (!(scaled > 0)) {
    out = 0;
  } else {
    out = scaled >= 255 ? 255 : static_cast<int>(std::lrint(scaled));
  }
}

}  // namespace orv
