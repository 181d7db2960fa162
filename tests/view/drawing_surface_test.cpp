#include "view/drawing_surface.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

#include "support/golden_image.h"
#include "support/level_fields.h"
#include "view/level_line_plot.h"
#include "view/raster_surface.h"
#include "view/svg_surface.h"

namespace orv {
namespace {

using testing::ConeField;
using testing::FieldOnPlate;
using testing::MatchesGolden;
using testing::PlaneField;
using testing::SaddleField;

constexpr double kNoPlace = std::numeric_limits<double>::quiet_NaN();
constexpr SurfaceColour kBlack{0, 0, 0};

// The one font that every machine of this project has, whatever else is installed.
std::optional<FontFile> OnlySans(const std::string& name, bool bold, bool italic) {
  if (name != "DejaVu Sans") return std::nullopt;
  return SystemFonts()(name, bold, italic);
}

class SurfaceTest : public ::testing::Test {
 protected:
  static int Red(const Image& image, int x, int y) {
    return image.rgb[static_cast<std::size_t>(y * image.width + x) * 3];
  }
  static int Green(const Image& image, int x, int y) {
    return image.rgb[static_cast<std::size_t>(y * image.width + x) * 3 + 1];
  }
  static double Ink(const Image& image) {
    double ink = 0;
    for (const std::uint8_t value : image.rgb) ink += 255 - value;
    return ink / 3 / 255;
  }
  static void Draw(DrawingSurface& surface, const SurfaceLine& line, double width = 1) {
    surface.Lines({&line, 1}, kBlack, width);
  }

  TextRaster texts_{OnlySans};
};

TEST_F(SurfaceTest, BoxesMeetWhereTheyShareArea) {
  const SurfaceBox box{0, 0, 10, 10};
  EXPECT_TRUE(box.Meets({9, 9, 20, 20}));
  EXPECT_TRUE(box.Meets({2, 2, 3, 3}));
  EXPECT_FALSE(box.Meets({10, 0, 20, 10}));
  EXPECT_FALSE(box.Meets({0, -5, 10, 0}));
}

TEST_F(SurfaceTest, TextsGrowWithTheSurface) {
  EXPECT_DOUBLE_EQ(ReadableUnitsPerPoint(100, 100), 96.0 / 72);
  EXPECT_DOUBLE_EQ(ReadableUnitsPerPoint(1040, 2000), 2);
  EXPECT_DOUBLE_EQ(ReadableUnitsPerPoint(2000, 780), 2);
}

TEST_F(SurfaceTest, ARasterLineCoversItsWidth) {
  RasterSurface surface(texts_, 40, 20, 1);
  Draw(surface, {{5, 10}, {35, 10}}, 2);
  const Image& image = surface.Picture();
  for (int x = 6; x < 34; ++x) {
    EXPECT_EQ(Red(image, x, 9), 0);
    EXPECT_EQ(Red(image, x, 10), 0);
    EXPECT_EQ(Red(image, x, 8), 255);
    EXPECT_EQ(Red(image, x, 11), 255);
  }
  EXPECT_NEAR(Ink(image), 30 * 2 + std::acos(-1.0), 1.5);  // round ends
}

TEST_F(SurfaceTest, ARasterLineHasSoftEdgesInAnyDirection) {
  for (const double angle : {0.1, 0.5, 1.0, 1.4, 2.0, 3.0}) {
    RasterSurface surface(texts_, 100, 100, 1);
    const double dx = 40 * std::cos(angle);
    const double dy = 40 * std::sin(angle);
    Draw(surface, {{50 - dx, 50 - dy}, {50 + dx, 50 + dy}}, 1.5);
    EXPECT_NEAR(Ink(surface.Picture()), 80 * 1.5 + 1.77, 4) << angle;
    // As much ink where it is drawn the other way round.
    RasterSurface back(texts_, 100, 100, 1);
    Draw(back, {{50 + dx, 50 + dy}, {50 - dx, 50 - dy}}, 1.5);
    EXPECT_EQ(back.Picture(), surface.Picture());
  }
}

TEST_F(SurfaceTest, PiecesOfOneStrokeDrawNothingTwice) {
  RasterSurface whole(texts_, 60, 60, 1);
  Draw(whole, {{5, 7}, {55, 45}}, 1.3);
  RasterSurface cut(texts_, 60, 60, 1);
  std::vector<SurfaceLine> pieces;
  for (int k = 0; k < 10; ++k) {
    const auto at = [&](int p) { return SurfacePoint{5 + 5.0 * p, 7 + 3.8 * p}; };
    pieces.push_back({at(k), at(k + 1)});
  }
  cut.Lines(pieces, kBlack, 1.3);
  for (std::size_t k = 0; k < whole.Picture().rgb.size(); ++k) {
    EXPECT_NEAR(whole.Picture().rgb[k], cut.Picture().rgb[k], 1);
  }
}

TEST_F(SurfaceTest, AThinLineIsPale) {
  RasterSurface surface(texts_, 20, 20, 1);
  Draw(surface, {{-5, 10.5}, {25, 10.5}}, 0.5);
  EXPECT_NEAR(Red(surface.Picture(), 10, 10), 128, 1);
}

TEST_F(SurfaceTest, WhatLiesOutsideIsCutOff) {
  RasterSurface surface(texts_, 20, 20, 1);
  const Image white = surface.Picture();
  Draw(surface, {{-50, -3}, {50, -3}});
  Draw(surface, {{1e300, 5}, {1e301, 5}});
  Draw(surface, {{kNoPlace, 5}, {10, 5}});
  surface.Fill({-10, -10, 0, 30}, kBlack);
  surface.Fill({kNoPlace, 0, 10, 10}, kBlack);
  surface.Text({-500, 10}, "outside", kBlack);
  surface.Text({kNoPlace, 10}, "nowhere", kBlack);
  EXPECT_EQ(surface.Picture(), white);
  Draw(surface, {{-1e300, 5.5}, {1e300, 5.5}});
  EXPECT_EQ(Red(surface.Picture(), 0, 5), 0);
  EXPECT_EQ(Red(surface.Picture(), 19, 5), 0);
  surface.Fill({-1e30, -1e30, 1e30, 1e30}, {10, 20, 30});
  EXPECT_EQ(Red(surface.Picture(), 19, 19), 10);
}

TEST_F(SurfaceTest, ARasterTextFillsItsBox) {
  RasterSurface surface(texts_, 200, 60, 2);
  surface.setFont({"MS Serif", 12, false});
  const SurfaceText extent = surface.Measure("Density");
  EXPECT_GT(extent.width, 60);
  EXPECT_LT(extent.width, 140);
  EXPECT_GT(extent.ascent, extent.descent);
  surface.Text({20, 40}, "Density", {255, 0, 0});
  const Image& image = surface.Picture();
  int left = 200;
  int right = 0;
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 200; ++x) {
      if (Green(image, x, y) == 255) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      EXPECT_EQ(Red(image, x, y), 255);
      EXPECT_GE(y, 40 - extent.ascent);
      EXPECT_LE(y, 40 + extent.descent);
    }
  }
  EXPECT_NEAR(left, 20, 4);
  EXPECT_NEAR(right, 20 + extent.width, 4);
}

