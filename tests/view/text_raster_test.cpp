#include "view/text_raster.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace orv {
namespace {

const Rgba kWhite{1, 1, 1, 1};

std::optional<FontFile> NoFonts(const std::string&, bool, bool) {
  return std::nullopt;
}

class TextRasterTest : public ::testing::Test {
 protected:
  TextRaster raster_;
  int face_ = raster_.Face("DejaVu Sans", false, false);
};

TEST_F(TextRasterTest, OneFaceForOneWish) {
  ASSERT_NE(face_, TextRaster::kNoFace);
  EXPECT_EQ(raster_.Face("DejaVu Sans", false, false), face_);
  EXPECT_NE(raster_.Face("DejaVu Sans", true, false), face_);
  EXPECT_TRUE(raster_.Message().empty());
}

TEST_F(TextRasterTest, AnUnknownFontFallsBack) {
  const int other = raster_.Face("No Font Of This Name", false, false);
  ASSERT_NE(other, TextRaster::kNoFace);
  EXPECT_EQ(raster_.Measure(other, "Fallback", 20).width, raster_.Measure(face_, "Fallback", 20).width);
  EXPECT_TRUE(raster_.Message().empty());
}

TEST_F(TextRasterTest, WidthsGrowWithHeightAndText) {
  const double width = raster_.Measure(face_, "Density", 16).width;
  EXPECT_GT(width, 40);
  EXPECT_LT(width, 80);
  EXPECT_NEAR(raster_.Measure(face_, "Density", 32).width, 2 * width, 1);
  EXPECT_GT(raster_.Measure(face_, "Density ", 16).width, width);
  EXPECT_EQ(raster_.Measure(face_, "", 16).width, 0);
  EXPECT_GT(raster_.Measure(face_, "", 16).ascent, 10);
  EXPECT_GT(raster_.Measure(face_, "", 16).descent, 2);
}

TEST_F(TextRasterTest, PairsAreKerned) {
  const auto width = [&](const char* text) { return raster_.Measure(face_, text, 40).width; };
  EXPECT_LT(width("AV"), width("A") + width("V") - 1);
}

TEST_F(TextRasterTest, LettersArePremultipliedAndSmooth) {
  const TextPicture picture = raster_.Render(face_, "Ag", 24, {1, 0.5F, 0, 0.5F});
  ASSERT_EQ(picture.rgba.size(), static_cast<std::size_t>(picture.width * picture.height * 4));
  EXPECT_GT(picture.originY, 10);
  EXPECT_GT(picture.height, picture.originY);  // the g reaches below the baseline
  int full = 0;
  int partly = 0;
  for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
    const int alpha = picture.rgba[i + 3];
    EXPECT_LE(alpha, 128);
    EXPECT_EQ(picture.rgba[i], alpha);
    EXPECT_NEAR(picture.rgba[i + 1], alpha / 2.0, 1);
    EXPECT_EQ(picture.rgba[i + 2], 0);
    full += alpha == 128 ? 1 : 0;
    partly += alpha > 0 && alpha < 128 ? 1 : 0;
  }
  EXPECT_GT(full, 20);
  EXPECT_GT(partly, 20);
}

TEST_F(TextRasterTest, AHaloSurroundsTheLetters) {
  const TextPicture plain = raster_.Render(face_, "I", 30, kWhite);
  const TextPicture bordered = raster_.Render(face_, "I", 30, kWhite, TextHalo{{0, 0, 0, 1}, 2});
  EXPECT_EQ(bordered.width, plain.width + 6);
  EXPECT_EQ(bordered.height, plain.height + 6);
  const auto pixel = [&](int x, int y) {
    return &bordered.rgba[static_cast<std::size_t>((y * bordered.width + x) * 4)];
  };
  const int row = bordered.height / 2;
  EXPECT_EQ(pixel(0, row)[3], 0);    // the outermost column stays free
  EXPECT_GT(pixel(2, row)[3], 100);  // black border
  EXPECT_LT(pixel(2, row)[0], 60);
  EXPECT_GT(pixel(bordered.width / 2, row)[0], 200);  // white letter
}

TEST_F(TextRasterTest, BlanksAndEmptyTextsAreNoPicture) {
  EXPECT_EQ(raster_.Render(face_, "", 20, kWhite).width, 0);
  EXPECT_EQ(raster_.Render(face_, "   ", 20, kWhite).width, 0);
  EXPECT_EQ(raster_.Measure(face_, "\n\t", 20).width, raster_.Measure(face_, "  ", 20).width);
}

