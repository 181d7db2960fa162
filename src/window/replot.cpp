#include "window/replot.h"

#include <algorithm>
#include <array>

#include "analysis/result_labels.h"

namespace orv {
namespace {

constexpr std::array<std::string_view, kSidesModes> kSidesNames = {"Recto&Verso dots", "R&V dots&borders", "RECTO side",
                                                                   "VERSO side", "Recto&Verso sides"};
constexpr double kRedeposition = 90;
constexpr double kCleaning = 95;
constexpr int kBordersMode = 1;
constexpr int kRectoMode = 2;
constexpr const char* kBusy = "busy";

}  // namespace

std::string_view SidesModeName(int mode) {
  return mode >= 0 && mode < kSidesModes ? kSidesNames[static_cast<std::size_t>(mode)] : std::string_view{};
}

bool IsComputed(double plot, double PreviousIndexPlot) {
  return (plot < kRedeposition || PreviousIndexPlot >= kRedeposition) &&
         (plot < kCleaning || PreviousIndexPlot >= kCleaning);
}

std::string MissingDataOnStatusBar(double plot, const ComputedPlots& computed) {
  const double before = computed.PreviousIndexPlot;
  if (plot >= kCleaning && before < kCleaning) return "NO DATA: Cleaning process not performed";
  if (plot >= kRedeposition && before < kRedeposition) return "NO DATA: redeposition process not performed";
  if (computed.RotatingPrimitive != 0 && plot == 19 && !IsSputterRotationPlot(before)) {
    return "autorotation NOT performed. To compute autorotation please use UpdateExcel and select plot 19 or plot>=90";
  }
  return {};
}

bool Replot::CanTurn() const {
  const PlotState& plot = run_.plot;
  if (!run_.record.finished) return false;
  return (plot.SputterRotationActive != 0 && IsSputterRotationPlot(plot.IndexPlot)) ||
         (plot.AutomaticRotationActive != 0 && IsAutoRotationPlot(plot.IndexPlot));
}

ReplotAction Replot::Click(const ClickKeys& keys) {
  if (Busy()) return ReplotAction::None;
  if (keys.ctrl && HasSides()) {
    StepSides();
    return ReplotAction::None;
  }
  main_.statusTag = kBusy;
  if (!run_.record.finished) {
    run_.plot.IndexPlotRequest = 0;
    working_ = true;
    return ReplotAction::FullRun;
  }
  const bool choose = keys.right || keys.shift;
  if (keys.alt && !choose) return ReplotAction::None;
  working_ = true;
  const bool first = !selectionShown_ || !selection_.Loaded();
  const ReplotAction action = choose || first ? ReplotAction::ShowSelection : Walk();
  if (action == ReplotAction::ShowSelection) selectionShown_ = true;
  return action;
}

// Cells of a run, or the outlines of ranges.
bool Replot::HasSides() const {
  return run_.record.finished || run_.lists.PenUpMode == 1;
}

void Replot::Release() {
  if (!working_) FreeMark();
}

void Replot::FreeMark() {
  main_.statusTag.clear();
}

void Replot::StepSides() {
  SetSides((view_.SidesMode + 1) % kSidesModes);
  main_.panel = main_.panelTip;
}

void Replot::SetSides(int mode) {
  view_.SidesMode = mode;
  main_.panelTip = SidesModeName(mode);
}

// The memorised plots in turn, from the one behind the plot shown; those without data are passed over.
ReplotAction Replot::Walk() {
  const auto& captions = selection_.Captions();
  const auto numberAt = [&](int place) { return PlotNumberOf(captions[static_cast<std::size_t>(place)]); };
  if (walkPlace_ < 0 || numberAt(walkPlace_) != run_.plot.IndexPlot) {
    walkPlace_ = -1;
    for (int place = 0; place < kMemorisedPlots && walkPlace_ < 0; ++place) {
      if (numberAt(place) == run_.plot.IndexPlot) walkPlace_ = place;
    }
  }
  for (int step = 1; step <= kMemorisedPlots; ++step) {
    const int place = (walkPlace_ + step) % kMemorisedPlots;
    const int plot = numberAt(place);
    if (plot == 0) continue;
    if (!IsComputed(plot, run_.plot.PreviousIndexPlot)) {
      main_.panel = "NO DATA for this plot, process not performed";
      continue;
    }
    walkPlace_ = place;
    return TakePlot(plot);
  }
  return ReplotAction::ShowSelection;
}

void Replot::OpenSelection() {
  selection_.Open(" Model: " + run_.model.ModelId, run_, Computed());
}

ReplotAction Replot::TakeSelection() {
  const double plot = selection_.IndexPlotRequest();
  if (!(plot > 0)) {
    working_ = false;
    FreeMark();
    return ReplotAction::None;
  }
  run_.plot.PlotOptionText = selection_.PlotOptionText();
  run_.plot.LogScale = selection_.LogScale();
  const std::string tip = main_.panelTip;
  const ReplotAction action = TakePlot(plot);
  if (plot >= kRedeposition) main_.panelTip = tip;
  return action;
}

ReplotAction Replot::TakePlot(double plot) {
  run_.plot.IndexPlotRequest = plot;
  SetSides(plot < kRedeposition ? kRectoMode : kBordersMode);
  TellMissing();
  return ReplotAction::Replot;
}

void Replot::TellMissing() {
  missing_ = MissingDataOnStatusBar(run_.plot.IndexPlotRequest, Computed());
  if (!missing_.empty()) main_.panel = missing_;
}

ReplotAction Replot::Again() {
  if (!run_.record.finished || !Begin()) return ReplotAction::None;
  run_.plot.IndexPlotRequest = run_.plot.IndexPlot;
  TellMissing();
  return ReplotAction::Replot;
}

void Replot::PrepareUpdate() {
  run_.plot.IndexPlotRequest = 0;
  controls_.HideVectors();
  selection_.Unload();
  missing_.clear();
  StartAnew();
  main_.panel = main_.panelTip;
}

void Replot::StartAnew() {
  selectionShown_ = false;
  walkPlace_ = -1;
  SetSides(kBordersMode);
}

bool Replot::Begin() {
  if (Busy()) return false;
  main_.statusTag = kBusy;
  working_ = true;
  return true;
}

void Replot::Ended(bool plotShown) {
  run_.plot.IndexPlotRequest = 0;
  if (plotShown) controls_.NewPlot(CanTurn());
  if (run_.record.finished) {
    main_.panelTip = run_.record.PlotButtonTip;
    main_.panel = missing_.empty() ? run_.record.PlotButtonTip : missing_;
  }
  missing_.clear();
  working_ = false;
  FreeMark();
}

}  // namespace orv
