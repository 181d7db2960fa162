#include "analysis/run_driver.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <optional>

#include "analysis/case_trace.h"
#include "analysis/display_lists.h"
#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "analysis/run_block.h"
#include "geometry/kept_shadows.h"
#include "model/sheet_grid.h"
#include "numerics/number_format.h"
#include "numerics/text.h"
#include "plume/thruster_angles.h"

namespace orv {
namespace {

constexpr int kLastCellQuantity = kQuantities;
constexpr double kViewPoints = 1048575;
constexpr int kPointsPerCell = 7;
constexpr int kSmallestArray = 5;
constexpr double kShadowsOfRunBefore = 2;  // NotHidden
constexpr double kMaxCells = 2e7;          // all planes of a run then take about 8 GB
constexpr double kMaxGrid = 2e8;           // addressed for each primitive, mostly without memory behind it

// What the title of a plot begins with.
std::string TitleStart(const PlotState& plot) {
  if (!(plot.MaiOrigine > 0)) return "OrvValis ";
  return "OrvValis MAIORIGINE= " + FormatNumber(plot.MaiOrigine, "#") + " ";
}

// One full run; its members are the steps in their order.
class FullRun {
 public:
  FullRun(RunContext& run, PlotSelection& selection, RunPhases& phases)
      : run_(run), selection_(selection), phases_(phases), block_(run.prompt, run.record.ignoreFailures, "", "") {}

  bool Execute() {
    if (!Prepare() || !ChoosePlot()) {
      RestoreTexts();
      return false;
    }
    run_.record.finished = false;
    ++run_.record.RunNumber;
    run_.record.phaseSeconds.clear();
    run_.record.files.clear();
    run_.record.filesSkipped.clear();
    run_.record.PlasmaText.clear();
    run_.record.plasma = {};
    run_.record.SputterText.clear();
    run_.record.ignoreFailures = false;
    Phase("sizing", [&] { SizeArrays(); });
    Phase("geometry", [&] { BuildGeometry(); });
    Phase("rotation tables", [&] { ReadRotationTables(); });
    Phase("thruster frame", [&] { FindThruster(); });
    Phase("angles", [&] { ComputeAngles(); });
    Phase("database", [&] { ReadDatabase(); });
    Phase("plume", [&] { ComputePlume(); });
    Phase("ray tracing", [&] { TraceRays(); });
    Phase("heat flux", [&] { block_([&] { phases_.aSpaceApplicationEffectHEATFLUX(run_); }); });
    Phase("sputtering", [&] { ComputeSputtering(); });
    Phase("display lists", [&] { Display(); });
    Phase("reports", [&] { Report(); });
    run_.record.finished = true;
    run_.dialogs().Progress("done", 1);
    return true;
  }

 private:
  template <class Work>
  void Phase(const char* name, Work&& work) {
    run_.dialogs().Progress(name, static_cast<double>(phasesDone_++) / 12);
    const double begin = run_.clock.Seconds();
    work();
    run_.record.phaseSeconds.emplace_back(name, run_.clock.Seconds() - begin);
  }

  ModelData& model() { return run_.model; }
  PlotState& plot() { return run_.plot; }
  void Tell(const std::string& text, const std::string& title, Icon icon = Icon::Information) {
    run_.dialogs().Tell(text, title, icon);
  }
  void FillLabels() { FillResultLabels(run_.materials.MaterialsUsed, run_.ResultLabels, run_.prompt); }
  void CollectMaterials(int thruster) {
    run_.materials.MaterialsUsed = CollectMaterialsUsed(model().ModelCells, model().NumberOfPrimitives, thruster, 1,
                                                        run_.materials.NumberOfMaterialsUsed);
  }

  // A run that is given up leaves the texts of the one before.
  void RestoreTexts() {
    run_.PrimitiveNames = std::move(namesBefore_);
    run_.ResultLabels = std::move(labelsBefore_);
    run_.materials.MaterialsUsed = std::move(materialsBefore_);
    run_.materials.NumberOfMaterialsUsed = materialCountBefore_;
    plot().PlotOptionC = optionBefore_;
  }

