#pragma once

#include <optional>
#include <string>

#include "analysis/run_context.h"
#include "analysis/run_phases.h"

namespace orv {

// What the user chose in the selection of plots. IndexPlotRequest 0: cancelled.
struct PlotChoice {
  double IndexPlotRequest = 0;
  std::string PlotOptionText;
  std::optional<double> LogScale;  // absent: the directive of the model stands
};

class PlotSelection {
 public:
  virtual ~PlotSelection() = default;
  virtual PlotChoice Select(const std::string& caption, const RunContext& run) = 0;
};

// The model asks for more cells than can be addressed.
struct ModelTooLarge {
  std::string message;
};

// One computation, from the text of a model to its results in `run`. With IndexPlotRequest set on entry and a finished
// run behind it the call is a re-plot: only the display lists are made again. Failures are survived statement by
// statement; ProgramEnd leaves by an abort answer, ModelTooLarge by a model that no array can hold. Returns false when
// nothing was computed: the selection was cancelled or the database is empty.
bool a_SpaceApplication(RunContext& run, PlotSelection& selection, RunPhases& phases);

// Moves the results to the display and composes the case line; asks for the name of the case.
void DisplayLists(RunContext& run, RunPhases& phases);

// Reads the letter and the number of the plot option text into the plot state.
void ReadPlotOption(PlotState& plot, CellText& reader);

// The frame of the thruster from the cell (1, 1) of its primitive; messages and abort question for a bad one.
void BuildThrusterFrame(RunContext& run, int primitive);

}  // namespace orv
