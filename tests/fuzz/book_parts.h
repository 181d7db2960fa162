#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/workbook_writer.h"

namespace orv::testing {

// Writes archives as they come, whatever their parts are called.
class StoredZip {
 public:
  void Add(const std::string& name, const std::string& content) {
    std::string entry = Number(20, 2) + Number(0, 2) + Number(0, 2) + Number(0, 4) + Number(Sum(content), 4) +
                        Number(content.size(), 4) + Number(content.size(), 4) + Number(name.size(), 2) + Number(0, 2);
    directory_ += "PK\x01\x02" + Number(20, 2) + entry + Number(0, 10) + Number(bytes_.size(), 4) + name;
    bytes_ += "PK\x03\x04" + entry + name + content;
    ++count_;
  }
  std::string Finish() const {
    return bytes_ + directory_ + "PK\x05\x06" + Number(0, 4) + Number(count_, 2) + Number(count_, 2) +
           Number(directory_.size(), 4) + Number(bytes_.size(), 4) + Number(0, 2);
  }

 private:
  static std::string Number(std::uint64_t value, int bytes) {
    std::string text;
    for (int k = 0; k < bytes; ++k, value >>= 8U) text.push_back(static_cast<char>(static_cast<unsigned char>(value)));
    return text;
  }
  // CRC-32.
  static std::uint32_t Sum(std::string_view content) {
    static constexpr std::array<std::uint32_t, 256> kTable = [] {
      std::array<std::uint32_t, 256> table{};
      for (std::uint32_t k = 0; k < 256; ++k) {
        table[k] = k;
        for (int bit = 0; bit < 8; ++bit) table[k] = (table[k] >> 1U) ^ ((table[k] & 1U) != 0 ? 0xEDB88320U : 0U);
      }
      return table;
    }();
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char c : content) sum = (sum >> 8U) ^ kTable[(sum ^ static_cast<unsigned char>(c)) & 0xFFU];
    return ~sum;
  }

  std::string bytes_;
  std::string directory_;
  std::size_t count_ = 0;
};

// A workbook from a text: what stands before the first line "@@NAME" replaces the part `first` of a common workbook,
// and what stands behind such a line the part NAME. Mutations reach the readers this way instead of the archive's sums.
inline std::string ZipOfText(std::vector<ZipPart> parts, const std::string& first, std::string_view text) {
  constexpr std::size_t kMostParts = 16;
  constexpr std::size_t kLongestName = 200;
  std::string name = first;
  for (std::size_t count = 0; count < kMostParts; ++count) {
    const std::size_t mark = text.find("@@");
    parts = WithPart(std::move(parts), name, std::string(text.substr(0, mark)));
    if (mark == std::string_view::npos) break;
    text.remove_prefix(mark + 2);
    const std::size_t end = std::min(text.find('\n'), text.size());
    name = text.substr(0, std::min(end, kLongestName));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  StoredZip zip;
  for (const ZipPart& part : parts) zip.Add(part.name, part.content);
  return zip.Finish();
}

}  // namespace orv::testing