  bool Prepare() {
    namesBefore_ = run_.PrimitiveNames;
    labelsBefore_ = run_.ResultLabels;
    materialsBefore_ = run_.materials.MaterialsUsed;
    materialCountBefore_ = run_.materials.NumberOfMaterialsUsed;
    optionBefore_ = plot().PlotOptionC;
    run_.PrimitiveNames.assign(static_cast<std::size_t>(model().NumberOfPrimitives) + kSpareModelRows + 1, "");
    if (model().DatabaseIsEmpty()) {
      Tell("Comm Excel : Syncho with Excel malfunction. To re do  ", "Warning", Icon::Warning);
      return false;
    }
    CollectMaterials(ThrusterRow());
    FillLabels();
    const std::string compatibility = ReadSetting(run_.settings, kSectionUseOrv, "PlotOptionC");
    plot().PlotOptionC = run_.reader.ReadNumber(compatibility);
    return true;
  }

  bool ChoosePlot() {
    const PlotChoice choice = selection_.Select(" Model: " + model().ModelId, run_);
    plot().IndexPlotRequest = choice.IndexPlotRequest;
    if (plot().IndexPlotRequest == 0) return false;
    plot().PlotOptionText = LeftCharacters(choice.PlotOptionText, 64);
    plot().LogScale = choice.LogScale.value_or(model().directives.LogScale);
    plot().IndexPlot = plot().IndexPlotRequest;
    block_([&] { run_.settings.Write(std::string(kSectionUseOrv), "LastRun", NumberText(plot().IndexPlot)); });
    plot().IndexPlotRequest = 0;
    plot().PreviousIndexPlot = plot().IndexPlot;
    plot().MaiOrigine = 0;
    plot().ListPrimitive = 0;
    plot().FullListing = 0;
    ReadPlotOption(plot(), run_.reader);
    SwitchRedeposition();
    block_([&] { phases_.ClearView(run_); });
    return true;
  }

  void SwitchRedeposition() {
    const double index = plot().IndexPlot;
    plot().RedepositionOn = index >= 90 ? 1 : 0;
    KeepRecto();
    if (index >= 90) {
      ForceRecto(
          "Only the recto sides are considered when redeposition computations are performed. Use the directive \"re\" "
          "or \"recto 1\" for not display this message, see User's Manual");
    }
    plot().CleaningOn = index >= 95 ? 1 : 0;
    if (index >= 95) {
      ForceRecto(
          "Only the recto sides are considered when Cleaning of redeposition computations are performed. Use the "
          "directive \"re\" or \"recto 1\" for not display this message, see User's Manual");
    }
  }

  // A run that had to turn to the recto sides leaves the next ones there, until a directive line says otherwise.
  void KeepRecto() {
    if (Contains(UpperCase(model().DirectiveLine), "RE")) plot().RectoForced = false;
    if (plot().RectoForced) model().directives.RectoOnly = 1;
  }

  void ForceRecto(const char* text) {
    if (model().directives.RectoOnly != 0) return;
    model().directives.RectoOnly = 1;
    plot().RectoForced = true;
    Tell(text, "Information");
  }

  // The cell of a specification, for messages.
  std::string PlaceOfRow(int k) {
    return "Cell " + CellName({model().keyword.row + k, model().keyword.column + 1}) + ", model row " +
           std::to_string(k) + " (\"" + LeftCharacters(model().ModelCells(k, kSpecColumn), 80) + "\")";
  }

