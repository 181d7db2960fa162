#pragma once

#include <string>
#include <utility>

namespace orv {

// A value that may be empty, a number or a text, as the cells of some tables are.
class GeneralValue {
 public:
  GeneralValue() = default;
  GeneralValue(double number) : number_(number), kind_(Kind::Number) {}          // NOLINT: a number is a value
  GeneralValue(std::string text) : text_(std::move(text)), kind_(Kind::Text) {}  // NOLINT: so is a text

  bool isEmpty() const { return kind_ == Kind::Empty; }
  bool isText() const { return kind_ == Kind::Text; }
  // 0 for an empty value and for a text.
  double number() const { return number_; }
  // Empty for a number.
  const std::string& text() const { return text_; }

 private:
  enum class Kind { Empty, Number, Text };
  double number_ = 0;
  std::string text_;
  Kind kind_ = Kind::Empty;
};

}  // namespace orv
