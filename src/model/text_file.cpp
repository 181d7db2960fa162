#include "model/text_file.h"

#include <algorithm>
#include <optional>
#include <string>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";

std::string FromUtf16(std::string_view bytes, bool bigEndian) {
  std::string text;
  text.reserve(bytes.size());
  const auto unitAt = [&](std::size_t k) -> char32_t {
    const auto first = static_cast<unsigned char>(bytes[k]);
    const auto second = static_cast<unsigned char>(bytes[k + 1]);
    return static_cast<char32_t>(bigEndian ? first << 8U | second : second << 8U | first);
  };
  for (std::size_t k = 0; k + 1 < bytes.size(); k += 2) {
    char32_t unit = unitAt(k);
    if (unit >= 0xD800 && unit < 0xDC00 && k + 3 < bytes.size()) {
      const char32_t low = unitAt(k + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
        k += 2;
      }
    }
    AppendUtf8(text, unit);
  }
  return text;
}

std::string Decode(std::string_view bytes) {
  if (bytes.starts_with(kUtf16LittleMark)) return FromUtf16(bytes.substr(2), false);
  if (bytes.starts_with(kUtf16BigMark)) return FromUtf16(bytes.substr(2), true);
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  return CleanUtf8(bytes);
}

bool EndsCell(std::string_view text, std::size_t k) {
  return k >= text.size() || text[k] == '\t' || text[k] == '\r' || text[k] == '\n';
}

// A cell in quotes that begins at `position`; nothing when its closing quote is missing or does not end the cell.
std::optional<std::string> TakeQuoted(std::string_view text, std::size_t& position) {
  std::string cell;
  for (std::size_t k = position + 1; k < text.size(); ++k) {
    if (text[k] != '"') {
      cell.push_back(text[k]);
    } else if (k + 1 < text.size() && text[k + 1] == '"') {
      cell.push_back('"');
      ++k;
    } else if (EndsCell(text, k + 1)) {
      position = k + 1;
      return cell;
    } else {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsText(std::string_view bytes) {
  if (bytes.starts_with(kUtf16LittleMark) || bytes.starts_with(kUtf16BigMark)) return true;
  if (bytes.ends_with('\x1A')) bytes.remove_suffix(1);
  return std::all_of(bytes.begin(), bytes.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\r' || c == '\n' || c == '\f';
  });
}

void ReadText(std::string_view bytes, const std::string& sheetName, WorkbookBuilder& builder) {
  if (bytes.ends_with('\x1A')) bytes.remove_suffix(1);
  const std::string decoded = Decode(bytes);
  const std::string_view text = decoded;
  builder.BeginSheet(sheetName);
  long long row = 1;
  long long column = 1;
  for (std::size_t position = 0; position < text.size();) {
    std::optional<std::string> cell;
    if (text[position] == '"') cell = TakeQuoted(text, position);
    if (!cell) {
      const std::size_t end = std::min(text.find_first_of("\t\r\n", position), text.size());
      cell = text.substr(position, end - position);
      position = end;
    }
    if (!cell->empty()) builder.Put(builder.At(row, column), {}, std::move(*cell));
    if (position == text.size()) break;
    if (text[position] == '\t') {
      ++column;
    } else {
      if (text[position] == '\r' && position + 1 < text.size() && text[position + 1] == '\n') ++position;
      ++row;
      column = 1;
    }
    ++position;
  }
}

}  // namespace orv