  void SizeArrays() {
    Cells& cells = run_.cells;
    double largestI = 0;
    double largestJ = 0;
    cells.TotalCells = 0;
    PrimitiveSpec spec;
    for (int k = 1; k <= model().NumberOfPrimitives; ++k) {
      run_.reader.setPlace(PlaceOfRow(k));
      const bool parsed =
          block_([&] { ParsePrimitive(model().ModelCells, k, kSpecColumn, run_.PrimitiveNames, run_.reader, spec); });
      run_.reader.setPlace("");
      if (!parsed) run_.prompt("_" + PlaceOfRow(k) + ": there is no type and no number");
      cells.TotalCells += spec.Nx * spec.Ny;
      largestI = std::max(largestI, spec.Nx);
      largestJ = std::max(largestJ, spec.Ny);
      if (!(cells.TotalCells <= kMaxCells) || !(largestI <= kMaxCells) || !(largestJ <= kMaxCells) ||
          !(largestI * largestJ <= kMaxGrid)) {
        throw ModelTooLarge{PlaceOfRow(k) + " asks for " + NumberText(spec.Nx) + " x " + NumberText(spec.Ny) +
                            " cells, more than this program can hold."};
      }
    }
    if (cells.TotalCells * kPointsPerCell > kViewPoints) {
      Tell("Risks of memory overflow for the 3D views. Some parts of the last primitives may be not shown properly",
           "Warning for Huge model", Icon::Warning);
    }
    cells.MaxCellsI = std::max(static_cast<int>(ToIndex(largestI)), kSmallestArray);
    cells.MaxCellsJ = std::max(static_cast<int>(ToIndex(largestJ)), kSmallestArray);
    const int primitives = model().NumberOfPrimitives + kSpareModelRows;
    keptShadows_.reset();
    if (TakesShadowsOver()) keptShadows_.emplace(cells);
    try {
      cells.CellData.Size(primitives, cells.MaxCellsI, cells.MaxCellsJ, kLastCellQuantity);
      cells.CellCorners.Size(primitives, cells.MaxCellsI, cells.MaxCellsJ, kLastCellQuantity);
      cells.BorderCorners.Size(model().NumberOfPrimitives + 20, cells.MaxCellsI, kLastCellQuantity);
    } catch (const std::bad_alloc&) {
      throw ModelTooLarge{"The model has " + std::to_string(model().NumberOfPrimitives) + " primitives of up to " +
                          NumberText(largestI) + " x " + NumberText(largestJ) +
                          " cells, more than this program can hold."};
    }
  }

  void BuildGeometry() {
    run_.geometry = GeometryState{};
    const GeometryInput input{model().ModelCells, model().NumberOfPrimitives, plot().PlotOptionC};
    block_([&] { a_SpaceApplicationGeometry(input, run_.PrimitiveNames, run_.cells, run_.geometry, run_.reader); });
    run_.rotation.RotatingPrimitive = run_.geometry.rotation.RotatingPrimitive;
    run_.rotation.RotatingName = run_.rotation.RotatingPrimitive > 0
                                     ? run_.PrimitiveNames[static_cast<std::size_t>(run_.rotation.RotatingPrimitive)]
                                     : "";
  }

  void ReadRotationTables() {
    block_([&] { phases_.PotentialTable(run_); });
    block_([&] { phases_.RotPercentTable(run_); });
    const int rotating = run_.rotation.RotatingPrimitive;
    plot().AutoRotationPlot = IsAutoRotationPlot(plot().IndexPlot);
    plot().SputterRotation = IsSputterRotationPlot(plot().IndexPlot);
    plot().AutomaticRotationActive = plot().AutoRotationPlot ? rotating : 0;
    plot().SputterRotationActive = plot().SputterRotation ? rotating : 0;
    if (plot().SputterRotationActive != 0) block_([&] { phases_.ShowRotationList(run_); });
    // Any other plot does not turn the primitive.
    if (plot().AutomaticRotationActive == 0 && plot().SputterRotationActive == 0) {
      run_.geometry.rotation.RotatingPrimitive = 0;
    }
  }

  int ThrusterRow() {
    for (int k = 1; k <= model().NumberOfPrimitives; ++k) {
      if (PrimitiveTypeAsTyped(model().ModelCells, k, kSpecColumn) == "thr") return k;
    }
    return 0;
  }

  void FindThruster() {
    const int found = ThrusterRow();
    run_.thruster.ThrusterPrimitive = found;
    if (found == 0) {
      Tell(
          "The model do not have any thrusters, please check the data and restart... The tool continue, but limited to "
          "geometry checks only ",
          "Input Data Critical Error", Icon::Critical);
      run_.prompt.AbortQuestion();
    }
    if (model().NumberOfPrimitives > 0) {
      block_([&] { BuildThrusterFrame(run_, found == 0 ? 1 : found); });
    }
  }

  void ComputeAngles() {
    AnglesInput input;
    input.NumberOfPrimitives = model().NumberOfPrimitives;
    input.numberPrimWithVolumic = run_.cells.numberPrimWithVolumic;
    input.ThrusterPrimitive = run_.thruster.ThrusterPrimitive;
    input.PlotOptionC = plot().PlotOptionC;
    block_([&] { aSpaceApplicationAnglesThrusters(run_.cells, run_.thruster.frame, input, run_.prompt); });
  }

