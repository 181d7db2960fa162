#pragma once

#include <functional>
#include <string>

#include "numerics/error_prompt.h"

namespace orv {

// Builds lines of fixed-width fields for growing tables; a finished line goes to the sink.
class ElementTab {
 public:
  ElementTab(std::function<void(const std::string&)> sink, ErrorPrompt& prompt)
      : sink_(std::move(sink)), prompt_(prompt) {}

  // 1: adds the text, right-aligned in a field as wide as the format, with one blank behind it when there is room and
  // cut when it is too long. 0: adds the value by the format, padded on the left to the format's width. -1: hands the
  // line over and clears it. -5: nothing. A failure inside gives the prompt "ElementTab fail".
  void operator()(int mode, const std::string& text, const std::string& format, double value);

  int lineCount() const { return lineCount_; }
  int columnCount() const { return columnCount_; }
  const std::string& line() const { return line_; }

 private:
  std::function<void(const std::string&)> sink_;
  ErrorPrompt& prompt_;
  std::string line_;
  int lineCount_ = 0;
  int columnCount_ = 0;
};

}  // namespace orv
