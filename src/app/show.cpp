#include <filesystem>

#include "app/command_line.h"
#include "model/plot_reading.h"
#include "model/workbook_contents.h"
#include "numerics/paths.h"

namespace orv {

void LoadPlotFile(const Arguments& arguments, Session& session) {
  std::error_code error;
  if (!std::filesystem::exists(PathOf(arguments.plotFile), error)) {
    throw WorkbookError(arguments.plotFile, "does not exist.");
  }
  PlotFileNames names;
  names.TraceFile = arguments.plotFile;
  const PlotReading reading = ReadPlotFile(names, session.run().lists, session.reader());
  session.dialogs().EndProgress();
  if (!reading.complete) throw WorkbookError(arguments.plotFile, "holds no plot.");
}

}  // namespace orv
