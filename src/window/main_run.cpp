#include "window/main_run.h"

#include <new>

#include "model/demo_plot.h"
#include "model/file_workbook.h"
#include "model/range_sending.h"
#include "numerics/paths.h"

namespace orv {

MainRun::MainRun(RunContext& run, PlotSelection& selection, std::string dataFolder, Spreadsheet& link)
    : run_(run), selection_(selection), dataFolder_(std::move(dataFolder)), link_(link) {}

void MainRun::Tell(const std::string& text, const std::string& title) {
  run_.dialogs().Tell(text, title, Icon::Critical);
}

template <class Work>
bool MainRun::Guarded(Work&& work) {
  try {
    return work();
  } catch (const WorkbookError& error) {
    Tell(error.what(), "Workbook");
  } catch (const ModelNotFound&) {
    // The question about another sheet has told it.
  } catch (const ModelTooLarge& error) {
    Tell(error.message, "Model");
  } catch (const RuntimeFailure& failure) {
    // The watch knows what a spreadsheet that went away means.
    if (session_.watchRun) throw;
    Tell(failure.description(), "Error faute CommExcel");
  } catch (const std::bad_alloc&) {
    Tell("The memory of this machine does not hold this model.", "Model");
  }
  return false;
}

void MainRun::Choose(const std::string& file) {
  file_ = file;
  fileHoldsPlot_ = HoldsPlot(file);
  source_ = fileHoldsPlot_ ? PlotSource::PlotFile : PlotSource::Workbook;
  session_.FileMode = 0;
  watch_->ChooseFile();
}

void MainRun::ChooseDemo() {
  source_ = PlotSource::Demo;
  file_.clear();
  session_.FileMode = 0;
  watch_->ChooseDemo();
}

bool MainRun::CommExcelRun() {
  linkLost_ = false;
  specificationPlotted_.clear();
  const ExcelWatch::Run hold(*watch_);
  return Guarded([&] {
    ChosenFile chosen;
    chosen.present = !file_.empty();
    chosen.workbook = !fileHoldsPlot_;
    const bool asked = session_.FileMode == 1 || session_.SourceMode >= 1 || watch_->FileChosen();
    const RunSource source = SourceOfRun(session_, chosen, watch_->FileChosen(), !asked && watch_->IsThere());
    const bool shown = Show(source);
    if (shown) shown_ = {source_, file_, fileHoldsPlot_};
    return shown;
  });
}

bool MainRun::Show(RunSource source) {
  switch (source) {
    case RunSource::Spreadsheet:
      return ReadSpreadsheet(link_);
    case RunSource::Workbook:
      return ReadWorkbook();
    case RunSource::PlotFile:
    case RunSource::Demo:
      return ShowPlotFile();
  }
  return false;
}

// A workbook file is read as a spreadsheet is; reading it tells nothing of the one that runs.
bool MainRun::ReadWorkbook() {
  FileWorkbook workbook(PathOf(file_), run_.reader.locale());
  for (const std::string& warning : workbook.warnings()) run_.dialogs().Log(warning);
  const int linkReady = session_.LinkReady;
  source_ = PlotSource::Workbook;
  const bool shown = ReadSpreadsheet(workbook);
  session_.LinkReady = linkReady;
  return shown;
}

bool MainRun::ReadSpreadsheet(Spreadsheet& sheet) {
  CommExcel reading(sheet, run_.reader, run_.clock);
  ModelData model;
  const bool linked = &sheet == &link_;
  const CommExcel::Outcome outcome = ReadOrEnd(reading, model, linked);
  const auto took = [&] {
    if (!linked) return;
    source_ = PlotSource::Spreadsheet;
    file_.clear();
  };
  switch (outcome) {
    case CommExcel::Outcome::Model:
      took();
      return RunModel(std::move(model));
    case CommExcel::Outcome::RangePlot:
      if (!PlotRanges(sheet)) {
        linkLost_ = linked && !watch_->Answers();
        return false;
      }
      took();
      return true;
    case CommExcel::Outcome::PlotFile:
      return Show(session_.SourceMode == 1 ? RunSource::Demo : RunSource::PlotFile);
    case CommExcel::Outcome::Nothing:
      linkLost_ = linked && !watch_->Answers();
      return false;
  }
  return false;
}

// Who names no other sheet of the running spreadsheet ends the program, as the question says. The sheet of a workbook
// file was the user's choice, and what is shown stays.
CommExcel::Outcome MainRun::ReadOrEnd(CommExcel& reading, ModelData& model, bool linked) {
  try {
    return reading.Read(model, session_);
  } catch (const ModelNotFound&) {
    if (linked) throw ProgramEnd{};
    throw;
  }
}

// A selection that is cancelled leaves everything as it was: the model whose results are shown, and its file.
bool MainRun::RunModel(ModelData&& model) {
  const bool hadResults = run_.record.finished;
  // That nothing at all was found is told by the run itself.
  if (!model.DatabaseIsEmpty() && !model.DatabaseHasTables()) {
    if (hadResults) TakeShown();
    Tell("The sheet \"" + model.SheetName + "\" of the workbook \"" + model.WorkbookName +
             "\" holds no database: nothing was computed.",
         "Workbook");
    return false;
  }
  ModelData before = std::move(run_.model);
  run_.model = std::move(model);
  workbookRead_ = file_;
  const bool computed = a_SpaceApplication(run_, selection_, phases_);
  if (computed) lastText_.clear();  // no plot file holds what is shown
  if (!computed && hadResults && run_.record.finished) {
    run_.model = std::move(before);
    TakeShown();
  }
  return computed;
}

void MainRun::TakeShown() {
  source_ = shown_.source;
  file_ = shown_.file;
  fileHoldsPlot_ = shown_.fileHoldsPlot;
}

bool MainRun::PlotRanges(Spreadsheet& sheet) {
  RangeCopy copy;
  copy.specification = session_.specification;
  copy.MainKeyword = session_.MainKeyword;
  copy.ExcelBusyRetrynumber = &session_.ExcelBusyRetrynumber;
  // A plot file that the user has opened is no place for another plot.
  const PlotFileNames names = PlotFiles(dataFolder_ + kLastPlotName);
  const PlotReading reading = SendRangePlot(sheet, copy, names, run_.lists, run_.reader, run_.clock);
  if (reading.source == PlotReading::Source::Nothing) return false;
  // Ranges too narrow for a plot leave the last one.
  if (reading.header.specification == copy.specification) specificationPlotted_ = copy.specification;
  workbookRead_ = file_;
  lastText_ = reading.file.empty() ? dataFolder_ + kLastPlotName : reading.file;
  // The results of a model belong to another picture now.
  run_.record.finished = false;
  return true;
}

PlotFileNames MainRun::PlotFiles(const std::string& TraceFile) const {
  PlotFileNames names;
  names.TraceFile = TraceFile;
  names.DemoFile = DemoFile();
  names.SourceMode = session_.SourceMode == 1 ? 1 : 0;
  return names;
}

bool MainRun::Replot() {
  return Guarded([&] { return a_SpaceApplication(run_, selection_, phases_); });
}

// The plot file in force; without one the sample plot, which the user is told.
bool MainRun::ShowPlotFile() {
  const bool chosen = fileHoldsPlot_ && !file_.empty();
  const PlotFileNames names = PlotFiles(chosen ? file_ : dataFolder_ + kLastPlotName);
  const PlotReading reading = ReadPlotFile(names, run_.lists, run_.reader, session_.MainKeyword);
  if (reading.source == PlotReading::Source::Nothing) return false;
  if (!chosen) file_.clear();
  source_ = reading.source == PlotReading::Source::Demo ? PlotSource::Demo : PlotSource::PlotFile;
  lastText_ = reading.file;
  // The results of a model belong to another picture now.
  run_.record.finished = false;
  return true;
}

bool MainRun::LoadSample(PointLists& lists) {
  return Guarded([&] {
    EnsureDemoPlot(DemoFile());
    PlotFileNames names;
    names.TraceFile = names.DemoFile = DemoFile();
    lastText_ = names.DemoFile;
    return ReadPlotFile(names, lists, run_.reader, session_.MainKeyword).source != PlotReading::Source::Nothing;
  });
}

}  // namespace orv
