#include "view/capture.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

#include "numerics/paths.h"
#include "view/image_file.h"
#include "view/offscreen_control.h"
#include "view/recording_control.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

class CaptureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() /
              ("orv_capture_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    control_.Gl().Viewport(0, 0, 10, 6);
    control_.Gl().ClearColor({1, 0.5F, 0, 1});
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Name(const std::string& file) const { return TextOf(folder_ / file); }
  static std::vector<std::uint8_t> Bytes(const std::string& file) {
    std::ifstream in(PathOf(file), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    return {text.begin(), text.end()};
  }
  // Whole number of a bitmap's header.
  static int Number(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | bytes[at + 3] << 24;
  }

  fs::path folder_;
  RecordingControl control_{10, 6};
};

TEST_F(CaptureTest, TheRegionIsOneColumnWider) {
  ASSERT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {2, 1, 4, 3}));
  const std::vector<std::uint8_t> bytes = Bytes(Name("a.bmp"));
  ASSERT_EQ(bytes.size(), 58U + 16 * 3);  // 5 pixels are 15 bytes, raised to 16
  EXPECT_EQ(Number(bytes, 2), 58 + 16 * 3);
  EXPECT_EQ(Number(bytes, 18), 5);
  EXPECT_EQ(Number(bytes, 22), 3);
  EXPECT_EQ(Number(bytes, 34), 16 * 3);
  EXPECT_THAT((std::array{bytes[58], bytes[59], bytes[60]}), ElementsAre(0, 128, 255));
  EXPECT_EQ(bytes[58 + 15], 0);
  const GlCall& read = control_.Recording().Calls().back();
  EXPECT_EQ(read.operation, GlOperation::ReadPixels);
  EXPECT_THAT(read.values, ElementsAre(2, 1, 5, 3));
}

TEST_F(CaptureTest, ARegionBeyondTheViewportIsCut) {
  ASSERT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {0, 0, 10, 6}));
  EXPECT_EQ(Number(Bytes(Name("a.bmp")), 18), 10);
  ASSERT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {7, 4, 2147483647, 2147483647}));
  EXPECT_EQ(Number(Bytes(Name("a.bmp")), 18), 3);
  EXPECT_EQ(Number(Bytes(Name("a.bmp")), 22), 2);
  ASSERT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {-3, -2, 6, 4}));
  EXPECT_THAT(control_.Recording().Calls().back().values, ElementsAre(0, 0, 4, 2));
}

TEST_F(CaptureTest, TheFileIsReplaced) {
  std::ofstream(PathOf(Name("a.bmp"))) << std::string(5000, 'x');
  ASSERT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {0, 0, 3, 1}));
  EXPECT_EQ(Bytes(Name("a.bmp")).size(), 58U + 12);
}

TEST_F(CaptureTest, ThePointerIsBusyAndThenNormal) {
  EXPECT_TRUE(SaveFrameBuffer(control_, Name("a.bmp"), {0, 0, 3, 1}));
  EXPECT_THAT(control_.Cursors(), ElementsAre(11, 0));
}

TEST_F(CaptureTest, FailuresAreQuietAndLeaveThePointerNormal) {
  std::ofstream(PathOf(Name("old.bmp"))) << "old";
  EXPECT_FALSE(SaveFrameBuffer(control_, Name("no folder/a.bmp"), {0, 0, 3, 1}));
  EXPECT_FALSE(SaveFrameBuffer(control_, Name("old.bmp"), {20, 0, 3, 1}));
  EXPECT_FALSE(SaveFrameBuffer(control_, Name("old.bmp"), {0, 0, 0, 3}));
  EXPECT_FALSE(SaveFrameBuffer(control_, Name("old.bmp"), {0, 0, 3, -1}));
  EXPECT_FALSE(SaveFrameBuffer(control_, "", {0, 0, 3, 1}));
  EXPECT_THAT(control_.Cursors(), ElementsAre(11, 0, 11, 0, 11, 0, 11, 0, 11, 0));
  EXPECT_EQ(Bytes(Name("old.bmp")), (std::vector<std::uint8_t>{'o', 'l', 'd'}));
}

TEST_F(CaptureTest, NamesOfSavedPictures) {
  const std::string separator(1, static_cast<char>(fs::path::preferred_separator));
  EXPECT_EQ(SaveName("a.bmp", "C:\\results"), "C:" + separator + "results" + separator + "a.bmp");
  EXPECT_EQ(SaveName("a.bmp", "results\\"), "results" + separator + "a.bmp");
  EXPECT_EQ(SaveName("", "results/"), "results/ImageSaved.bmp");
  EXPECT_EQ(SaveName("", ""), "ImageSaved.bmp");
}

TEST_F(CaptureTest, SavesTheWholeViewOrTheDraggedRectangle) {
  ASSERT_TRUE(SaveBMP(control_, "", TextOf(folder_)));
  EXPECT_EQ(Number(Bytes(Name("ImageSaved.bmp")), 18), 10);
  EXPECT_EQ(Number(Bytes(Name("ImageSaved.bmp")), 22), 6);
  ASSERT_TRUE(SaveBMP(control_, "part.bmp", TextOf(folder_) + "\\", CaptureRegion{1, 1, 2, 2}));
  EXPECT_EQ(Number(Bytes(Name("part.bmp")), 18), 3);
}

TEST_F(CaptureTest, WhatIsSavedIsWhatIsDrawn) {
  OffscreenControl::Made made = OffscreenControl::Make({9, 4, 1, 4});
  ASSERT_NE(made.control, nullptr) << made.message;
  GlApi& gl = made.control->Gl();
  gl.Viewport(0, 0, 9, 4);
  gl.ClearColor({0, 0, 1, 1});
  gl.Clear(GL_COLOR_BUFFER_BIT);
  gl.FillRectangle(0, 0, 1, 1, {1, 0, 0, 1});
  ASSERT_TRUE(SaveBMP(*made.control, "drawn.bmp", TextOf(folder_)));
  ASSERT_EQ(WriteBitmap(Name("picture.bmp"), made.control->Picture()), "");
  EXPECT_EQ(Bytes(Name("drawn.bmp")), Bytes(Name("picture.bmp")));
}

}  // namespace
}  // namespace orv
