#include "view/colour_scale.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace orv {
namespace {

struct GoldenColour {
  double style;
  double value;  // between 0 and 1, and beyond
  double red, green, blue;
  double tolerance;
};

// Worked out by hand: hue, saturation and brightness of each style at its position, then the six sectors of the hue.
// The ends of the scale are pulled in by 1e-8, which the sines magnify. The second rainbow of style 1 begins at a hue
// of exactly 1, which is magenta. Style 6 changes sides at 0.25 and 0.75.
constexpr GoldenColour kGolden[] = {
    {0, -1, 1, 0, 0.96, 1e-6},
    {0, 0, 1, 0, 0.96, 1e-6},
    {0, 0.25, 0, 0.22, 1, 1e-12},
    {0, 0.5, 0, 1, 0.52, 1e-12},
    {0, 0.75, 0.74, 1, 0, 1e-12},
    {0, 1, 1, 0, 0, 1e-6},
    {0, 2, 1, 0, 0, 1e-6},
    {1, -1, 0.85, 0.0425, 0.76925, 1e-6},
    {1, 0, 0.85, 0.0425, 0.76925, 1e-6},
    {1, 0.25, 0.0425, 0.85, 0.486625, 1e-12},
    {1, 0.5, 1, 0, 1, 1e-12},
    {1, 0.75, 0, 1, 1, 1e-12},
    {1, 1, 1, 0, 0, 1e-6},
    {1, 2, 1, 0, 0, 1e-6},
    {2, -1, 0.75, 0.013180, 0.676318, 2e-6},
    {2, 0, 0.75, 0.013180, 0.676318, 2e-6},
    {2, 0.25, 0.014279, 0.153967, 0.8125, 1e-6},
    {2, 0.5, 0.015377, 0.875, 0.488170, 1e-6},
    {2, 0.75, 0.684218, 0.9375, 0.016475, 1e-6},
    {2, 1, 1, 0.017574, 0.017574, 2e-6},
    {2, 2, 1, 0.017574, 0.017574, 2e-6},
    {3, -1, 1, 0, 0.3, 1e-6},
    {3, 0, 1, 0, 0.3, 1e-6},
    {3, 0.25, 0.2578125, 0, 0.9375, 1e-12},
    {3, 0.5, 0, 0.875, 0.74375, 1e-12},
    {3, 0.75, 0.4671875, 0.8125, 0, 1e-12},
    {3, 1, 0.75, 0, 0, 1e-6},
    {3, 2, 0.75, 0, 0, 1e-6},
    {4, -1, 1, 0, 0, 1e-6},
    {4, 0, 1, 0, 0, 1e-6},
    {4, 0.25, 0.74, 1, 0, 1e-12},
    {4, 0.5, 0, 1, 0.52, 1e-12},
    {4, 0.75, 0, 0.22, 1, 1e-12},
    {4, 1, 1, 0, 0.96, 1e-6},
    {4, 2, 1, 0, 0.96, 1e-6},
    {5, -1, 0.956066, 0, 0.917823, 2e-6},
    {5, 0, 0.956066, 0, 0.917823, 2e-6},
    {5, 0.25, 0, 0.210335, 0.956066, 1e-6},
    {5, 0.5, 0, 0.956066, 0.497154, 1e-6},
    {5, 0.75, 0.707489, 0.956066, 0, 1e-6},
    {5, 1, 0.956066, 0, 0, 2e-6},
    {5, 2, 0.956066, 0, 0, 2e-6},
    {6, -1, 0.996339, 0, 0, 2e-6},
    {6, 0, 0.996339, 0, 0, 2e-6},
    {6, 0.25, 0.996339, 0.373627, 0, 1e-6},
    {6, 0.26, 0.878526, 0.987107, 0, 1e-6},
    {6, 0.5, 0.978661, 0.733996, 0, 1e-6},
    {6, 0.74, 0.975006, 0.380252, 0, 1e-6},
    {6, 0.75, 0.856328, 0.978661, 0, 1e-6},
    {6, 1, 0.498169, 0.996339, 0, 2e-6},
    {6, 2, 0.498169, 0.996339, 0, 2e-6},
};

std::array<double, 4> Colour(const ColourScale& scale, double value, double minimum = 0, double maximum = 1,
                             double maxScale = kColorLevels, double levels = 0) {
  std::array<double, 4> c{};
  scale.ColorScale(value, c[0], c[1], c[2], c[3], minimum, maximum, maxScale, levels);
  return c;
}

TEST(ColourScale, GoldenTable) {
  for (const GoldenColour& row : kGolden) {
    const auto c = Colour({row.style, 0}, row.value);
    SCOPED_TRACE("style " + std::to_string(row.style) + " value " + std::to_string(row.value));
    EXPECT_NEAR(c[0], row.red, row.tolerance);
    EXPECT_NEAR(c[1], row.green, row.tolerance);
    EXPECT_NEAR(c[2], row.blue, row.tolerance);
    EXPECT_EQ(c[3], 1);
  }
}

TEST(ColourScale, OtherBoundsGiveTheSameColours) {
  for (double style = 0; style < 7; ++style) {
    for (const double t : {0.125, 0.375, 0.5, 0.625, 0.875}) {
      const auto unit = Colour({style, 0}, t);
      const auto wide = Colour({style, 0}, -64 + 512 * t, -64, 448);
      for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(wide[i], unit[i], 1e-12) << style << " " << t;
    }
  }
}

TEST(ColourScale, BottomOfALogScaleIsGrey) {
  struct Row {
    double style, value;
    bool grey;
  };
  // Grey is the bottom of the scale, wherever a style puts its hues.
  constexpr Row kRows[] = {{0, 0, true},     {0, 0.0199, true}, {0, 0.0201, false}, {0, -5, true},   {0, 1, false},
                           {1, 0.01, true},  {1, 0.505, false}, {2, 0.01, true},    {3, 0.01, true}, {4, 0.01, true},
                           {4, 0.99, false}, {5, 0.01, true},   {5, 0.5, false},    {6, 0.01, true}, {6, 1, false}};
  for (const double log : {1.0, 2.0}) {
    for (const Row& row : kRows) {
      const auto c = Colour({row.style, log}, row.value);
      const bool grey = c[0] == 0.75 && c[1] == 0.75 && c[2] == 0.75;
      EXPECT_EQ(grey, row.grey) << "style " << row.style << " value " << row.value;
    }
  }
  EXPECT_EQ(Colour({0, 1}, 3.001, 3, 4)[0], Colour({0, 0}, 3.001, 3, 4)[0]) << "a scale that does not begin at 0";
}

TEST(ColourScale, EveryValueHasAValidColour) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const double values[] = {-kInf, -1e300, -7, 0, 0.5, 1, 3, 1e9, 1e9 + 1, 1e300, kInf, std::nan("")};
  const double bounds[][2] = {{0, 0},     {1, 1},          {-3, -3},        {0, 1},    {-2, -1},
                              {1, 0},     {1e9, 1e9 + 1},  {1e300, 1e300},  {0, kInf}, {std::nan(""), 1},
                              {-kInf, 0}, {-1e308, 1e308}, {5e-324, 1e-323}};
  for (double style = 0; style < 7; ++style) {
    for (const auto& bound : bounds) {
      for (const double value : values) {
        for (const double part : Colour({style, 0}, value, bound[0], bound[1])) {
          EXPECT_TRUE(part >= 0 && part <= 1) << style << " " << value << " " << bound[0] << " " << bound[1];
        }
      }
    }
  }
}

