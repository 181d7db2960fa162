#include "model/zip_archive.h"

#include <algorithm>
#include <array>
#include <utility>
#include <zip.h>

#include "model/workbook_contents.h"

namespace orv {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{64} << 10U;

struct EntryCloser {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

std::string Megabytes(std::uint64_t bytes) {
  return std::to_string(bytes >> 20U) + " MB";
}

}  // namespace

void ZipArchive::Closer::operator()(zip* archive) const {
  zip_discard(archive);
}

void ZipArchive::Fail(const std::string& complaint) const {
  throw WorkbookError(fileName_, complaint);
}

std::string ZipArchive::KeyOf(std::string_view name) {
  std::string key(name);
  std::transform(key.begin(), key.end(), key.begin(), [](char c) {
    if (c == '\\') return '/';
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  });
  return key;
}

ZipArchive::ZipArchive(std::string bytes, std::string fileName, const ZipLimits& limits)
    : bytes_(std::move(bytes)), fileName_(std::move(fileName)), limits_(limits) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes_.data(), bytes_.size(), 0, &error);
  if (source != nullptr) {
    archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (archive_ == nullptr) zip_source_free(source);
  }
  const std::string reason = zip_error_strerror(&error);
  zip_error_fini(&error);
  if (archive_ == nullptr)
    Fail("is damaged or only part of a file: its zip archive cannot be opened (" + reason + ").");

  const zip_int64_t count = zip_get_num_entries(archive_.get(), 0);
  if (count < 0 || static_cast<std::uint64_t>(count) > limits_.entries) {
    Fail("is no ordinary workbook: its zip archive has more than " + std::to_string(limits_.entries) + " entries.");
  }
  for (std::uint64_t k = 0; k < static_cast<std::uint64_t>(count); ++k) {
    const char* name = zip_get_name(archive_.get(), k, ZIP_FL_ENC_RAW);
    if (name != nullptr) index_.emplace(KeyOf(name), k);
  }
}

ZipArchive::~ZipArchive() = default;

bool ZipArchive::Has(std::string_view name) const {
  return index_.contains(KeyOf(name));
}

std::string ZipArchive::Read(std::string_view name) {
  const std::string label = "its part " + QuotedPart(name);
  const auto found = index_.find(KeyOf(name));
  if (found == index_.end()) Fail("is damaged: " + label + " is missing.");

  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_stat_index(archive_.get(), found->second, 0, &stat) != 0) Fail("is damaged: " + label + " cannot be read.");
  if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE) {
    Fail("is encrypted; save it without a password first.");
  }
  // Workbooks know two methods. Others pack a million to one.
  if (stat.comp_method != ZIP_CM_STORE && stat.comp_method != ZIP_CM_DEFLATE) {
    Fail("is no ordinary workbook: " + label + " is packed by a method that workbooks do not use.");
  }
  const std::uint64_t packed = std::clamp<std::uint64_t>(stat.comp_size, 1, std::max<std::size_t>(bytes_.size(), 1));

  const std::unique_ptr<zip_file_t, EntryCloser> entry(zip_fopen_index(archive_.get(), found->second, 0));
  if (entry == nullptr) Fail("is damaged: " + label + " cannot be read (" + zip_strerror(archive_.get()) + ").");
  std::string content;
  std::array<char, kChunkBytes> chunk;
  for (;;) {
    const zip_int64_t count = zip_fread(entry.get(), chunk.data(), chunk.size());
    if (count < 0) Fail("is damaged: " + label + " cannot be unpacked (" + zip_file_strerror(entry.get()) + ").");
    if (count == 0) return content;
    content.append(chunk.data(), static_cast<std::size_t>(count));
    totalRead_ += static_cast<std::uint64_t>(count);
    if (content.size() > limits_.partBytes || totalRead_ > limits_.totalBytes) {
      Fail("is too large: " + label + " unpacks to more than " +
           Megabytes(content.size() > limits_.partBytes ? limits_.partBytes : limits_.totalBytes) + ".");
    }
    if (content.size() > limits_.ratioFreeBytes && content.size() / packed > limits_.ratio) {
      Fail("is no ordinary workbook: " + label + " unpacks to more than " + std::to_string(limits_.ratio) +
           " times its size.");
    }
  }
}

}  // namespace orv