TEST_F(SurfaceTest, SidesAreBroughtWithinLimits) {
  EXPECT_EQ(RasterSurface(texts_, 0, -5, 1).Picture().rgb.size(), 3U);
  EXPECT_EQ(SvgSurface(texts_, 0, -5, 1).Width(), 1);
}

std::string SvgWithText(TextRaster& texts, const std::string& text) {
  SvgSurface surface(texts, 100, 50, 1);
  surface.Text({10, 20}, text, kBlack);
  return surface.File();
}

TEST_F(SurfaceTest, SvgTextsAreEscaped) {
  const std::string file = SvgWithText(texts_, "a<b & \"c\" > 'd'\x01\t²");
  EXPECT_NE(file.find(">a&lt;b &amp; &quot;c&quot; &gt; &#39;d&#39;  ²</text>"), std::string::npos) << file;
  // Bytes that are no UTF-8 are read as those of an older file.
  EXPECT_NE(SvgWithText(texts_, "m\xB2").find(">m²</text>"), std::string::npos);
}

TEST_F(SurfaceTest, SvgTextsNameTheirLengthAndFonts) {
  SvgSurface surface(texts_, 100, 50, 2);
  surface.setFont({"MS 'Serif", 6, true});
  surface.Text({10.126, 20}, "abc", {1, 171, 255});
  const std::string file = surface.File();
  for (const char* part :
       {"x=\"10.13\"", "y=\"20\"", "font-size=\"12\"", "font-weight=\"bold\"", "fill=\"#01abff\"",
        "font-family=\"&#39;MS Serif&#39;, &#39;DejaVu Sans&#39;, Verdana, sans-serif\"", "textLength=\""}) {
    EXPECT_NE(file.find(part), std::string::npos) << part << '\n' << file;
  }
}

TEST_F(SurfaceTest, SvgLinesOfAStrokeAreOnePath) {
  SvgSurface surface(texts_, 100, 50, 1);
  const std::string empty = surface.File();
  surface.Lines({}, kBlack, 1);
  Draw(surface, {{kNoPlace, 0}, {1, 1}});
  surface.Fill({5, 5, 5, 9}, kBlack);
  surface.Text({1, 1}, "", kBlack);
  EXPECT_EQ(surface.File(), empty);
  const std::vector<SurfaceLine> lines = {{{1, 2}, {3, 4.5}}, {{-0.001, 1e9}, {5, 6}}};
  surface.Lines(lines, {255, 0, 0}, 1.5);
  const std::string file = surface.File();
  EXPECT_NE(file.find("stroke=\"#ff0000\" stroke-width=\"1.5\""), std::string::npos);
  EXPECT_NE(file.find("d=\"M1 2L3 4.5\nM0 1000000L5 6\"/>"), std::string::npos) << file;
}

