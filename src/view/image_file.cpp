#include "view/image_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <png.h>
#include <random>
#include <system_error>

#include "numerics/paths.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kHeaderBytes = 58;  // 14 of the file, 40 of the picture, 4 of a pad
constexpr std::uint32_t kPixelsPerMetre = 2952;
constexpr std::uintmax_t kLargestPng = std::uintmax_t{1} << 28;  // bytes

std::string NotWritten(const std::string& file, const std::string& cause) {
  return "The picture " + file + " was not written: " + cause + ".";
}

std::string NotRead(const std::string& file, const std::string& cause) {
  return "The picture " + file + " was not read: " + cause + ".";
}

bool IsWhole(const Image& image) {
  return image.width > 0 && image.height > 0 &&
         image.rgb.size() == static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 3;
}

// Least significant byte first.
void Put(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i) & 0xFF));
}

}  // namespace

std::size_t BitmapRowBytes(int width) {
  return (static_cast<std::size_t>(std::max(width, 0)) * 3 + 3) / 4 * 4;
}

std::string WriteBytes(const std::string& file, std::span<const std::uint8_t> bytes) {
  const fs::path target = PathOf(file);
  const fs::path temporary = PathOf(file + "." + std::to_string(std::random_device()()) + ".part");
  std::error_code error;
  if (target.filename().empty()) return NotWritten(file, "this is no file name");
  const fs::path folder = target.parent_path();
  if (!folder.empty() && !fs::is_directory(folder, error)) return NotWritten(file, "there is no such folder");
  bool whole = false;
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (!out) return NotWritten(file, "the folder cannot be written to");
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    out.close();
    whole = !out.fail();
  }
  std::string cause = "the disk is full or failed";
  if (whole) {
    fs::rename(temporary, target, error);
    if (!error) return {};
    cause = error.message();
  }
  fs::remove(temporary, error);
  return NotWritten(file, cause);
}

std::string WritePng(const std::string& file, const Image& image) {
  if (!IsWhole(image)) return NotWritten(file, "the picture is empty");
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_RGB;
  // Rows that cannot be compressed, with a filter byte each, the frames of the stored blocks and of the file's parts.
  const std::size_t raw = image.rgb.size() + static_cast<std::size_t>(image.height);
  std::vector<std::uint8_t> bytes(raw + raw / 256 + 4096);
  png_alloc_size_t size = bytes.size();
  if (png_image_write_to_memory(&png, bytes.data(), &size, 0, image.rgb.data(), 0, nullptr) == 0) {
    return NotWritten(file, png.message);
  }
  return WriteBytes(file, std::span(bytes).first(size));
}

std::string WriteBitmap(const std::string& file, const Image& image) {
  if (!IsWhole(image)) return NotWritten(file, "the picture is empty");
  const std::size_t rowBytes = BitmapRowBytes(image.width);
  const auto width = static_cast<std::size_t>(image.width);
  const auto height = static_cast<std::size_t>(image.height);
  std::vector<std::uint8_t> rows(rowBytes * height);
  for (std::size_t y = 0; y < height; ++y) {
    const std::uint8_t* from = image.rgb.data() + (height - 1 - y) * width * 3;
    std::uint8_t* to = rows.data() + y * rowBytes;
    for (std::size_t x = 0; x < width; ++x, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return WriteBitmapRows(file, image.width, image.height, rows);
}

std::string WriteBitmapRows(const std::string& file, int width, int height, std::span<const std::uint8_t> rows) {
  if (width <= 0 || height <= 0) return NotWritten(file, "the picture is empty");
  const std::size_t imageBytes = BitmapRowBytes(width) * static_cast<std::size_t>(height);
  if (rows.size() != imageBytes) return NotWritten(file, "the picture is not complete");
  if (imageBytes > std::numeric_limits<std::int32_t>::max() - kHeaderBytes) {
    return NotWritten(file, "the picture is too large for a bitmap");
  }
  const auto size = static_cast<std::uint32_t>(imageBytes);
  std::vector<std::uint8_t> bytes;
  bytes.reserve(kHeaderBytes + imageBytes);
  Put(bytes, 0x4D42, 2);
  Put(bytes, size + kHeaderBytes, 4);
  Put(bytes, 0, 4);
  Put(bytes, kHeaderBytes, 4);
  Put(bytes, 40, 4);
  Put(bytes, static_cast<std::uint32_t>(width), 4);
  Put(bytes, static_cast<std::uint32_t>(height), 4);
  Put(bytes, 1, 2);
  Put(bytes, 24, 2);
  Put(bytes, 0, 4);
  Put(bytes, size, 4);
  Put(bytes, kPixelsPerMetre, 4);
  Put(bytes, kPixelsPerMetre, 4);
  Put(bytes, 0, 4);
  Put(bytes, 0, 4);
  Put(bytes, 0, 4);
  bytes.insert(bytes.end(), rows.begin(), rows.end());
  return WriteBytes(file, bytes);
}

std::string ReadPng(const std::string& file, Image& image) {
  const fs::path path = PathOf(file);
  std::error_code error;
  const std::uintmax_t length = fs::file_size(path, error);
  if (error) return NotRead(file, error.message());
  if (length > kLargestPng) return NotRead(file, "the file is too large");
  std::vector<std::uint8_t> bytes(length);
  std::ifstream in(path, std::ios::binary);
  if (!in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(length))) {
    return NotRead(file, "the file cannot be read");
  }
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()) == 0) return NotRead(file, png.message);
  if (png.width > kLargestImageSide || png.height > kLargestImageSide) {
    png_image_free(&png);
    return NotRead(file, "it has too many pixels");
  }
  png.format = PNG_FORMAT_RGB;
  Image read{static_cast<int>(png.width), static_cast<int>(png.height), {}};
  read.rgb.resize(PNG_IMAGE_SIZE(png));
  const png_color black{};
  if (png_image_finish_read(&png, &black, read.rgb.data(), 0, nullptr) == 0) return NotRead(file, png.message);
  image = std::move(read);
  return {};
}

}  // namespace orv
