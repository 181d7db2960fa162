#pragma once

#include <string>

#include "analysis/effect_phases.h"
#include "analysis/run_driver.h"
#include "model/comm_excel.h"
#include "model/plot_reading.h"
#include "window/excel_watch.h"

namespace orv {

// Where the window's plots come from.
enum class PlotSource { Demo, Workbook, PlotFile, Spreadsheet };

// Runs, re-plots and plot files of the window: what is read, in which order, and how its faults are told. Nothing
// leaves it but ProgramEnd.
class MainRun {
 public:
  // `link` is the running spreadsheet; all outlive this object.
  MainRun(RunContext& run, PlotSelection& selection, std::string dataFolder, Spreadsheet& link);

  // The watch that shares the session; it decides whether a chosen file still goes before the spreadsheet.
  void SetWatch(ExcelWatch& watch) { watch_ = &watch; }
  CommExcel::Session& Session() { return session_; }

  // Chooses the source of the next full run; the file's content decides between workbook and plot file.
  void Choose(const std::string& file);
  void ChooseDemo();
  // Where the sample plot and the last plot are from now on, with a trailing separator.
  void SetDataFolder(const std::string& folder) { dataFolder_ = folder; }
  // The text file that was read or written last: a plot file, or the trace of a run. Empty before.
  const std::string& LastTextFile() const { return lastText_; }
  // What is shown, or what was chosen since.
  PlotSource Source() const { return source_; }
  const std::string& File() const { return file_; }
  // Started with a plot file: the menus stay hidden.
  int FileMode() const { return session_.FileMode; }
  void SetFileMode() { session_.FileMode = 1; }

  // Finds the source, reads it and shows it: a model after the selection of its plot, a range plot or a plot file.
  // False when nothing new is shown.
  bool CommExcelRun();
  // The spreadsheet went away or was busy during the last full run.
  bool LinkLost() const { return linkLost_; }
  // What the last full run has plotted from ranges; empty for anything else.
  const std::string& SpecificationPlotted() const { return specificationPlotted_; }
  // Shows the requested plot from the data of the last run.
  bool Replot();
  // Fills the lists with the sample plot, without a word.
  bool LoadSample(PointLists& lists);

  // The workbook that a run has read last; empty before.
  const std::string& WorkbookRead() const { return workbookRead_; }

 private:
  struct Shown {
    PlotSource source = PlotSource::Demo;
    std::string file;
    bool fileHoldsPlot = false;
  };

  bool Show(RunSource source);
  bool ReadSpreadsheet(Spreadsheet& sheet);
  bool ReadWorkbook();
  bool RunModel(ModelData&& model);
  void TakeShown();  // the source of what is shown
  bool PlotRanges(Spreadsheet& sheet);
  bool ShowPlotFile();
  CommExcel::Outcome ReadOrEnd(CommExcel& reading, ModelData& model, bool linked);
  PlotFileNames PlotFiles(const std::string& TraceFile) const;
  void Tell(const std::string& text, const std::string& title);
  template <class Work>
  bool Guarded(Work&& work);
  std::string DemoFile() const { return dataFolder_ + "OrvValisDemo.xls"; }

  RunContext& run_;
  PlotSelection& selection_;
  std::string dataFolder_;
  Spreadsheet& link_;
  ExcelWatch* watch_ = nullptr;
  CommExcel::Session session_;
  EffectPhases phases_;
  PlotSource source_ = PlotSource::Demo;
  std::string file_;
  bool fileHoldsPlot_ = false;  // otherwise it is a workbook
  Shown shown_;
  std::string workbookRead_;
  std::string lastText_;
  std::string specificationPlotted_;
  bool linkLost_ = false;
};

}  // namespace orv