TEST_F(SurfaceTest, SvgMeasuresWithoutAnyFont) {
  TextRaster none([](const std::string&, bool, bool) { return std::optional<FontFile>(); });
  SvgSurface surface(none, 100, 50, 1);
  surface.setFont({"", 10, false});
  EXPECT_NEAR(surface.Measure("m²3").width, 18, 1e-9);
  surface.Text({1, 20}, "m²3", kBlack);
  EXPECT_NE(surface.File().find("textLength=\"18\""), std::string::npos);
  EXPECT_NE(surface.File().find("font-family=\"&#39;DejaVu Sans&#39;, Verdana, sans-serif\""), std::string::npos);
}

// Plots of known fields.
class LevelGoldenTest : public SurfaceTest {
 protected:
  Image Picture(const LevelLineInput& input, int width = 640, int height = 480) {
    RasterSurface surface(texts_, width, height, ReadableUnitsPerPoint(width, height));
    errorText_ = PlotLevelLines(input, surface);
    return surface.Picture();
  }
  std::string Vector(const LevelLineInput& input) {
    SvgSurface surface(texts_, 640, 480, ReadableUnitsPerPoint(640, 480));
    errorText_ = PlotLevelLines(input, surface);
    return surface.File();
  }
  std::string errorText_;
};

TEST_F(LevelGoldenTest, Plane) {
  EXPECT_TRUE(MatchesGolden("level_lines_plane", Picture(FieldOnPlate(PlaneField))));
}

TEST_F(LevelGoldenTest, ConeOnALargeSurface) {
  EXPECT_TRUE(MatchesGolden("level_lines_cone", Picture(FieldOnPlate(ConeField, 61, 45), 1280, 960)));
}

TEST_F(LevelGoldenTest, Saddle) {
  EXPECT_TRUE(MatchesGolden("level_lines_saddle", Picture(FieldOnPlate(SaddleField))));
}

TEST_F(LevelGoldenTest, LogarithmicScale) {
  LevelLineInput input = FieldOnPlate([](double x, double y) { return 16 - 2 * std::log10(0.05 + x * x + y * y); });
  input.LogScale = 1;
  EXPECT_TRUE(MatchesGolden("level_lines_logarithmic", Picture(input)));
}

TEST_F(LevelGoldenTest, FrameOfAFlatGrid) {
  EXPECT_TRUE(MatchesGolden("level_lines_flat", Picture(FieldOnPlate([](double, double) { return 7.0; }), 400, 300)));
  EXPECT_EQ(errorText_, "Error in Contour Levels");
}

// A number of a text, where one begins.
bool TakeNumber(const std::string& text, std::size_t& place, double& value) {
  const char c = text[place];
  if (std::isdigit(static_cast<unsigned char>(c)) == 0 && !(c == '-' || c == '.')) return false;
  char* end = nullptr;
  value = std::strtod(text.c_str() + place, &end);
  const auto taken = static_cast<std::size_t>(end - text.c_str()) - place;
  place += taken;
  return taken > 0;
}

// The same text with numbers that lie within a distance: fonts may be measured a little differently elsewhere.
::testing::AssertionResult SameDrawing(const std::string& a, const std::string& b, double distance) {
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() && j < b.size()) {
    double left = 0;
    double right = 0;
    const std::size_t begin = i;
    const bool number = TakeNumber(a, i, left);
    if (number != TakeNumber(b, j, right) || (number && std::abs(left - right) > distance) ||
        (!number && a[i] != b[j])) {
      return ::testing::AssertionFailure() << "different at " << begin << ": " << a.substr(begin, 60);
    }
    if (!number) {
      ++i;
      ++j;
    }
  }
  if (i < a.size() || j < b.size()) return ::testing::AssertionFailure() << "one text goes on";
  return ::testing::AssertionSuccess();
}

TEST_F(LevelGoldenTest, ComparisonOfDrawingsSeesDifferences) {
  EXPECT_TRUE(SameDrawing("M1 2L3", "M1.4 2L3", 0.5));
  EXPECT_FALSE(SameDrawing("M1 2L3", "M1.6 2L3", 0.5));
  EXPECT_FALSE(SameDrawing("M1 2L3", "M1 2K3", 0.5));
  EXPECT_FALSE(SameDrawing("M1 2L3", "M1 2L3 ", 0.5));
}

TEST_F(LevelGoldenTest, VectorPictures) {
  const std::pair<std::string, LevelLineInput> plots[] = {
      {"plane", FieldOnPlate(PlaneField)}, {"cone", FieldOnPlate(ConeField)}, {"saddle", FieldOnPlate(SaddleField)}};
  for (const auto& [name, input] : plots) {
    const std::string file = std::string(ORV_SOURCE_DIR) + "/tests/golden/level_lines_" + name + ".svg";
    const std::string drawn = Vector(input);
    EXPECT_EQ(errorText_, "");
    if (const char* update = std::getenv("ORV_UPDATE_GOLDEN"); update != nullptr && std::string(update) == "1") {
      std::ofstream(file, std::ios::binary) << drawn;
    }
    std::ostringstream golden;
    golden << std::ifstream(file, std::ios::binary).rdbuf();
    EXPECT_TRUE(SameDrawing(golden.str(), drawn, 1)) << name;
  }
}

}  // namespace
}  // namespace orv
