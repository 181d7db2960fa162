#pragma once

#include <string>
#include <vector>

#include "numerics/environment.h"
#include "numerics/error_prompt.h"
#include "numerics/settings.h"

// What the main window remembers for its user: specifications, workbooks, files for presentations.
namespace orv {

// The combo of plot specifications, newest first.
class SpecificationList {
 public:
  SpecificationList(SettingsStore& settings, ErrorPrompt& prompt) : settings_(settings), prompt_(prompt) {}

  // Takes up to `count` remembered specifications; the first one is chosen.
  void Combo1_InitList(int count);
  // The text of the current choice, which the combo shows when it gets the focus; empty without one.
  std::string Combo1_GotFocusRoutine() const;
  // A choice in the list.
  void Choose(int index);
  // The Enter key: the text is the specification to plot from now on, and is remembered. An empty one takes it back.
  void Enter(const std::string& text);
  // A specification that was plotted from a cell: remembered, but not typed.
  void Remember(const std::string& text);
  // A specification or a keyword taken from a cell ends what was typed.
  void Forget();

  const std::vector<std::string>& Items() const { return items_; }
  int Current() const { return current_; }  // -1: none
  int SpecEntered() const { return SpecEntered_; }
  const std::string& SpecText() const { return SpecText_; }

 private:
  SettingsStore& settings_;
  ErrorPrompt& prompt_;
  std::vector<std::string> items_;
  int current_ = -1;
  int SpecEntered_ = 0;
  std::string SpecText_;
};

inline constexpr int kRecentWorkbooks = 8;

// Full names of the workbooks opened last, newest first.
std::vector<std::string> RecentWorkbooks(const SettingsStore& settings);
// Puts one in front; it is listed once, and the oldest beyond eight falls out. A name that holds a line end is not
// kept.
void RememberWorkbook(SettingsStore& settings, ErrorPrompt& prompt, const std::string& fullName);
// Takes one out, such as a file that is gone.
void ForgetWorkbook(SettingsStore& settings, ErrorPrompt& prompt, const std::string& fullName);

// "PowerPoint", the date, "_", the seconds of the day, ".txt".
std::string PowerPointFileName(const CivilTime& now);
// The command to paste in a presentation: program and file, each in quotes.
std::string PowerPointCommand(const std::string& program, const std::string& file);

}  // namespace orv