TEST_F(TextRasterTest, BytesThatAreNoUtf8ShowAsReplacement) {
  const double replacement = raster_.Measure(face_, "\xEF\xBF\xBD", 20).width;
  EXPECT_GT(replacement, 0);
  EXPECT_EQ(raster_.Measure(face_, "\xFF", 20).width, replacement);
  EXPECT_EQ(raster_.Measure(face_, "\xC0\x80", 20).width, 2 * replacement);  // overlong
  EXPECT_EQ(raster_.Measure(face_, "\xE2\x82", 20).width, 2 * replacement);  // cut off
  EXPECT_EQ(raster_.Measure(face_, "\xED\xA0\x80", 20).width, 3 * replacement);
  EXPECT_NE(raster_.Measure(face_, "\xC2\xB5", 20).width, replacement);
}

TEST_F(TextRasterTest, ExtremeHeightsAndLengthsStayWithinLimits) {
  EXPECT_EQ(raster_.Measure(face_, "x", 0).width, raster_.Measure(face_, "x", kSmallestText).width);
  EXPECT_EQ(raster_.Measure(face_, "x", 1e30).width, raster_.Measure(face_, "x", kLargestText).width);
  EXPECT_EQ(raster_.Measure(face_, "x", std::nan("")).width, raster_.Measure(face_, "x", kSmallestText).width);
  const TextPicture long_ = raster_.Render(face_, std::string(100000, 'W'), kLargestText, kWhite);
  EXPECT_LE(long_.width, 16384);
  EXPECT_GT(long_.width, 10000);
}

TEST_F(TextRasterTest, ManyGlyphsDoNotOverflowTheCache) {
  const TextPicture first = raster_.Render(face_, "same", 20, kWhite);
  for (int size = 10; size < 300; ++size) raster_.Measure(face_, "abcdefghijklmnopqrstuvwxyz", size * 0.5);
  EXPECT_EQ(raster_.Render(face_, "same", 20, kWhite).rgba, first.rgba);
}

TEST_F(TextRasterTest, BoldAndItalicDifferFromPlain) {
  const auto picture = [&](bool bold, bool italic) {
    return raster_.Render(raster_.Face("DejaVu Sans", bold, italic), "Wide", 20, kWhite).rgba;
  };
  EXPECT_NE(picture(true, false), picture(false, false));
  EXPECT_NE(picture(false, true), picture(false, false));
}

TEST(TextRasterFallbackTest, AFaceWithoutBoldOrItalicIsShaped) {
  const FontFinder system = SystemFonts();
  const FontFinder plainOnly = [&](const std::string& name, bool bold, bool italic) {
    std::optional<FontFile> font = system(name, false, false);
    if (font) font->makeBold = bold;
    if (font) font->makeItalic = italic;
    return font;
  };
  TextRaster raster(plainOnly);
  const int plain = raster.Face("DejaVu Sans", false, false);
  const int bold = raster.Face("DejaVu Sans", true, false);
  const int italic = raster.Face("DejaVu Sans", false, true);
  EXPECT_GT(raster.Measure(bold, "mm", 30).width, raster.Measure(plain, "mm", 30).width + 1);
  EXPECT_GT(raster.Render(italic, "l", 30, kWhite).width, raster.Render(plain, "l", 30, kWhite).width + 3);
}

TEST(TextRasterFallbackTest, WithoutFontsTextsAreEmptyAndToldOnce) {
  TextRaster raster(NoFonts);
  const int face = raster.Face("Arial", false, false);
  EXPECT_EQ(face, TextRaster::kNoFace);
  EXPECT_EQ(raster.Message(), "Texts are left out of the view: no font was found on this system.");
  EXPECT_EQ(raster.Measure(face, "text", 20).width, 0);
  EXPECT_EQ(raster.Render(face, "text", 20, kWhite).width, 0);
}

TEST(TextRasterFallbackTest, AFileThatIsNoFontCountsAsNone) {
  const std::string file = (std::filesystem::temp_directory_path() / "orv_text_raster_test.ttf").string();
  std::ofstream(file) << "this is no font";
  TextRaster raster([&](const std::string&, bool, bool) { return FontFile{file}; });
  EXPECT_EQ(raster.Face("Arial", false, false), TextRaster::kNoFace);
  EXPECT_FALSE(raster.Message().empty());
  std::filesystem::remove(file);
}

TEST(TextRasterFallbackTest, ABrokenFontFallsBackToAnyOther) {
  const FontFinder system = SystemFonts();
  TextRaster raster([&](const std::string& name, bool bold, bool italic) {
    return name.empty() ? system(name, bold, italic) : FontFile{"/no/such/font.ttf"};
  });
  EXPECT_NE(raster.Face("Arial", false, false), TextRaster::kNoFace);
  EXPECT_TRUE(raster.Message().empty());
}

}  // namespace
}  // namespace orv
