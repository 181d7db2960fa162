#include "view/texture_file.h"

#include <csetjmp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <jerror.h>
#include <jpeglib.h>
#include <system_error>

#include "numerics/paths.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 26;  // bytes
constexpr int kMostScans = 200;  // a hostile file repeats its scans to keep the reader busy

// The library reports by a jump; no object with a destructor may live between the jump and its target.
struct JpegReports {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  char text[JMSG_LENGTH_MAX];
  bool damaged;
};

JpegReports& ReportsOf(j_common_ptr jpeg) {
  return *reinterpret_cast<JpegReports*>(jpeg->err);
}

extern "C" void JpegFailed(j_common_ptr jpeg) {
  JpegReports& reports = ReportsOf(jpeg);
  reports.base.format_message(jpeg, reports.text);
  std::longjmp(reports.jump, 1);
}

// Faults of the data for which the library fills in grey.
extern "C" void JpegMessage(j_common_ptr jpeg, int level) {
  if (level >= 0) return;
  JpegReports& reports = ReportsOf(jpeg);
  switch (reports.base.msg_code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL:
      reports.damaged = true;
      break;
    default:
      break;
  }
}

extern "C" void JpegProgress(j_common_ptr jpeg) {
  if (jpeg->is_decompressor == FALSE) return;
  if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kMostScans) ERREXIT(jpeg, JERR_BAD_PROGRESSION);
}

void Watch(JpegReports& reports) {
  jpeg_std_error(&reports.base);
  reports.base.error_exit = JpegFailed;
  reports.base.emit_message = JpegMessage;
  reports.text[0] = 0;
  reports.damaged = false;
}

enum class Outcome { Read, TooLarge, Damaged, Refused };

// Fills `out`, which the caller owns, so that it survives the jump.
Outcome Decode(const std::vector<std::uint8_t>& bytes, Image& out, JpegReports& reports) {
  jpeg_decompress_struct jpeg;
  jpeg_progress_mgr progress{};
  Watch(reports);
  jpeg.err = &reports.base;
  if (setjmp(reports.jump) != 0) {
    jpeg_destroy_decompress(&jpeg);
    return Outcome::Refused;
  }
  jpeg_create_decompress(&jpeg);
  progress.progress_monitor = JpegProgress;
  jpeg.progress = &progress;
  jpeg_mem_src(&jpeg, bytes.data(), static_cast<unsigned long>(bytes.size()));
  jpeg_read_header(&jpeg, TRUE);
  if (jpeg.image_width > kLargestTextureSide || jpeg.image_height > kLargestTextureSide) {
    jpeg_destroy_decompress(&jpeg);
    return Outcome::TooLarge;
  }
  jpeg.out_color_space = JCS_RGB;
  jpeg_start_decompress(&jpeg);
  out.width = static_cast<int>(jpeg.output_width);
  out.height = static_cast<int>(jpeg.output_height);
  const std::size_t rowBytes = static_cast<std::size_t>(jpeg.output_width) * 3;
  out.rgb.resize(rowBytes * jpeg.output_height);
  while (jpeg.output_scanline < jpeg.output_height) {
    JSAMPROW row = out.rgb.data() + rowBytes * jpeg.output_scanline;
    jpeg_read_scanlines(&jpeg, &row, 1);
  }
  jpeg_finish_decompress(&jpeg);
  jpeg_destroy_decompress(&jpeg);
  return reports.damaged ? Outcome::Damaged : Outcome::Read;
}

std::string NotRead(const std::string& file, const std::string& cause) {
  return "The picture " + file + " was not read: " + cause + ".";
}

}  // namespace

std::string ReadTexture(const std::string& file, Image& image) {
  const fs::path path = PathOf(file);
  std::error_code error;
  if (!fs::exists(path, error)) return NotRead(file, "there is no such file");
  const std::uintmax_t length = fs::file_size(path, error);
  if (error) return NotRead(file, error.message());
  if (length > kLargestFile) return NotRead(file, "the file is too large");
  std::vector<std::uint8_t> bytes(length);
  std::ifstream in(path, std::ios::binary);
  if (!in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(length))) {
    return NotRead(file, "the file cannot be read");
  }
  Image read;
  if (bytes.size() > 3 && bytes[0] == 0x89 && bytes[1] == 'P') {
    if (std::string message = ReadPng(file, read); !message.empty()) return message;
    if (read.width > kLargestTextureSide || read.height > kLargestTextureSide) {
      return NotRead(file, "it has too many pixels");
    }
    image = std::move(read);
    return {};
  }
  if (bytes.size() < 3 || bytes[0] != 0xFF || bytes[1] != 0xD8) return NotRead(file, "it is neither JPEG nor PNG");
  JpegReports reports;
  switch (Decode(bytes, read, reports)) {
    case Outcome::Read:
      image = std::move(read);
      return {};
    case Outcome::TooLarge:
      return NotRead(file, "it has too many pixels");
    case Outcome::Damaged:
      return NotRead(file, "it is damaged");
    default:
      return NotRead(file, reports.text);
  }
}

}  // namespace orv
