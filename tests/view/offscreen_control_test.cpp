#include "view/offscreen_control.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace orv {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class Painter : public GlEvents {
 public:
  Painter(SceneControl& control, const Rgba& ground) : control_(control), ground_(ground) {}
  void init() override {}
  void InitGL() override {
    control_.Gl().ClearColor(ground_);
    control_.SceneRange(10);
  }
  void Reshape(int, int, int& result) override { result = -1; }
  void Draw() override {}
  void DrawGDI() override {
    control_.ForeColor({1, 1, 1, 1});
    control_.StatusSquare(2, 3, 4, 5);
  }
  void Painted() override {}

 private:
  SceneControl& control_;
  Rgba ground_;
};

std::array<int, 3> PixelOf(const Image& image, int x, int y) {
  const std::uint8_t* pixel = &image.rgb[static_cast<std::size_t>((y * image.width + x) * 3)];
  return {pixel[0], pixel[1], pixel[2]};
}

std::unique_ptr<OffscreenControl> Painted(int width, int height, double ratio, const Rgba& ground) {
  OffscreenControl::Made made = OffscreenControl::Make({width, height, ratio, 4});
  EXPECT_EQ(made.message, "");
  if (!made.control) return nullptr;
  Painter painter(*made.control, ground);
  made.control->Attach(painter);
  made.control->Paint(painter);
  return std::move(made.control);
}

TEST(OffscreenControlTest, ThePictureHasItsRowsFromTheTop) {
  const auto control = Painted(31, 17, 1, {0, 0, 1, 1});
  ASSERT_NE(control, nullptr);
  const Image image = control->Picture();
  EXPECT_EQ(image.width, 31);
  EXPECT_EQ(image.height, 17);
  ASSERT_EQ(image.rgb.size(), 31U * 17 * 3);
  EXPECT_EQ(PixelOf(image, 2, 3), (std::array<int, 3>{255, 255, 255}));
  EXPECT_EQ(PixelOf(image, 5, 7), (std::array<int, 3>{255, 255, 255}));
  EXPECT_EQ(PixelOf(image, 6, 7), (std::array<int, 3>{0, 0, 255}));
  EXPECT_EQ(PixelOf(image, 2, 13), (std::array<int, 3>{0, 0, 255}));
}

TEST(OffscreenControlTest, TheOverlayGrowsWithTheDeviceRatio) {
  const auto control = Painted(40, 40, 2, {0, 0, 0, 1});
  ASSERT_NE(control, nullptr);
  const Image image = control->Picture();
  EXPECT_EQ(PixelOf(image, 3, 6)[0], 0);
  EXPECT_EQ(PixelOf(image, 4, 6)[0], 255);
  EXPECT_EQ(PixelOf(image, 11, 15)[0], 255);
  EXPECT_EQ(PixelOf(image, 12, 15)[0], 0);
}

TEST(OffscreenControlTest, SeveralControlsDrawSideBySide) {
  auto red = Painted(8, 8, 1, {1, 0, 0, 1});
  auto green = Painted(16, 16, 1, {0, 1, 0, 1});
  ASSERT_NE(red, nullptr);
  ASSERT_NE(green, nullptr);
  EXPECT_EQ(PixelOf(red->Picture(), 0, 0), (std::array<int, 3>{255, 0, 0}));
  EXPECT_EQ(PixelOf(green->Picture(), 0, 0), (std::array<int, 3>{0, 255, 0}));
  green.reset();
  Painter blue(*red, {0, 0, 1, 1});
  red->Attach(blue);
  red->Paint(blue);
  EXPECT_EQ(PixelOf(red->Picture(), 0, 0), (std::array<int, 3>{0, 0, 255}));
}

TEST(OffscreenControlTest, SamplesAreAsManyAsWishedAtMost) {
  const OffscreenControl::Made plain = OffscreenControl::Make({8, 8, 1, 1});
  ASSERT_NE(plain.control, nullptr);
  EXPECT_EQ(plain.control->Samples(), 1);
  const OffscreenControl::Made most = OffscreenControl::Make({8, 8, 1, 1000});
  ASSERT_NE(most.control, nullptr);
  EXPECT_GE(most.control->Samples(), 1);
}

TEST(OffscreenControlTest, SizesThatAreNoPictureAreRefused) {
  for (const auto& [width, height] : {std::pair{0, 10}, {10, 0}, {-5, 10}, {10, -5}}) {
    const OffscreenControl::Made made = OffscreenControl::Make({width, height, 1, 4});
    EXPECT_EQ(made.control, nullptr);
    EXPECT_EQ(made.message, "No picture can be drawn: a size of " + std::to_string(width) + " x " +
                                std::to_string(height) + " is no picture.");
  }
}

TEST(OffscreenControlTest, SizesAboveTheLimitsAreRefused) {
  for (const auto& [width, height] : {std::pair{1000000, 10}, {10, 1000000}, {2147483647, 2147483647}}) {
    const OffscreenControl::Made made = OffscreenControl::Make({width, height, 1, 4});
    EXPECT_EQ(made.control, nullptr);
    EXPECT_THAT(made.message, StartsWith("No picture can be drawn: a size of " + std::to_string(width)));
    EXPECT_THAT(made.message, HasSubstr("is above the limit of"));
  }
  const OffscreenControl::Made many = OffscreenControl::Make({16000, 16000, 1, 4});
  EXPECT_EQ(many.control, nullptr);
}

TEST(OffscreenControlTest, AFullPictureOfOneRowWorks) {
  const auto control = Painted(4096, 1, 1, {1, 0, 0, 1});
  ASSERT_NE(control, nullptr);
  EXPECT_EQ(PixelOf(control->Picture(), 4095, 0), (std::array<int, 3>{255, 0, 0}));
}

// In a process of its own, as the system reads these settings once.
TEST(OffscreenControlDeathTest, WithoutEglThereIsAMessage) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/no/such/vendor.json", 1);
        const OffscreenControl::Made made = OffscreenControl::Make({});
        if (made.control != nullptr) std::_Exit(3);
        std::fputs(made.message.c_str(), stderr);
        std::_Exit(0);
      },
      ::testing::ExitedWithCode(0), "No picture can be drawn: this system offers no EGL");
}

}  // namespace
}  // namespace orv
