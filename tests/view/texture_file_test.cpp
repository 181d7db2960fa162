#include "view/texture_file.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "numerics/paths.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

class TextureFile : public ::testing::Test {
 protected:
  TextureFile() : folder_(fs::path(::testing::TempDir()) / ("orv_textures_" + std::to_string(::getpid()))) {
    fs::create_directories(folder_);
  }
  ~TextureFile() override { fs::remove_all(folder_); }

  std::string Kept(const std::string& name, const std::string& bytes) const {
    const fs::path path = folder_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return TextOf(path);
  }
  static std::string Bytes(const std::string& name) {
    std::ifstream in(PathOf(name), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }
  // The message behind the file's name; nothing may change.
  static std::string Refused(const std::string& file) {
    Image image{1, 1, {7, 8, 9}};
    const std::string message = ReadTexture(file, image);
    EXPECT_EQ(image, (Image{1, 1, {7, 8, 9}}));
    const std::string start = "The picture " + file + " was not read: ";
    EXPECT_EQ(message.substr(0, start.size()), start);
    return message.size() > start.size() ? message.substr(start.size()) : message;
  }

  fs::path folder_;
};

constexpr char kEarth[] = ORV_SOURCE_DIR "/textures/earthjpg.jpg";
constexpr char kMoon[] = ORV_SOURCE_DIR "/textures/moonjpg.jpg";

std::array<int, 3> PixelAt(const Image& image, double lon, double left, double lat) {
  const double turns = (lon - left) / 360;
  const auto column = static_cast<std::size_t>((turns - std::floor(turns)) * image.width);
  const auto row = static_cast<std::size_t>((90 - lat) / 180 * image.height);
  const std::size_t at = (row * static_cast<std::size_t>(image.width) + column) * 3;
  return {image.rgb[at], image.rgb[at + 1], image.rgb[at + 2]};
}

TEST_F(TextureFile, ThePicturesOfTheProgram) {
  Image earth;
  ASSERT_EQ(ReadTexture(kEarth, earth), "");
  EXPECT_EQ(earth.width, 2048);
  EXPECT_EQ(earth.height, 1024);
  EXPECT_LT(fs::file_size(kEarth), 400000U);
  const auto sea = [&](double lon, double lat) {
    const auto pixel = PixelAt(earth, lon, -218.1, lat);
    return pixel[2] > pixel[0] + 40;
  };
  for (const auto& [lon, lat] :
       {std::pair{10.0, 24.0}, {-100.0, 45.0}, {134.0, -25.0}, {100.0, 60.0}, {-60.0, -10.0}}) {
    EXPECT_FALSE(sea(lon, lat)) << lon << " " << lat;
  }
  for (const auto& [lon, lat] : {std::pair{-30.0, 0.0}, {-150.0, 0.0}, {75.0, -20.0}, {165.0, 30.0}, {0.0, -50.0}}) {
    EXPECT_TRUE(sea(lon, lat)) << lon << " " << lat;
  }
  EXPECT_GT(PixelAt(earth, 60, -218.1, -85)[0], 200);  // ice
  Image moon;
  ASSERT_EQ(ReadTexture(kMoon, moon), "");
  EXPECT_LT(fs::file_size(kMoon), 400000U);
  EXPECT_GT(PixelAt(moon, 10, -125.7, -60)[0], PixelAt(moon, -14, -125.7, 36)[0] + 30);  // highland, Mare Imbrium
}

TEST_F(TextureFile, PngAsWell) {
  Image picture{3, 2, {}};
  for (int k = 0; k < 18; ++k) picture.rgb.push_back(static_cast<std::uint8_t>(14 * k));
  const std::string name = TextOf(folder_ / "any name.jpg");
  ASSERT_EQ(WritePng(name, picture), "");
  Image read;
  ASSERT_EQ(ReadTexture(name, read), "");
  EXPECT_EQ(read, picture);
}

TEST_F(TextureFile, WhatIsNoPicture) {
  EXPECT_EQ(Refused(TextOf(folder_ / "absent.jpg")), "there is no such file.");
  EXPECT_EQ(Refused(Kept("empty.jpg", "")), "it is neither JPEG nor PNG.");
  EXPECT_EQ(Refused(Kept("text.jpg", "no picture")), "it is neither JPEG nor PNG.");
  EXPECT_NE(Refused(TextOf(folder_)), "");
  EXPECT_NE(Refused(Kept("begun.jpg", "\xFF\xD8\xFF")), "");
  EXPECT_NE(Refused(Kept("begun.png", Bytes(kEarth).replace(0, 4, "\x89PNG"))), "");
}

TEST_F(TextureFile, CutAndDamagedFilesAreRefused) {
  const std::string whole = Bytes(kMoon);
  for (const std::size_t length : {whole.size() / 2, whole.size() - 200, std::size_t{400}}) {
    SCOPED_TRACE(length);
    EXPECT_NE(Refused(Kept("cut.jpg", whole.substr(0, length))), "");
  }
  EXPECT_EQ(Refused(Kept("half.jpg", whole.substr(0, whole.size() / 2))), "it is damaged.");
}

TEST_F(TextureFile, TooLargeIsRefusedBeforeItIsDecoded) {
  std::string bytes = Bytes(kMoon);
  const std::size_t frame = bytes.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  bytes[frame + 5] = '\x7F';  // height
  bytes[frame + 7] = '\x7F';  // width
  EXPECT_EQ(Refused(Kept("large.jpg", bytes)), "it has too many pixels.");
}

}  // namespace
}  // namespace orv
