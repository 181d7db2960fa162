#include "numerics/element_tab.h"

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

std::string PadLeft(const std::string& text, std::size_t width) {
  const std::size_t length = CharacterCount(text);
  return length >= width ? text : std::string(width - length, ' ') + text;
}

}  // namespace

void ElementTab::operator()(int mode, const std::string& text, const std::string& format, double value) {
  const std::size_t width = CharacterCount(format);
  try {
    if (mode == 1) {
      const std::size_t length = CharacterCount(text);
      std::string field = LeftCharacters(text, width);
      if (length + 2 <= width) field += " ";
      line_ += PadLeft(field, width);
      ++columnCount_;
    } else if (mode == 0) {
      line_ += PadLeft(FormatNumber(Finite(value), format), width);
      ++columnCount_;
    } else if (mode == -1) {
      std::string line;
      line.swap(line_);
      columnCount_ = 0;
      ++lineCount_;
      sink_(line);
    }
  } catch (const RuntimeFailure&) {
    prompt_("ElementTab fail");
  }
}

}  // namespace orv
