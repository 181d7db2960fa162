#include "numerics/text.h"

#include <array>
#include <cstdint>

namespace orv {
namespace {

// Reads the character at `position` and moves behind it; a stray byte counts as the character of its own value.
char32_t NextCharacter(std::string_view text, std::size_t& position) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(position);
  int length = 1;
  char32_t value = lead;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    value = lead & 0x1FU;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    value = lead & 0x0FU;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    value = lead & 0x07U;
  }
  if (position + static_cast<std::size_t>(length) > text.size()) length = 1;
  for (int k = 1; k < length; ++k) {
    const unsigned char next = byte(position + static_cast<std::size_t>(k));
    if ((next & 0xC0U) != 0x80U) {
      length = 1;
      break;
    }
    value = (value << 6U) | (next & 0x3FU);
  }
  // Forms longer than needed, surrogates and values beyond the last character are no characters.
  const bool forbidden = (length == 3 && (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF))) ||
                         (length == 4 && (value < 0x10000 || value > 0x10FFFF));
  if (forbidden) length = 1;
  if (length == 1) value = lead;
  position += static_cast<std::size_t>(length);
  return value;
}

void AppendCharacter(std::string& out, char32_t c) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6U));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12U));
    put(0x80 | ((c >> 6U) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18U));
    put(0x80 | ((c >> 12U) & 0x3F));
    put(0x80 | ((c >> 6U) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

bool Between(char32_t c, char32_t first, char32_t last) {
  return c >= first && c <= last;
}

char32_t UpperOf(char32_t c) {
  if (Between(c, U'a', U'z')) return c - 32;
  if (c < 0x80) return c;
  if (Between(c, 0xE0, 0xFE) && c != 0xF7) return c - 32;
  if (c == 0xFF) return 0x178;
  if (Between(c, 0x100, 0x137) || Between(c, 0x14A, 0x177)) return c & ~char32_t{1};
  if (Between(c, 0x139, 0x148) || Between(c, 0x179, 0x17E)) return (c % 2 == 0) ? c - 1 : c;
  if (Between(c, 0x3B1, 0x3C9) && c != 0x3C2) return c - 32;
  if (Between(c, 0x430, 0x44F)) return c - 32;
  if (Between(c, 0x450, 0x45F)) return c - 80;
  return c;
}

char32_t LowerOf(char32_t c) {
  if (Between(c, U'A', U'Z')) return c + 32;
  if (c < 0x80) return c;
  if (Between(c, 0xC0, 0xDE) && c != 0xD7) return c + 32;
  if (c == 0x178) return 0xFF;
  if (c == 0x130) return U'i';
  if (Between(c, 0x100, 0x137) || Between(c, 0x14A, 0x177)) return c | char32_t{1};
  if (Between(c, 0x139, 0x148) || Between(c, 0x179, 0x17E)) return (c % 2 == 1) ? c + 1 : c;
  if (Between(c, 0x391, 0x3A9)) return c + 32;
  if (Between(c, 0x410, 0x42F)) return c + 32;
  if (Between(c, 0x400, 0x40F)) return c + 80;
  return c;
}

// Stray bytes are copied as they are: a text that is no UTF-8 must pass unchanged but for its plain letters.
template <class Mapping>
std::string MapCharacters(std::string_view text, Mapping mapping) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    const char32_t c = NextCharacter(text, position);
    if (position - start == 1 && c >= 0x80) {
      out.push_back(text[start]);
    } else {
      AppendCharacter(out, mapping(c));
    }
  }
  return out;
}

// The characters 0x80 to 0x9F of Windows-1252; the five undefined bytes map to themselves.
constexpr std::array<char32_t, 32> kWindows1252High = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                       0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                       0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                       0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

}  // namespace

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperCase(std::string_view text) {
  return MapCharacters(text, UpperOf);
}

std::string LowerCase(std::string_view text) {
  return MapCharacters(text, LowerOf);
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string out;
  out.reserve(text.size());
  std::size_t position = 0;
  while (!from.empty()) {
    const std::size_t hit = text.find(from, position);
    if (hit == std::string_view::npos) break;
    out.append(text.substr(position, hit - position)).append(to);
    position = hit + from.size();
  }
  return out.append(text.substr(position));
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool StartsWith(std::string_view text, std::string_view part) {
  return text.substr(0, part.size()) == part;
}

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count) NextCharacter(text, position);
  return count;
}

std::string LeftCharacters(std::string_view text, std::size_t count) {
  std::size_t position = 0;
  for (std::size_t k = 0; k < count && position < text.size(); ++k) NextCharacter(text, position);
  return std::string(text.substr(0, position));
}

std::string SoftBlanks(std::string_view text) {
  return ReplaceAll(text, kHardBlank, " ");
}

std::string Utf8FromWindows1252(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    AppendCharacter(out, Between(value, 0x80, 0x9F) ? kWindows1252High[value - 0x80U] : char32_t{value});
  }
  return out;
}

std::string Windows1252FromUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const char32_t c = NextCharacter(text, position);
    if (c < 0x80 || Between(c, 0xA0, 0xFF)) {
      out.push_back(static_cast<char>(static_cast<unsigned char>(c)));
      continue;
    }
    char found = '?';
    for (std::size_t k = 0; k < kWindows1252High.size(); ++k) {
      if (kWindows1252High[k] == c) found = static_cast<char>(static_cast<unsigned char>(0x80U + k));
    }
    out.push_back(found);
  }
  return out;
}

bool IsValidUtf8(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    const char32_t c = NextCharacter(text, position);
    if (position - start == 1 && c >= 0x80) return false;
  }
  return true;
}

}  // namespace orv
