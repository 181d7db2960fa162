#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// Small readers of the machine formats, written for the tests alone.
namespace orv::testing {

// Rows of fields; fields in double quotes may hold commas, line ends and doubled quotes.
inline std::vector<std::vector<std::string>> ReadCsv(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> row(1);
  bool quoted = false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if (quoted) {
      if (c != '"') {
        row.back().push_back(c);
      } else if (k + 1 < text.size() && text[k + 1] == '"') {
        row.back().push_back('"');
        ++k;
      } else {
        quoted = false;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      row.emplace_back();
    } else if (c == '\n') {
      rows.push_back(row);
      row.assign(1, "");
    } else if (c != '\r') {
      row.back().push_back(c);
    }
  }
  if (row.size() > 1 || !row.front().empty()) rows.push_back(row);
  return rows;
}

// The bytes of a base64 text; empty for a text that is none.
inline std::vector<unsigned char> ReadBase64(const std::string& text) {
  static const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::vector<unsigned char> bytes;
  if (text.size() % 4 != 0) return bytes;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    if (c == '=') break;
    const std::size_t digit = alphabet.find(c);
    if (digit == std::string::npos) return {};
    bits = bits << 6U | static_cast<std::uint32_t>(digit);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes.push_back(static_cast<unsigned char>(bits >> static_cast<unsigned>(count) & 0xFFU));
    }
  }
  return bytes;
}

// The numbers of a binary array of a VTK file: a 64-bit length in bytes, then the values. `whole` tells whether the
// length fits.
template <class Number>
std::vector<Number> ReadVtkArray(const std::string& base64, bool& whole) {
  const std::vector<unsigned char> bytes = ReadBase64(base64);
  std::uint64_t length = 0;
  whole = bytes.size() >= sizeof length;
  if (!whole) return {};
  std::memcpy(&length, bytes.data(), sizeof length);
  whole = bytes.size() == sizeof length + length && length % sizeof(Number) == 0;
  std::vector<Number> values(whole ? length / sizeof(Number) : 0);
  if (!values.empty()) std::memcpy(values.data(), bytes.data() + sizeof length, length);
  return values;
}

}  // namespace orv::testing
