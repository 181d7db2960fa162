#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct zip;

namespace orv {

// What an archive may hold at most. The counts are of bytes and entries that were really met; the size fields of the
// archive are never believed.
struct ZipLimits {
  std::uint64_t entries = 10'000;
  std::uint64_t partBytes = std::uint64_t{256} << 20U;   // of one part, unpacked
  std::uint64_t totalBytes = std::uint64_t{512} << 20U;  // of all parts read, also of one read twice
  std::uint64_t ratio = 250;                             // unpacked to packed, once ratioFreeBytes were unpacked
  std::uint64_t ratioFreeBytes = std::uint64_t{16} << 20U;
};

// The zip archive inside a workbook file, read from memory. Whatever is wrong with it throws WorkbookError.
class ZipArchive {
 public:
  ZipArchive(std::string bytes, std::string fileName, const ZipLimits& limits = {});
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  // Names are compared without regard to case, and "\" counts as "/".
  bool Has(std::string_view name) const;
  // The unpacked bytes of a part, which must exist.
  std::string Read(std::string_view name);

 private:
  struct Closer {
    void operator()(zip* archive) const;
  };
  [[noreturn]] void Fail(const std::string& complaint) const;
  static std::string KeyOf(std::string_view name);

  std::string bytes_;
  std::string fileName_;
  ZipLimits limits_;
  std::uint64_t totalRead_ = 0;
  std::map<std::string, std::uint64_t, std::less<>> index_;
  std::unique_ptr<zip, Closer> archive_;
};

}  // namespace orv