  void ReadDatabase() {
    ThrusterState& thruster = run_.thruster;
    const Database& database = model().database;
    thruster.ThrusterData = EmptyThrusterData();
    thruster.ThrusterName.clear();
    run_.rowsUsed.Clear();
    if (thruster.ThrusterPrimitive != 0) {
      thruster.ThrusterName = Trim(model().ModelCells(thruster.ThrusterPrimitive, 1));
      block_([&] {
        aSpaceApplicationthrusterData(database, thruster.ThrusterName, model().constants, thruster.ThrusterData,
                                      run_.rowsUsed, run_.reader);
      });
    }
    const TableLocation table7 = LocateTable(database, 7, "", run_.prompt);
    const TableLocation table8 = LocateTable(database, 8, "", run_.prompt);
    const TableLocation table9 = LocateTable(database, 9, "", run_.prompt);
    CollectMaterials(thruster.ThrusterPrimitive);
    FillLabels();
    run_.rowsUsed.Grow(4 * run_.materials.NumberOfMaterialsUsed + 100);
    block_([&] {
      aSpaceApplicationDataBaseMATERIALS(database, table7, table8, table9, thruster.ThrusterData, run_.materials,
                                         run_.rowsUsed, run_.reader);
    });
  }

  void ComputePlume() {
    run_.thruster.PlumeLimitAngle = 180;
    if (run_.thruster.ThrusterPrimitive == 0) return;
    PlumeInput input;
    input.numberPrimWithVolumic = run_.cells.numberPrimWithVolumic;
    input.ThrusterPrimitive = run_.thruster.ThrusterPrimitive;
    PlumeResult result;
    block_([&] {
      aSpaceApplicationThrusterPLUME(run_.cells, run_.thruster.ThrusterData, model().constants, input, result,
                                     run_.prompt);
    });
    run_.thruster.PlumeLimitAngle = result.PlumeLimitAngle;
  }

  bool TakesShadowsOver() {
    return model().directives.NotHidden == kShadowsOfRunBefore && run_.rayTracing.computedOnce;
  }

  void TraceRays() {
    if (TakesShadowsOver()) {
      if (keptShadows_ && keptShadows_->Fits(run_.cells)) {
        keptShadows_->PutBack(run_.cells);
      } else {
        run_.rayTracing.computedOnce = false;  // those of another model are of no use
      }
    }
    RayTracingInput input;
    input.NumberOfPrimitives = model().NumberOfPrimitives;
    input.numberPrimWithVolumic = run_.cells.numberPrimWithVolumic;
    input.ThrusterPrimitive = run_.thruster.ThrusterPrimitive;
    input.OnlyPrimitive = 0;
    input.PlumeLimitAngle = run_.thruster.PlumeLimitAngle;
    input.NotHidden = model().directives.NotHidden;
    run_.record.rays = RayTracingReport{};
    block_([&] { a_SpaceApplicationRayTrac(run_.cells, input, run_.rayTracing, run_.record.rays, run_.prompt); });
    run_.record.ShadowStatusText = run_.record.rays.ShadowStatusText;
    run_.dialogs().Status(run_.record.ShadowStatusText);
  }

  void ComputeSputtering() {
    if (model().directives.SpectrumMode != -1 && run_.geometry.rotation.RotatingPrimitive == 0) {
      Tell("The Spectrum feature works only for a rotating primitive, click on OK.", "Case not supported",
           Icon::Critical);
      run_.prompt.AbortQuestion();
    } else {
      block_([&] { phases_.aSpaceApplicationEffectSPUTTERING(run_); });
    }
    if (run_.cells.numberPrimWithVolumic != model().NumberOfPrimitives) {
      block_([&] { phases_.PlasmaEffect(run_); });
    }
  }

  void Display() {
    plot().PlotTitle = TitleStart(plot());
    plot().FactorScale = kAnalysisScale;
    plot().PenUpMode = true;
    run_.geometry.rotation.RotatingPrimitive = run_.rotation.RotatingPrimitive;
    run_.record.PlotReportFile = model().WorkbookFolder + PlotReportName(run_);
    run_.record.ReportText = ReportText(run_, run_.clock.Seconds() - model().StartTime);
    DisplayLists(run_, phases_);
    // The plot of the volume itself has told it.
    if (!Contains(plot().PlotTitle, run_.record.PlasmaText)) plot().PlotTitle += run_.record.PlasmaText;
    run_.lists.Title = plot().PlotTitle;
    const std::string traceFile = run_.OutputFolder + "OrvTraceResults.txt";
    block_.setFiles(run_.record.PlotReportFile, traceFile);
    const bool printed = block_([&] { PrintCaseLine(run_); });
    if (!printed) run_.prompt("_The case line could not be added to " + traceFile);
  }

