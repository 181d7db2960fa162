#include "calc_helper/uno_text.h"

namespace orv::calc_helper {

std::string Utf8(const rtl::OUString& text) {
  std::string out;
  out.reserve(static_cast<std::size_t>(text.getLength()));
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  const sal_Int32 length = text.getLength();
  for (sal_Int32 k = 0; k < length; ++k) {
    char32_t c = text[k];
    if (c < 0x80) {
      put(c);
      continue;
    }
    if (c >= 0xD800 && c < 0xE000) {
      const char32_t low = k + 1 < length ? text[k + 1] : 0;
      const bool pair = c < 0xDC00 && low >= 0xDC00 && low < 0xE000;
      c = pair ? 0x10000 + ((c - 0xD800) << 10U) + (low - 0xDC00) : 0xFFFD;
      if (pair) ++k;
    }
    if (c < 0x800) {
      put(0xC0 | (c >> 6U));
    } else {
      if (c < 0x10000) {
        put(0xE0 | (c >> 12U));
      } else {
        put(0xF0 | (c >> 18U));
        put(0x80 | ((c >> 12U) & 0x3F));
      }
      put(0x80 | ((c >> 6U) & 0x3F));
    }
    put(0x80 | (c & 0x3F));
  }
  return out;
}

rtl::OUString Wide(std::string_view utf8) {
  return {utf8.data(), static_cast<sal_Int32>(utf8.size()), RTL_TEXTENCODING_UTF8};
}

}  // namespace orv::calc_helper
