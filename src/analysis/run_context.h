#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/geometry.h"
#include "geometry/ray_tracing.h"
#include "model/comm_excel.h"
#include "model/database.h"
#include "numerics/environment.h"
#include "numerics/settings.h"
#include "plume/effect_context.h"
#include "plume/plume_models.h"
#include "plume/radio_link.h"
#include "plume/thruster_data.h"
#include "view/point_lists.h"

namespace orv {

// What the user asked to see, and what follows from it.
struct PlotState {
  double IndexPlot = 0;
  double IndexPlotRequest = 0;  // not 0: a plot was chosen and not yet taken
  double PreviousIndexPlot = 0;
  std::string PlotOptionText;
  double LogScale = 0;
  double ListPrimitive = 0;
  double PlotOptionC = 0;
  double MaiOrigine = 0;
  int FullListing = 0;
  bool RectoForced = false;  // by a run of redeposition
  int RedepositionOn = 0;
  int CleaningOn = 0;
  bool AutoRotationPlot = false;
  bool SputterRotation = false;
  int AutomaticRotationActive = 0;
  int SputterRotationActive = 0;
  std::string PlotTitle;
  double FactorScale = 1;
  bool PenUpMode = false;
};

// The rotating primitive of the model, kept for the reports while a plot may switch the rotation off.
struct RotationState {
  int RotatingPrimitive = 0;
  std::string RotatingName;
  RotationTables tables;
  int tableColumn = 3;      // column of ModelCells that holds the rotation text
  int potentialColumn = 3;  // column up to which potential texts were searched
};

// The record of a run for its reader.
struct RunRecord {
  std::string CaseText;
  std::string CaseLine;
  std::string TraceFile;       // full name
  std::string PlotReportFile;  // name of the report beside the workbook
  std::string ShadowStatusText;
  std::string PlotButtonTip;
  std::string SputterText;  // averages of a turn, for titles and reports
  std::string PlasmaText;   // effect of the plume on a radio link
  RadioLink plasma;
  std::vector<std::string> files;         // result files written, full names
  std::vector<std::string> filesSkipped;  // result files that could not be written, with the cause
  RayTracingReport rays;
  std::vector<std::pair<std::string, double>> phaseSeconds;  // in order
  std::string ReportText;       // output file and duration of the full run, as the case line ends
  bool ignoreFailures = false;  // the user chose Ignore in this run: no further box
  int RunNumber = 0;            // full runs of this session
  bool finished = false;        // a full run ended: a re-plot may use its data
};

// Everything that a session's runs share. A re-plot uses what the last full run left here.
struct RunContext {
  RunContext(ErrorPrompt& errorPrompt, CellText& cellText, SettingsStore& settingsStore, const Clock& systemClock,
             std::string outputFolder)
      : prompt(errorPrompt),
        reader(cellText),
        settings(settingsStore),
        clock(systemClock),
        OutputFolder(std::move(outputFolder)) {}

  ErrorPrompt& prompt;
  CellText& reader;
  SettingsStore& settings;
  const Clock& clock;
  std::string OutputFolder;  // of the trace file, with a trailing separator

  ModelData model;
  PlotState plot;
  std::vector<std::string> PrimitiveNames;
  std::vector<std::string> ResultLabels;
  Cells cells;
  GeometryState geometry;
  RotationState rotation;
  ThrusterState thruster;
  Materials materials;
  DatabaseRowsUsed rowsUsed;
  RayTracingState rayTracing;
  EffectStores stores;
  TableCache tables;
  RunRecord record;
  PointLists lists;  // of the plot shown

  UserDialogs& dialogs() { return prompt.dialogs(); }

  // The run as the effects see it.
  EffectContext Effects();
};

}  // namespace orv
