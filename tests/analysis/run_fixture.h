#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/run_driver.h"
#include "model/memory_sheet.h"
#include "support/model_text.h"
#include "support/scripted_dialogs.h"
#include "support/workbook_writer.h"

namespace orv::testing {

inline const char* const kAbortText = "Do you want to abort? See Hallam if the error cannot be solved ";

// Answers of the selection of plots, in order; the last one is repeated.
class ScriptedSelection : public PlotSelection {
 public:
  PlotChoice Select(const std::string& caption, const RunContext& run) override {
    captions.push_back(caption);
    labelsSeen = run.ResultLabels;
    const PlotChoice choice = choices.front();
    if (choices.size() > 1) choices.erase(choices.begin());
    return choice;
  }
  std::vector<PlotChoice> choices = {{13, "", {}}};
  std::vector<std::string> captions;
  std::vector<std::string> labelsSeen;
};

// Writes down which phase comes when, and what stands in the arrays by then.
class RecordingPhases : public RunPhases {
 public:
  void ClearView(RunContext& run) override { Note("ClearView", run); }
  void PotentialTable(RunContext& run) override { Note("PotentialTable", run); }
  void RotPercentTable(RunContext& run) override { Note("RotPercentTable", run); }
  void ShowRotationList(RunContext& run) override { Note("ShowRotationList", run); }
  void aSpaceApplicationEffectHEATFLUX(RunContext& run) override { Note("HEATFLUX", run); }
  void aSpaceApplicationEffectSPUTTERING(RunContext& run) override { Note("SPUTTERING", run); }
  void PlasmaEffect(RunContext& run) override { Note("PlasmaEffect", run); }
  void FillPointLists(RunContext& run) override { Note("FillPointLists", run); }
  void WriteReports(RunContext& run) override { Note("WriteReports", run); }

  struct Moment {
    std::string phase;
    double IndexPlot = 0;
    int RotatingPrimitive = 0;  // as geometry has it
    double distance = 0, density = 0, shadow = 0;
    std::string caseLine;
    bool traceExists = false;
  };
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Moment& m : moments) names.push_back(m.phase);
    return names;
  }
  bool Has(const std::string& phase) const { return Find(phase) != nullptr; }
  const Moment* Find(const std::string& phase) const {
    for (const Moment& m : moments) {
      if (m.phase == phase) return &m;
    }
    return nullptr;
  }

  std::vector<Moment> moments;
  int watched = 2;  // the primitive whose cell (1, 1) is noted
  std::string failing;
  FailureNumber failure = FailureNumber::Overflow;

 private:
  void Note(const std::string& phase, RunContext& run) {
    Moment m;
    m.phase = phase;
    m.IndexPlot = run.plot.IndexPlot;
    m.RotatingPrimitive = run.geometry.rotation.RotatingPrimitive;
    const CellBlock& data = run.cells.CellData;
    if (data.primitives() >= watched) {
      m.distance = data(watched, 1, 1, 8);
      m.density = data(watched, 1, 1, 13);
      m.shadow = data(watched, 1, 1, 20);
    }
    m.caseLine = run.record.CaseLine;
    m.traceExists = std::ifstream(run.OutputFolder + "OrvTraceResults.txt").good();
    moments.push_back(m);
    if (phase == failing) Raise(failure);
  }
};

class RunFixture : public ::testing::Test {
 protected:
  // Reads the sheet as a session does.
  void Load() {
    MemorySheet sheet;
    sheet.Attach();
    sheet.SetText({1, 1}, text.Sheet());
    sheet.Activate({3, 2});
    CommExcel reading(sheet, reader, clock);
    CommExcel::Session source;
    reading.Read(run.model, source);
  }
  bool Run(double plot = 13, const std::string& options = "") {
    selection.choices = {{plot, options, {}}};
    return a_SpaceApplication(run, selection, phases);
  }
  bool LoadAndRun(double plot = 13, const std::string& options = "") {
    Load();
    return Run(plot, options);
  }
  bool Replot(double plot) {
    run.plot.IndexPlotRequest = plot;
    return a_SpaceApplication(run, selection, phases);
  }
  std::string TraceText() const {
    std::ifstream in(run.OutputFolder + "OrvTraceResults.txt", std::ios::binary);
    std::ostringstream text8;
    text8 << in.rdbuf();
    return text8.str();
  }
  double Data(int p, int i, int j, int q) const { return run.cells.CellData(p, i, j, q); }

  TemporaryFolder folder;
  ModelText text;
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  MemorySettings settings;
  FixedClock clock{{2031, 4, 5, 6, 7, 8}};
  RunContext run{prompt, reader, settings, clock, folder.path().string() + "/"};
  ScriptedSelection selection;
  RecordingPhases phases;
};

}  // namespace orv::testing
