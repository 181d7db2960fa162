#pragma once

#include <string>
#include <string_view>

// What the controls of the windows are: tables without a toolkit, from which the forms are built.
namespace orv {

enum class ControlKind {
  Label,
  Check,
  Option,
  Number,
  Colour,
  Text,
  List,
  Scroll,
  Button,
  Frame,
  Progress,
  StatusBar,
  Toolbar,
  View
};

inline constexpr int kSingle = -1;  // index of a control that stands alone

struct ControlEntry {
  std::string_view name;
  int index = kSingle;  // in an array of controls
  ControlKind kind = ControlKind::Label;
  std::string_view caption = {};
  std::string_view tip = {};
  std::string_view initial = {};  // text, number or "0" and "1" of a box, when the form is made
  double minimum = 0;             // of scroll bars and numbers
  double maximum = 0;
  std::string_view key = {};  // of section "Use", written on every change
};

// The name of a control for tests and accessibility tools: "Check2", "Check1(0)".
inline std::string ObjectName(const ControlEntry& entry) {
  std::string name(entry.name);
  return entry.index == kSingle ? name : name + "(" + std::to_string(entry.index) + ")";
}

}  // namespace orv
