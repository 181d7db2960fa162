#pragma once

#include <string>

#include "analysis/effect_phases.h"
#include "analysis/run_driver.h"
#include "model/comm_excel.h"

namespace orv {

// Where the window's plots come from.
enum class PlotSource { Demo, Workbook, PlotFile };

// Runs, re-plots and plot files of the window: what is read, in which order, and how its faults are told. Nothing
// leaves it but ProgramEnd.
class MainRun {
 public:
  MainRun(RunContext& run, PlotSelection& selection, std::string dataFolder);

  // Chooses the source of the next full run; the file's content decides between workbook and plot file.
  void Choose(const std::string& file);
  void ChooseDemo() {
    source_ = PlotSource::Demo;
    file_.clear();
  }
  // The plot file in force; empty for a workbook.
  std::string LastTextFile() const;
  PlotSource Source() const { return source_; }
  const std::string& File() const { return file_; }
  // Started with a plot file: the menus stay hidden.
  int FileMode() const { return FileMode_; }
  void SetFileMode() { FileMode_ = 1; }

  // Reads the chosen source and shows it: a model after the selection of its plot, or a plot file. False when nothing
  // new is shown.
  bool CommExcelRun();
  // Shows the requested plot from the data of the last run.
  bool Replot();
  // Fills the lists with the sample plot, without a word.
  bool LoadSample(PointLists& lists);

  // The workbook that a run has read last; empty before.
  const std::string& WorkbookRead() const { return workbookRead_; }

 private:
  bool RunModel();
  bool ReadPlot(const std::string& file, PointLists& lists);
  void Tell(const std::string& text, const std::string& title);
  template <class Work>
  bool Guarded(Work&& work);
  std::string DemoFile() const { return dataFolder_ + "OrvValisDemo.xls"; }

  RunContext& run_;
  PlotSelection& selection_;
  std::string dataFolder_;
  EffectPhases phases_;
  PlotSource source_ = PlotSource::Demo;
  std::string file_;
  std::string workbookRead_;
  int FileMode_ = 0;
};

}  // namespace orv