TEST(ColourScale, BoundsAreTheEndsOfTheScaleWhereverItLies) {
  for (const double low : {-1e12, -5.0, 0.0, 37701.0, 1e9, 1e12}) {
    const auto bottom = Colour({0, 0}, low, low, low + 1);
    const auto top = Colour({0, 0}, low + 1, low, low + 1);
    EXPECT_NEAR(bottom[2], 0.96, 0.05) << low;
    EXPECT_NEAR(bottom[0], 1, 1e-12) << low;
    EXPECT_NEAR(top[0], 1, 1e-12) << low;
    EXPECT_NEAR(top[1] + top[2], 0, 0.05) << low;
  }
}

TEST(ColourScale, EqualBoundsCountAsOneApart) {
  EXPECT_EQ(Colour({0, 0}, 2.5, 2, 2), Colour({0, 0}, 2.5, 2, 3));
}

TEST(ColourScale, LevelsOfTheSinesAreThoseOfTheStyle) {
  for (double style = 0; style < 7; ++style) {
    const auto usual = Colour({style, 0}, 0.3);
    for (const double levels : {0.0, 7.0, 26.0, 64.0}) {
      EXPECT_EQ(Colour({style, 0}, 0.3, 0, 1, levels), usual);
      EXPECT_EQ(Colour({style, 0}, 0.3, 0, 1, kColorLevels, levels), usual);
    }
  }
  EXPECT_EQ((ColourScale{0, 0}.LegendLevels()), 64);
  EXPECT_EQ((ColourScale{6, 0}.LegendLevels()), 26);
  for (const double style : {1, 2, 3, 4, 5}) EXPECT_EQ((ColourScale{style, 0}.LegendLevels()), 32);
}

