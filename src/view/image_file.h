#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orv {

// Red, green, blue, rows from the top without padding.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rgb;
  friend bool operator==(const Image&, const Image&) = default;
};

inline constexpr int kLargestImageSide = 16384;  // pixels, of a picture that is read

// Bytes of a bitmap row of so many pixels: 3 each, raised to a multiple of 4.
std::size_t BitmapRowBytes(int width);

// Files come into being under a temporary name beside their own and replace an older file when they are complete. The
// result is empty, or says in a sentence with the file's name why there is none.
[[nodiscard]] std::string WriteBytes(const std::string& file, std::span<const std::uint8_t> bytes);
[[nodiscard]] std::string WritePng(const std::string& file, const Image& image);
[[nodiscard]] std::string WriteBitmap(const std::string& file, const Image& image);
// The same from the rows of the file itself: from the bottom, blue, green, red, each of BitmapRowBytes.
[[nodiscard]] std::string WriteBitmapRows(const std::string& file, int width, int height,
                                          std::span<const std::uint8_t> rows);

// Reads a PNG file of at most kLargestImageSide pixels a side; transparent parts come on black. Message as above.
[[nodiscard]] std::string ReadPng(const std::string& file, Image& image);

}  // namespace orv