  void Report() {
    const double scale = run_.reader.ReadPointNumber(ReadSetting(run_.settings, kSectionUseOrv, "HeatFluxScale"));
    if (!(scale > 0)) {
      block_([&] { run_.settings.Write(std::string(kSectionUseOrv), "HeatFluxScale", "0.1"); });
    }
    if (model().directives.SilentMode != 1) block_([&] { phases_.WriteReports(run_); });
    run_.record.PlotButtonTip = "Model: \"" + Trim(model().ModelTitle) + "\" Click here to re-Plot";
  }

  RunContext& run_;
  PlotSelection& selection_;
  RunPhases& phases_;
  RunBlock block_;
  int phasesDone_ = 0;
  std::vector<std::string> namesBefore_;
  std::vector<std::string> labelsBefore_;
  std::vector<std::string> materialsBefore_;
  int materialCountBefore_ = 0;
  double optionBefore_ = 0;
  std::optional<KeptShadows> keptShadows_;
};

}  // namespace

void ReadPlotOption(PlotState& plot, CellText& reader) {
  const std::string text = plot.PlotOptionText;
  if (text.empty()) return;
  const std::string letter = UpperCase(text.substr(0, 1));
  const double number = reader.ReadNumber(Trim(std::string_view(text).substr(1)));
  if (letter == "L") plot.ListPrimitive = number;
  if (letter == "C") plot.PlotOptionC = number;
  if (letter == "F" && number > 0) plot.MaiOrigine = number;
  if (letter == "G") plot.FullListing = 1;
}

void BuildThrusterFrame(RunContext& run, int primitive) {
  const CellBlock& data = run.cells.CellData;
  ErrorPrompt& prompt = run.prompt;
  const auto complain = [&](const char* text) {
    prompt.dialogs().Tell(text, "", Icon::Critical);
    prompt.AbortQuestion();
  };
  ThrusterState& thruster = run.thruster;
  ThrusterFrame& frame = thruster.frame;
  frame = ThrusterFrame{};
  thruster.ThrusterArea = data(primitive, 0, 0, 1) * data(primitive, 0, 0, 2);
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    frame.axiT(axis) = data(primitive, 1, 1, axis + 4);
    frame.ThrusterPosition(axis) = data(primitive, 1, 1, axis);
  }
  Vector3 reference(1, 0, 0);
  if (std::abs(vDot(reference, frame.axiT)) > 0.9) reference = Vector3(0, 1, 0);
  Vector3 cross;
  double length = 0;
  vcross(frame.axiT, reference, cross);
  vUnit(cross, frame.axDeclin, length);
  if (length == 0) complain("Error Normalise1 axDeclin(), axDeclin(), errnorm:  If errnorm = 0 ");
  vcross(frame.axDeclin, frame.axiT, cross);
  vUnit(cross, frame.AxAzimuth, length);
  if (length == 0) complain("Error Normalise1 AxAzimuth(), AxAzimuth(), errnorm: If errnorm = 0  ");
  if (std::abs(vNorm(frame.axiT) - 1) > 0.000001) complain("Error  If Abs(normAxiT - 1) > 0.000001   ");
}

void DisplayLists(RunContext& run, RunPhases& phases) {
  RunBlock block(run.prompt, run.record.ignoreFailures, run.record.PlotReportFile, run.record.TraceFile);
  FillDisplayLists(run);
  block([&] { phases.FillPointLists(run); });
  AskCaseText(run);
  std::string& line = run.record.CaseLine;
  line = ComposeCaseLine(run, run.record.ReportText);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
}

bool a_SpaceApplication(RunContext& run, PlotSelection& selection, RunPhases& phases) {
  if (run.plot.IndexPlotRequest != 0 && run.record.finished) {
    run.plot.IndexPlot = run.plot.IndexPlotRequest;
    run.plot.PlotTitle = TitleStart(run.plot);
    DisplayLists(run, phases);
    run.plot.IndexPlotRequest = 0;
    return true;
  }
  return FullRun(run, selection, phases).Execute();
}

}  // namespace orv