TEST(ColourScale, BytesAreTheRoundedComponents) {
  for (double style = 0; style < 7; ++style) {
    for (const double log : {0.0, 1.0}) {
      const ColourScale scale{style, log};
      for (int k = -10; k <= 1010; ++k) {
        const double value = k / 1000.0;
        const auto c = Colour(scale, value);
        const auto bytes = scale.Bytes(value, 0, 1);
        const Rgba rgba = scale.Of(value, 0, 1);
        for (std::size_t i = 0; i < 4; ++i) {
          ASSERT_EQ(bytes[i], static_cast<int>(std::nearbyint(c[i] * 255))) << style << " " << value;
        }
        ASSERT_EQ(rgba.green, static_cast<float>(c[1]));
      }
    }
  }
}

TEST(ColourScale, HuesAndBack) {
  struct Row {
    double h, s, v, r, g, b;
  };
  constexpr Row kRows[] = {{0, 1, 1, 1, 0, 0},       {60, 1, 1, 1, 1, 0},           {120, 1, 0.5, 0, 0.5, 0},
                           {180, 0.5, 1, 0.5, 1, 1}, {240, 1, 1, 0, 0, 1},          {300, 1, 1, 1, 0, 1},
                           {30, 1, 1, 1, 0.5, 0},    {330, 0.5, 0.8, 0.8, 0.4, 0.6}};
  for (const Row& row : kRows) {
    double r = 0, g = 0, b = 0;
    HSVtoRGB(row.h, row.s, row.v, r, g, b, true);
    EXPECT_NEAR(r, row.r, 1e-12);
    EXPECT_NEAR(g, row.g, 1e-12);
    EXPECT_NEAR(b, row.b, 1e-12);
    double h = 0, s = 0, v = 0;
    HSVtoRGB(row.h / 360, row.s, row.v, h, s, v, false);
    EXPECT_NEAR(h + s + v, row.r + row.g + row.b, 1e-12);
    RGBtoHSV(row.r, row.g, row.b, h, s, v);
    EXPECT_NEAR(h, row.h, 1e-9);
    EXPECT_NEAR(s, row.s, 1e-12);
    EXPECT_NEAR(v, row.v, 1e-12);
  }
}

TEST(ColourScale, GreysHaveNoHue) {
  double a = 9, b = 9, c = 9;
  HSVtoRGB(0.4, 0, 0.3, a, b, c, false);
  EXPECT_EQ(a + b + c, 0.3 + 0.3 + 0.3);
  RGBtoHSV(0.4, 0.4, 0.4, a, b, c);
  EXPECT_EQ(a, 0);
  EXPECT_EQ(b, 0);
  EXPECT_EQ(c, 0.4);
  RGBtoHSV(0, 0, 0, a, b, c);
  EXPECT_EQ(a + b + c, 0);
}

TEST(ColourScale, HexadClampsAndRounds) {
  struct Row {
    double value;
    int out;
  };
  for (const Row& row : {Row{0, 0}, Row{1, 255}, Row{0.5, 128}, Row{0.75, 191}, Row{-1, 0}, Row{7, 255},
                         Row{1e300, 255}, Row{std::nan(""), 0}}) {
    int out = -1;
    Hexad(row.value, out);
    EXPECT_EQ(out, row.out) << row.value;
  }
}

}  // namespace
}  // namespace orv
