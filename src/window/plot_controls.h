#pragma once

#include <string>

#include "view/class_gl.h"
#include "window/main_state.h"

namespace orv {

// How a button or panel was clicked.
struct ClickKeys {
  bool right = false;
  bool shift = false;
  bool ctrl = false;
  bool alt = false;
};

inline constexpr int kEditStateFrozen = 17;

// The controls of the main window that move the plot: the scroll bars, the colour scale, the turn of a rotating
// primitive, the frozen start. Each event changes the scene, writes the texts beside the controls and asks for a paint.
class PlotControls {
 public:
  PlotControls(ClassGl& scene, MainState& main) : scene_(scene), main_(main) {}

  // The view was made: the bars are read once.
  void Start();

  // End and start of the plot in thousandths. A move of the user always sets the index; a change by the program leaves
  // a frozen plot where it stands.
  void ChangeHScroll1(int value, bool byUser);
  void ChangeHScroll4(int value, bool byUser);
  // Speed of growth; while a turn is played its period.
  void ChangeHScroll2(int value);

  // "color scale": the next colour style; with right or Shift the next place of the legend; with Ctrl the vectors.
  void ClickCommand7(const ClickKeys& keys);
  // No vectors, as before a new model is read.
  void HideVectors();
  // "Auto Rotation": mean data, variable data, turn with data, return.
  void ClickCommand8();
  // "Reset": the next paint normalises the plot again, which then grows.
  void ClickCommand9();

  // Another plot is shown: whether its primitive can turn. The mode goes back to the mean data; a frozen start ends.
  void NewPlot(bool canTurn);

  // "frozenstart". The first press empties the plot and freezes it, the second lets it grow again. Returns the edit
  // state: 17 while frozen, else the state of the marked mode.
  int FrozenStart(int markedEditState);

 private:
  bool HasPlot() const { return scene_.Lists().NumberPoints != kNoEntry; }
  double Thousandths(int index) const;
  int IndexOf(int thousandths) const;
  void LeaveTurn();
  void Thaw();

  ClassGl& scene_;
  MainState& main_;
  bool command7Moved_ = false;
  std::string styleCaption_{kColorScaleCaption};
};

}  // namespace orv
