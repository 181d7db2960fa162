#include "model/zip_archive.h"

#include <gtest/gtest.h>

#include "model/workbook_contents.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

using testing::Zip;
using testing::ZipPart;

std::string Complaint(const std::string& bytes, const std::string& part, const ZipLimits& limits = {}) {
  try {
    ZipArchive(bytes, "m.xlsx", limits).Read(part);
  } catch (const WorkbookError& error) {
    return error.what();
  }
  return "";
}

// The position of the central directory's record of the first entry.
std::size_t DirectoryOf(const std::string& bytes) {
  return bytes.find("PK\x01\x02");
}

void Put32(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (unsigned k = 0; k < 4; ++k) bytes[at + k] = static_cast<char>(static_cast<unsigned char>(value >> (8 * k)));
}

TEST(ZipArchive, ReadsItsParts) {
  ZipArchive archive(Zip({{"a/B.xml", "content"}, {"empty", ""}, {"stored", "as it is", ZIP_CM_STORE}}), "m", {});
  EXPECT_TRUE(archive.Has("A/b.XML"));
  EXPECT_TRUE(archive.Has("a\\b.xml"));
  EXPECT_FALSE(archive.Has("b.xml"));
  EXPECT_EQ(archive.Read("a/B.xml"), "content");
  EXPECT_EQ(archive.Read("empty"), "");
  EXPECT_EQ(archive.Read("stored"), "as it is");
}

TEST(ZipArchive, RefusesAMissingPart) {
  EXPECT_EQ(Complaint(Zip({{"a", "x"}}), "b"), "'m.xlsx' is damaged: its part 'b' is missing.");
}

TEST(ZipArchive, RefusesTooManyEntries) {
  std::vector<ZipPart> parts(8, {"0", "x"});
  for (std::size_t k = 0; k < parts.size(); ++k) parts[k].name = std::to_string(k);
  ZipLimits limits;
  limits.entries = 8;
  EXPECT_EQ(Complaint(Zip(parts), "0", limits), "");
  limits.entries = 7;
  EXPECT_EQ(Complaint(Zip(parts), "0", limits),
            "'m.xlsx' is no ordinary workbook: its zip archive has more than 7 entries.");
}

TEST(ZipArchive, RefusesTooLargeAPart) {
  ZipLimits limits;
  limits.partBytes = std::uint64_t{1} << 20U;
  const std::string exact(limits.partBytes, 'x');
  EXPECT_EQ(Complaint(Zip({{"a", exact, ZIP_CM_STORE}}), "a", limits), "");
  EXPECT_EQ(Complaint(Zip({{"a", exact + "x", ZIP_CM_STORE}}), "a", limits),
            "'m.xlsx' is too large: its part 'a' unpacks to more than 1 MB.");
}

TEST(ZipArchive, RefusesTooMuchInAllAlsoOfOnePartReadAgain) {
  ZipLimits limits;
  limits.totalBytes = std::uint64_t{1} << 20U;
  ZipArchive archive(Zip({{"a", std::string(400'000, 'x')}}), "m.xlsx", limits);
  EXPECT_EQ(archive.Read("a").size(), 400'000U);
  EXPECT_EQ(archive.Read("a").size(), 400'000U);
  EXPECT_THROW(archive.Read("a"), WorkbookError);
}

TEST(ZipArchive, RefusesAPartThatSwells) {
  ZipLimits limits;
  limits.ratioFreeBytes = 100'000;
  EXPECT_EQ(Complaint(Zip({{"a", std::string(90'000, ' ')}}), "a", limits), "");
  EXPECT_EQ(Complaint(Zip({{"a", std::string(2'000'000, ' ')}}), "a", limits),
            "'m.xlsx' is no ordinary workbook: its part 'a' unpacks to more than 250 times its size.");
}

TEST(ZipArchive, RefusesAPackingMethodOfOtherArchives) {
  const std::string bytes = Zip({{"a", std::string(1000, 'x'), ZIP_CM_BZIP2}});
  EXPECT_EQ(Complaint(bytes, "a"),
            "'m.xlsx' is no ordinary workbook: its part 'a' is packed by a method that workbooks do not use.");
}

TEST(ZipArchive, SaysWhenAPartIsEncrypted) {
  std::string bytes = Zip({{"a", "x"}});
  bytes[bytes.find("PK\x03\x04") + 6] |= 1;
  bytes[DirectoryOf(bytes) + 8] |= 1;
  EXPECT_EQ(Complaint(bytes, "a"), "'m.xlsx' is encrypted; save it without a password first.");
}

TEST(ZipArchive, BelievesNoSizeField) {
  const std::string honest = Zip({{"a", std::string(3'000'000, ' ')}});
  for (const std::uint32_t size : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFEU}) {
    std::string bytes = honest;
    Put32(bytes, DirectoryOf(bytes) + 24, size);
    EXPECT_EQ(ZipArchive(bytes, "m", {}).Read("a").size(), 3'000'000U) << size;
  }
  ZipLimits limits;
  limits.ratioFreeBytes = 100'000;
  std::string bytes = honest;
  Put32(bytes, DirectoryOf(bytes) + 20, 0x7FFFFFFFU);  // claims to be packed badly
  EXPECT_NE(Complaint(bytes, "a", limits), "");
}

TEST(ZipArchive, RefusesWhatIsNoArchive) {
  EXPECT_EQ(Complaint("PK\x03\x04 nothing else", "a").find("'m.xlsx' is damaged or only part of a file: "), 0U);
}

TEST(ZipArchive, NoticesAChangedByte) {
  std::string bytes = Zip({{"a", "some content that is stored", ZIP_CM_STORE}});
  bytes[bytes.find("content")] = 'C';
  EXPECT_EQ(Complaint(bytes, "a").find("'m.xlsx' is damaged: its part 'a' cannot be unpacked ("), 0U);
}

}  // namespace
}  // namespace orv
