#pragma once

#include "window/main_controls.h"

namespace orv {

struct ScrollState {
  int value = 0;
  int maximum = kThousandths;
};

// What the controls of the main window show. The logic writes it, the window copies it to its controls.
struct MainState {
  std::string panel{kPanelText};  // first panel of the status bar
  std::string panelTip{kPanelTip};
  std::string statusTag;  // "busy" while a click on the status bar is at work
  std::string command7Caption{kColorScaleCaption};
  std::string command7Tip{kColorScaleTip};
  std::string command8Tip{kRotationTip};
  bool command8Enabled = false;
  std::string text2 = "Redraw speed";
  std::string text3 = "Redraw";
  std::string text10 = "Starting";
  ScrollState hscroll1{kThousandths, kThousandths};
  ScrollState hscroll2{kSpeedStart, kSpeedMaximum};
  ScrollState hscroll4{0, kThousandths};
};

}  // namespace orv
