#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "model/workbook_contents.h"
#include "numerics/environment.h"
#include "numerics/failure.h"
#include "numerics/text.h"
#include "numerics/user_dialogs.h"

// What the fuzz targets share. A target ends the process when something does not hold that must hold for any input.
namespace orv::testing {

inline void Require(bool holds, const char* what, std::string_view detail = {}) {
  if (holds) return;
  std::fprintf(stderr, "fuzz: does not hold: %s %s\n", what, std::string(detail).c_str());
  std::abort();
}

// Whatever the user is told must be a text.
inline void RequireText(std::string_view text, const char* what) {
  Require(IsValidUtf8(text), what, text);
}

// A user who never stops a program, or one who stops it at the first chance. What is told must be texts, and boxes are
// few, since a person has to close each.
class FuzzDialogs : public UserDialogs {
 public:
  explicit FuzzDialogs(Answer choice = Answer::Ignore, long mostBoxes = 1'000'000)
      : choice_(choice), boxesLeft_(mostBoxes) {}

  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon) override {
    RequireText(text, "a box shows a text");
    RequireText(title, "the title of a box is a text");
    Require(boxesLeft_-- > 0, "a person can close the boxes");
    switch (buttons) {
      case Buttons::Ok:
        return Answer::Ok;
      case Buttons::AbortRetryIgnore:
        return choice_;
      case Buttons::YesNo:
        return Answer::No;
      default:
        return Answer::Cancel;
    }
  }
  std::string Input(const std::string& prompt, const std::string&, const std::string&) override {
    RequireText(prompt, "an input box shows a text");
    return {};
  }
  void Pause(const std::string& text, const std::string&) override { RequireText(text, "a pause shows a text"); }
  void Log(const std::string& text) override { RequireText(text, "the log holds texts"); }
  void Status(const std::string& text) override { RequireText(text, "the status is a text"); }
  void Progress(const std::string&, double share) override {
    Require(share >= 0 && share <= 1, "the progress is a share");
  }
  bool Attended() const override { return true; }

 private:
  Answer choice_;
  long boxesLeft_;
};

// The number formats that users have.
inline const std::array<Locale, 3>& FuzzLocales() {
  static const std::array<Locale, 3> kLocales = {{{".", ""}, {",", "."}, {".", ","}}};
  return kLocales;
}

// Takes an input apart, line by line.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool Empty() const { return rest_.empty(); }
  std::string_view Rest() const { return rest_; }
  std::string_view Line() {
    const std::size_t end = rest_.find('\n');
    const std::string_view line = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
    return line;
  }
  // A line as it reaches the readers of texts: whole characters, no NUL.
  std::string TextLine() { return ReplaceAll(CleanUtf8(Line()), std::string_view("\0", 1), " "); }

 private:
  std::string_view rest_;
};

}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
