#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "analysis/run_context.h"
#include "numerics/settings.h"
#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/class_gl.h"
#include "view/recording_control.h"
#include "window/replot.h"

// The logic of the windows round a run and a scene that draws nothing.
namespace orv::testing {

// Counts what is written, and refuses on demand.
class WatchedSettings : public MemorySettings {
 public:
  void Write(const std::string& section, const std::string& key, const std::string& value) override {
    if (refuse) Raise(FailureNumber::PathFileAccessError);
    ++writes;
    MemorySettings::Write(section, key, value);
  }
  std::string Of(const std::string& section, const std::string& key) const { return Read(section, key, "absent"); }
  bool refuse = false;
  int writes = 0;
};

struct WindowFixture : ::testing::Test {
  WindowFixture() { controls.Start(); }

  // A plot of 20 x 20 cells stands in the view.
  void ShowPlot() {
    FillSheet(run.lists, 20, 20);
    scene.Reset();
    scene.SetRedrawState(kRunning);
  }
  // As after a full run of a plot.
  void FinishRun(double plot, int rotating = 0) {
    run.record.finished = true;
    run.record.PlotButtonTip = "Model: \"title\" Click here to re-Plot";
    run.plot.IndexPlot = run.plot.PreviousIndexPlot = plot;
    run.rotation.RotatingPrimitive = rotating;
    run.plot.SputterRotationActive = plot == 19 || plot >= 90 ? rotating : 0;
    run.plot.AutomaticRotationActive = plot == 22 ? rotating : 0;
  }
  // The item of a number is chosen in the selection.
  void ChooseNumber(int number) {
    for (std::size_t k = 0; k < form.Items().size(); ++k) {
      if (form.Items()[k].number == number) return form.ChooseItem(static_cast<int>(k));
    }
    FAIL() << "no item " << number;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  WatchedSettings settings;
  FixedClock clock{{2031, 4, 5, 6, 7, 8}};
  RunContext run{prompt, reader, settings, clock, "/"};
  ViewState view;
  RecordingControl control{64, 48, 1, [](const std::string&, bool, bool) { return std::optional<FontFile>(); }};
  ClassGl scene{control, run.lists, view, prompt, clock};
  MainState main;
  PlotControls controls{scene, main};
  ToPlotForm form{settings, prompt};
  Replot replot{run, view, form, controls, main};
};

}  // namespace orv::testing
