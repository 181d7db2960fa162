#include "window/plot_controls.h"

#include <algorithm>

#include "numerics/number_format.h"
#include "view/turn_playback.h"

namespace orv {
namespace {

constexpr const char* kVectorsCaption = "CheckPLOTvectorsNb";
constexpr int kSpeedAfterColours = 7;

// The text of a bar; only some of the words bring a blank.
std::string BarText(const std::string& words, double number, const char* mask = "0") {
  return words + FormatNumber(number, mask);
}

}  // namespace

double PlotControls::Thousandths(int index) const {
  const int last = scene_.Lists().NumberPoints;
  return last > 0 ? std::max(0.0, static_cast<double>(index) / last * kThousandths) : 0;
}

int PlotControls::IndexOf(int thousandths) const {
  return static_cast<int>(CInt(static_cast<double>(scene_.Lists().NumberPoints) * thousandths / kThousandths));
}

void PlotControls::Start() {
  ChangeHScroll1(main_.hscroll1.value, false);
  ChangeHScroll2(main_.hscroll2.value);
}

void PlotControls::ChangeHScroll1(int value, bool byUser) {
  if (command7Moved_) {
    command7Moved_ = false;
    if (main_.hscroll2.value == kSpeedStart) ChangeHScroll2(kSpeedAfterColours);
  }
  value = std::clamp(value, 1, kThousandths);
  main_.hscroll1.value = value;
  scene_.View().redrawFraction = static_cast<double>(value) / kThousandths;
  double shown = value;
  if (HasPlot()) {
    int previous = 0;
    if (!byUser && scene_.RedrawState() == kFrozen) {
      scene_.ChangeCURRINDEXI(-1, previous);
      const int index = previous;
      scene_.ChangeCURRINDEXI(index, previous);
      shown = Thousandths(index);
    } else {
      scene_.ChangeCURRINDEXI(IndexOf(value), previous);
    }
  }
  main_.text3 = BarText("Redraw ", shown);
  scene_.Control().Redraw();
}

void PlotControls::ChangeHScroll4(int value, bool byUser) {
  value = std::clamp(value, 0, kThousandths);
  main_.hscroll4.value = value;
  scene_.View().startFraction = static_cast<double>(value) / kThousandths;
  double shown = value;
  if (HasPlot()) {
    int previous = 0;
    if (!byUser && scene_.RedrawState() == kFrozen) {
      scene_.ChangeCURRINDEXMINI(scene_.CURRINDEXMINI(), previous);
      shown = Thousandths(previous);
    } else {
      scene_.ChangeCURRINDEXMINI(IndexOf(value), previous);
    }
  }
  main_.text10 = BarText("Starting", shown);
  scene_.Control().Redraw();
}

void PlotControls::ChangeHScroll2(int value) {
  value = std::clamp(value, 0, main_.hscroll2.maximum);
  main_.hscroll2.value = value;
  const double square = static_cast<double>(value) * value;
  scene_.ChangeSTEPPT(value * value);
  scene_.View().AutoRotPeriod = (square + 0.1) / 10;
  const bool turning = scene_.View().AutoRotMode != kMeanData;
  main_.text2 =
      turning ? BarText("Auto-Rotation ", scene_.View().AutoRotPeriod, "0.0#") : BarText("Redraw speed", value);
}

void PlotControls::ClickCommand7(const ClickKeys& keys) {
  command7Moved_ = true;
  ViewState& view = scene_.View();
  if (keys.ctrl) {
    const PointLists& lists = scene_.Lists();
    if (lists.VectorsShown) {
      HideVectors();
    } else if (lists.VectorCount > 0) {
      scene_.ShowVectors(true);
      main_.command7Caption = kVectorsCaption;
    }
  } else if (keys.right || keys.shift) {
    view.ScaleMode = Mod(view.ScaleMode + 1, kScaleModes);
    main_.command7Tip = view.ScaleMode == kScaleModes - 1 ? kAllScalesTip : kColorScaleTip;
  } else {
    view.ColorStyle = Mod(view.ColorStyle + 1, kColorStyles);
    styleCaption_ = NumberText(view.ColorStyle);
    main_.command7Caption = styleCaption_;
  }
  scene_.Control().Redraw();
}

void PlotControls::HideVectors() {
  scene_.ShowVectors(false);
  main_.command7Caption = styleCaption_;
}

void PlotControls::ClickCommand8() {
  if (!main_.command8Enabled) return;
  int& mode = scene_.View().AutoRotMode;
  if (mode == kReturnFromTurn) mode = kMeanData;
  ++mode;
  switch (mode) {
    case kVariableData:
      main_.command8Tip = "view variable data";
      break;
    case kTurnWithData:
      main_.command8Tip = "Rotation with variable data";
      break;
    default:
      LeaveTurn();
      scene_.Control().Redraw();
      return;
  }
  main_.hscroll2.maximum = kRotationMaximum;
  ChangeHScroll2(main_.hscroll2.value);
  scene_.Control().Redraw();
}

// The bar serves the growth of the plot again.
void PlotControls::LeaveTurn() {
  main_.command8Tip = "Mean data only";
  main_.hscroll2.maximum = kSpeedMaximum;
  int& mode = scene_.View().AutoRotMode;
  const int left = mode;
  mode = kMeanData;
  ChangeHScroll2(kSpeedStart);
  mode = left;
}

void PlotControls::ClickCommand9() {
  Thaw();
  scene_.Lists().PlotLoaded = 0;
  scene_.Control().Redraw();
}

void PlotControls::NewPlot(bool canTurn) {
  const bool turning = scene_.View().AutoRotMode != kMeanData;
  scene_.View().AutoRotMode = kMeanData;
  if (turning) LeaveTurn();
  main_.command8Enabled = canTurn;
  main_.command8Tip = "Mean data only";
  if (!scene_.Lists().VectorsShown) main_.command7Caption = styleCaption_;  // other lists, without the vectors
  Thaw();
}

void PlotControls::Thaw() {
  if (!scene_.View().frozen) return;
  scene_.View().frozen = false;
  scene_.SetRedrawState(kRunning);
}

int PlotControls::FrozenStart(int markedEditState) {
  ViewState& view = scene_.View();
  if (view.frozen) {
    Thaw();
    scene_.Control().Redraw();
    return markedEditState;
  }
  view.frozen = true;
  int previous = 0;
  scene_.ChangeCURRINDEXI(-1, previous);
  main_.text3 = BarText("Redraw Start", Thousandths(previous));
  scene_.Control().Redraw();
  return kEditStateFrozen;
}

}  // namespace orv
