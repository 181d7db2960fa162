#pragma once

#include <string>
#include <string_view>

#include "analysis/run_context.h"
#include "view/view_state.h"
#include "window/plot_controls.h"
#include "window/plot_selection.h"

namespace orv {

// The name of a SidesMode; empty for a number that is none.
std::string_view SidesModeName(int mode);

// What the last run lacks for a plot, as the status bar words it; empty when it lacks nothing.
std::string MissingDataOnStatusBar(double plot, const ComputedPlots& computed);

// Whether the status bar's walk may take a plot: it needs no process that the last run left out.
bool IsComputed(double plot, double PreviousIndexPlot);

enum class ReplotAction {
  None,
  FullRun,        // CommExcel, without a request: the run asks for the plot
  ShowSelection,  // the selection opens; then TakeSelection
  Replot          // CommExcel, with the request set
};

// Clicks on the first panel of the status bar, and what a re-plot sets in the main window. The busy mark keeps a click
// out while another one, a run or a pass of the watch is at work.
class Replot {
 public:
  Replot(RunContext& run, ViewState& view, ToPlotForm& selection, PlotControls& controls, MainState& main)
      : run_(run), view_(view), selection_(selection), controls_(controls), main_(main) {}

  ReplotAction Click(const ClickKeys& keys);
  // The button is let go: the mark goes, unless work is still under way.
  void Release();
  // Fills the selection that a click asked for.
  void OpenSelection();
  // The selection has closed. Replot, or None when it was cancelled. From plot 90 on the tip stays as "Go Plot" left
  // it.
  ReplotAction TakeSelection();
  // The last plot of a run once more.
  ReplotAction Again();

  // A full run from the menu or the watch: the choice, the vectors and the selection of before are forgotten.
  void PrepareUpdate();
  // A full run has shown a model: its first click and its sides are those of a new one.
  void StartAnew();
  // Marks the bar for work that no click began; false when it is busy.
  bool Begin();
  // The work that a click or Begin started is over. The bar ends with the model's name, or with what the plot lacks
  // until the next click. plotShown: another plot is in the view, whose primitive starts with its mean data.
  void Ended(bool plotShown);

  bool Busy() const { return !main_.statusTag.empty(); }
  // The turn of the rotating primitive can be played for the plot in force.
  bool CanTurn() const;
  ComputedPlots Computed() const { return {run_.plot.PreviousIndexPlot, run_.rotation.RotatingPrimitive}; }

 private:
  bool HasSides() const;
  void StepSides();
  void SetSides(int mode);
  ReplotAction Walk();
  ReplotAction TakePlot(double plot);
  void TellMissing();
  void FreeMark();

  RunContext& run_;
  ViewState& view_;
  ToPlotForm& selection_;
  PlotControls& controls_;
  MainState& main_;
  bool working_ = false;
  bool selectionShown_ = false;  // by a click, since the last full run
  int walkPlace_ = -1;           // button taken last
  std::string missing_;          // message of the plot under way
};

}  // namespace orv
