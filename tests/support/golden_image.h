#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "numerics/paths.h"
#include "view/image_file.h"

// Comparison of a drawn picture with one that was looked at and kept.
namespace orv::testing {

struct GoldenTolerance {
  int channel = 24;     // difference of a colour component that counts as equal
  double share = 0.01;  // of the pixels that may differ by more
  int reach = 0;        // a pixel may stand so far from its place: systems place lines and points differently
};

inline std::string GoldenName(const std::string& name) {
  return std::string(ORV_SOURCE_DIR) + "/tests/golden/" + name + ".png";
}

inline std::string FailureName(const std::string& name, const std::string& kind) {
  const std::filesystem::path folder = std::filesystem::current_path() / "golden_failures";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return TextOf(folder / (name + "_" + kind + ".png"));
}

// Largest difference of the components of a pixel.
inline int PixelDifference(const Image& a, const Image& b, std::size_t pixel) {
  int largest = 0;
  for (std::size_t i = pixel * 3; i < pixel * 3 + 3; ++i) largest = std::max(largest, std::abs(a.rgb[i] - b.rgb[i]));
  return largest;
}

// Whether the pixel of a has its like in b, at its place or within reach of it.
inline bool HasLike(const Image& a, const Image& b, int x, int y, const GoldenTolerance& tolerance) {
  const auto place = [&](int column, int row) { return static_cast<std::size_t>(row * a.width + column) * 3; };
  const std::size_t own = place(x, y);
  for (int row = std::max(0, y - tolerance.reach); row <= std::min(a.height - 1, y + tolerance.reach); ++row) {
    for (int column = std::max(0, x - tolerance.reach); column <= std::min(a.width - 1, x + tolerance.reach);
         ++column) {
      const std::size_t other = place(column, row);
      int largest = 0;
      for (std::size_t i = 0; i < 3; ++i) largest = std::max(largest, std::abs(a.rgb[own + i] - b.rgb[other + i]));
      if (largest <= tolerance.channel) return true;
    }
  }
  return false;
}

// By pixel: something stands in one of two pictures of one size that the other has not.
inline std::vector<bool> DifferentPixels(const Image& a, const Image& b, const GoldenTolerance& tolerance) {
  std::vector<bool> different;
  different.reserve(a.rgb.size() / 3);
  for (int y = 0; y < a.height; ++y) {
    for (int x = 0; x < a.width; ++x) {
      different.push_back(!HasLike(a, b, x, y, tolerance) || !HasLike(b, a, x, y, tolerance));
    }
  }
  return different;
}

// Share of the pixels that differ, 1 for pictures of different size.
inline double DifferentShare(const Image& a, const Image& b, const GoldenTolerance& tolerance) {
  if (a.width != b.width || a.height != b.height || a.rgb.empty()) return 1;
  const std::vector<bool> different = DifferentPixels(a, b, tolerance);
  return static_cast<double>(std::count(different.begin(), different.end(), true)) /
         static_cast<double>(different.size());
}

// Pixels that differ in red, the others as a pale copy of the golden picture.
inline Image DifferenceImage(const Image& golden, const std::vector<bool>& different) {
  Image out = golden;
  for (std::size_t pixel = 0; pixel < different.size(); ++pixel) {
    for (std::size_t i = 0; i < 3; ++i) {
      std::uint8_t& part = out.rgb[pixel * 3 + i];
      part = different[pixel] ? static_cast<std::uint8_t>(i == 0 ? 255 : 0) : static_cast<std::uint8_t>(192 + part / 4);
    }
  }
  return out;
}

inline Image DifferenceImage(const Image& golden, const Image& actual, int channel) {
  return DifferenceImage(golden, DifferentPixels(golden, actual, {channel}));
}

// Success when the picture is the one of that file, up to the tolerance. A failure leaves the picture and the
// difference in the folder golden_failures of the working folder. ORV_UPDATE_GOLDEN=1 writes the picture into the file.
inline ::testing::AssertionResult MatchesFile(const std::string& file, const Image& actual,
                                              const GoldenTolerance& tolerance = {}) {
  if (actual.width <= 0 || actual.height <= 0) return ::testing::AssertionFailure() << "there is no picture";
  const std::string name = TextOf(PathOf(file).stem());
  if (const char* update = std::getenv("ORV_UPDATE_GOLDEN"); update != nullptr && std::string(update) == "1") {
    const std::string message = WritePng(file, actual);
    if (!message.empty()) return ::testing::AssertionFailure() << message;
    return ::testing::AssertionSuccess();
  }
  const auto fail = [&](const std::string& cause) {
    const std::string written = FailureName(name, "actual");
    const std::string message = WritePng(written, actual);
    return ::testing::AssertionFailure() << cause << "\n  picture: " << (message.empty() ? written : message);
  };
  Image golden;
  if (const std::string message = ReadPng(file, golden); !message.empty()) return fail(message);
  if (golden.width != actual.width || golden.height != actual.height) {
    return fail(file + " has " + std::to_string(golden.width) + " x " + std::to_string(golden.height) +
                " pixels, the picture " + std::to_string(actual.width) + " x " + std::to_string(actual.height));
  }
  const std::vector<bool> different = DifferentPixels(golden, actual, tolerance);
  const auto count = std::count(different.begin(), different.end(), true);
  const double share = static_cast<double>(count) / static_cast<double>(different.size());
  if (share <= tolerance.share) return ::testing::AssertionSuccess();
  const std::string drawn = FailureName(name, "difference");
  const std::string message = WritePng(drawn, DifferenceImage(golden, different));
  return fail(std::to_string(count) + " of " + std::to_string(different.size()) + " pixels differ from " + file)
         << "\n  difference: " << (message.empty() ? drawn : message);
}

// The same with the golden picture of that name.
inline ::testing::AssertionResult MatchesGolden(const std::string& name, const Image& actual,
                                                const GoldenTolerance& tolerance = {}) {
  return MatchesFile(GoldenName(name), actual, tolerance);
}

}  // namespace orv::testing
