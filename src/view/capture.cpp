#include "view/capture.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <utility>
#include <vector>

#include "view/image_file.h"

namespace orv {

namespace {

constexpr int kNormalPointer = 0;

// Busy while it lives.
class BusyPointer {
 public:
  explicit BusyPointer(glxCtl& control) : control_(control) { control_.Cursor(kBusyPointer); }
  ~BusyPointer() { control_.Cursor(kNormalPointer); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  glxCtl& control_;
};

// The stretch [start, start + length) within [low, low + extent); wide numbers, as any region may be asked for.
std::pair<int, int> Cut(long long start, long long length, int low, int extent) {
  const long long begin = std::clamp<long long>(start, low, static_cast<long long>(low) + extent);
  const long long end = std::clamp<long long>(start + length, begin, static_cast<long long>(low) + extent);
  return {static_cast<int>(begin), static_cast<int>(end - begin)};
}

void SwapRedAndBlue(std::vector<std::uint8_t>& rows, int width, int height) {
  const std::size_t rowBytes = BitmapRowBytes(width);
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
    std::uint8_t* pixel = rows.data() + y * rowBytes;
    for (int x = 0; x < width; ++x, pixel += 3) std::swap(pixel[0], pixel[2]);
  }
}

bool Save(GlApi& gl, const std::string& file, const CaptureRegion& region) {
  const std::array<int, 4> viewport = gl.ViewportInForce();
  const auto [x, width] = Cut(region.x, static_cast<long long>(region.width) + 1, viewport[0], viewport[2]);
  const auto [y, height] = Cut(region.y, region.height, viewport[1], viewport[3]);
  if (region.width <= 0 || width <= 0 || height <= 0) return false;
  std::vector<std::uint8_t> rows(BitmapRowBytes(width) * static_cast<std::size_t>(height));
  gl.ReadPixels(x, y, width, height, rows);
  SwapRedAndBlue(rows, width, height);
  return WriteBitmapRows(file, width, height, rows).empty();
}

}  // namespace

bool SaveFrameBuffer(glxCtl& control, const std::string& file, const CaptureRegion& region) {
  const BusyPointer busy(control);
  try {
    return Save(control.Gl(), file, region);
  } catch (const std::exception&) {
    return false;
  }
}

std::string SaveName(const std::string& Name, const std::string& DIReCT) {
  std::string folder = DIReCT;
  if (!folder.empty() && folder.back() != '\\' && folder.back() != '/') folder += '\\';
  std::string file = folder + (Name.empty() ? "ImageSaved.bmp" : Name);
  std::ranges::replace(file, '\\', static_cast<char>(std::filesystem::path::preferred_separator));
  return file;
}

bool SaveBMP(glxCtl& control, const std::string& Name, const std::string& DIReCT,
             const std::optional<CaptureRegion>& dragged) {
  return SaveFrameBuffer(control, SaveName(Name, DIReCT),
                         dragged.value_or(CaptureRegion{0, 0, control.Width(), control.Height()}));
}

}  // namespace orv
