#include "window/main_run.h"

#include <fstream>
#include <new>

#include "model/demo_plot.h"
#include "model/file_workbook.h"
#include "model/plot_reading.h"
#include "numerics/paths.h"

namespace orv {
namespace {

constexpr std::size_t kFirstBytes = 4096;

bool HoldsPlot(const std::string& file) {
  std::ifstream in(PathOf(file), std::ios::binary);
  std::string bytes(kFirstBytes, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return IsPlotFile(bytes);
}

}  // namespace

MainRun::MainRun(RunContext& run, PlotSelection& selection, std::string dataFolder)
    : run_(run), selection_(selection), dataFolder_(std::move(dataFolder)) {}

void MainRun::Tell(const std::string& text, const std::string& title) {
  run_.dialogs().Tell(text, title, Icon::Critical);
}

template <class Work>
bool MainRun::Guarded(Work&& work) {
  try {
    return work();
  } catch (const WorkbookError& error) {
    Tell(error.what(), "Workbook");
  } catch (const ModelNotFound& error) {
    Tell(error.message, "Workbook");
  } catch (const ModelTooLarge& error) {
    Tell(error.message, "Model");
  } catch (const RuntimeFailure& failure) {
    Tell(failure.description(), "Error faute CommExcel");
  } catch (const std::bad_alloc&) {
    Tell("The memory of this machine does not hold this model.", "Model");
  }
  return false;
}

void MainRun::Choose(const std::string& file) {
  file_ = file;
  source_ = HoldsPlot(file) ? PlotSource::PlotFile : PlotSource::Workbook;
}

std::string MainRun::LastTextFile() const {
  if (source_ == PlotSource::Demo) return DemoFile();
  return source_ == PlotSource::PlotFile ? file_ : std::string();
}

bool MainRun::CommExcelRun() {
  return Guarded([&] {
    switch (source_) {
      case PlotSource::Workbook:
        return RunModel();
      case PlotSource::PlotFile:
        return ReadPlot(file_, run_.lists);
      default:
        return LoadSample(run_.lists);
    }
  });
}

bool MainRun::RunModel() {
  FileWorkbook workbook(PathOf(file_), run_.reader.locale());
  for (const std::string& warning : workbook.warnings()) run_.dialogs().Log(warning);
  CommExcel reading(workbook, run_.reader, run_.clock);
  CommExcel::Session source;
  ModelData model;
  reading.Read(model, source);
  if (!model.DatabaseHasTables()) {
    Tell("The sheet \"" + model.SheetName + "\" of the workbook \"" + model.WorkbookName +
             "\" holds no database: nothing was computed.",
         "Workbook");
    return false;
  }
  run_.model = std::move(model);
  workbookRead_ = file_;
  return a_SpaceApplication(run_, selection_, phases_);
}

bool MainRun::Replot() {
  return Guarded([&] { return a_SpaceApplication(run_, selection_, phases_); });
}

bool MainRun::ReadPlot(const std::string& file, PointLists& lists) {
  PlotFileNames names;
  names.TraceFile = file;
  names.DemoFile = DemoFile();
  const PlotReading reading = ReadPlotFile(names, lists, run_.reader);
  // The results of a model belong to another picture now.
  run_.record.finished = false;
  return reading.source != PlotReading::Source::Nothing;
}

bool MainRun::LoadSample(PointLists& lists) {
  return Guarded([&] {
    EnsureDemoPlot(DemoFile());
    return ReadPlot(DemoFile(), lists);
  });
}

}  // namespace orv
