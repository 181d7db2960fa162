#include "view/image_file.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

#include "support/golden_image.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class ImageFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ =
        fs::temp_directory_path() / ("orv_image_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                     ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override {
    fs::permissions(folder_, fs::perms::owner_all);
    fs::remove_all(folder_);
  }
  std::string Name(const std::string& file) const { return TextOf(folder_ / PathOf(file)); }
  static std::vector<std::uint8_t> Bytes(const std::string& file) {
    std::ifstream in(PathOf(file), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return {text.begin(), text.end()};
  }
  std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
  // Two rows: red, green, blue; white, black, (1, 2, 3).
  const Image small_{3, 2, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 1, 2, 3}};
};

TEST_F(ImageFileTest, TheBitmapByByte) {
  ASSERT_EQ(WriteBitmap(Name("a.bmp"), small_), "");
  const std::vector<std::uint8_t> expected{
      'B',  'M',  82,  0, 0,    0,    0,   0, 0, 0, 58, 0, 0, 0,                     // file: 58 + 24 bytes
      40,   0,    0,   0, 3,    0,    0,   0, 2, 0, 0,  0, 1, 0, 24, 0, 0, 0, 0, 0,  // picture
      24,   0,    0,   0,                                                            // 2 rows of 12
      0x88, 0x0B, 0,   0, 0x88, 0x0B, 0,   0, 0, 0, 0,  0, 0, 0, 0,  0,              // 2952 a metre
      0,    0,    0,   0,                                                            // pad
      255,  255,  255, 0, 0,    0,    3,   2, 1, 0, 0,  0,                           // lower row
      0,    0,    255, 0, 255,  0,    255, 0, 0, 0, 0,  0};
  EXPECT_EQ(Bytes(Name("a.bmp")), expected);
}

TEST_F(ImageFileTest, RowsAreRaisedToFour) {
  EXPECT_EQ(BitmapRowBytes(1), 4U);
  EXPECT_EQ(BitmapRowBytes(4), 12U);
  EXPECT_EQ(BitmapRowBytes(5), 16U);
  EXPECT_EQ(BitmapRowBytes(0), 0U);
}

TEST_F(ImageFileTest, PngComesBackAsItWas) {
  Image image{61, 37, {}};
  for (int i = 0; i < 61 * 37 * 3; ++i) image.rgb.push_back(static_cast<std::uint8_t>(i * 7919 >> 3));
  ASSERT_EQ(WritePng(Name("größe.png"), image), "");
  Image read;
  ASSERT_EQ(ReadPng(Name("größe.png"), read), "");
  EXPECT_EQ(read, image);
}

TEST_F(ImageFileTest, AnOlderFileIsReplacedAndNothingElseIsLeft) {
  std::ofstream(PathOf(Name("a.png"))) << "old";
  ASSERT_EQ(WritePng(Name("a.png"), small_), "");
  Image read;
  EXPECT_EQ(ReadPng(Name("a.png"), read), "");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(ImageFileTest, FailuresNameTheFile) {
  const std::string lost = Name("no folder/a.png");
  EXPECT_EQ(WritePng(lost, small_), "The picture " + lost + " was not written: there is no such folder.");
  EXPECT_THAT(WriteBitmap(lost, small_), HasSubstr(lost));
  EXPECT_THAT(WritePng(Name("a.png"), Image{}), HasSubstr("the picture is empty"));
  EXPECT_THAT(WriteBitmap(Name("a.bmp"), Image{2, 2, {1, 2, 3}}), HasSubstr("the picture is empty"));
  EXPECT_THAT(WriteBitmapRows(Name("a.bmp"), 3, 2, std::vector<std::uint8_t>(18)), HasSubstr("not complete"));
  EXPECT_THAT(WriteBytes(TextOf(folder_) + "/", {}), HasSubstr("no file name"));
  fs::create_directory(folder_ / "folder.png");
  EXPECT_THAT(WritePng(Name("folder.png"), small_), HasSubstr("folder.png"));
  EXPECT_EQ(Files(), 1U);
}

TEST_F(ImageFileTest, ReadsNothingFromWhatIsNoPicture) {
  Image read = small_;
  EXPECT_THAT(ReadPng(Name("missing.png"), read), HasSubstr("missing.png"));
  std::ofstream(PathOf(Name("text.png"))) << "no picture at all";
  EXPECT_THAT(ReadPng(Name("text.png"), read), HasSubstr("text.png"));
  ASSERT_EQ(WritePng(Name("a.png"), small_), "");
  std::vector<std::uint8_t> bytes = Bytes(Name("a.png"));
  bytes.resize(bytes.size() - 20);
  ASSERT_EQ(WriteBytes(Name("cut.png"), bytes), "");
  EXPECT_THAT(ReadPng(Name("cut.png"), read), HasSubstr("cut.png"));
  EXPECT_EQ(read, small_);
}

TEST_F(ImageFileTest, AHeaderThatPromisesTooManyPixelsIsRefused) {
  ASSERT_EQ(WritePng(Name("a.png"), small_), "");
  std::vector<std::uint8_t> bytes = Bytes(Name("a.png"));
  // Width 0x00010003 with the checksum of the header set right.
  bytes[17] = 1;
  std::uint32_t sum = 0xFFFFFFFF;
  for (std::size_t i = 12; i < 29; ++i) {
    sum ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
  }
  for (std::size_t i = 0; i < 4; ++i) bytes[29 + i] = static_cast<std::uint8_t>(~sum >> (24 - 8 * i));
  ASSERT_EQ(WriteBytes(Name("wide.png"), bytes), "");
  Image read;
  EXPECT_THAT(ReadPng(Name("wide.png"), read), HasSubstr("too many pixels"));
}

TEST_F(ImageFileTest, TheGoldenHelperTellsWhatDiffers) {
  Image other = small_;
  other.rgb[0] = 200;
  EXPECT_EQ(testing::PixelDifference(small_, other, 0), 55);
  EXPECT_EQ(testing::PixelDifference(small_, other, 1), 0);
  const Image shown = testing::DifferenceImage(small_, other, 24);
  EXPECT_EQ(shown.rgb[0], 255);
  EXPECT_EQ(shown.rgb[1], 0);
  EXPECT_EQ(shown.rgb[4], 255);
  EXPECT_FALSE(testing::MatchesGolden("no_picture", Image{}));
}

}  // namespace
}  // namespace orv
