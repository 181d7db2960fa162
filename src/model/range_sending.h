#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/plot_file.h"
#include "model/plot_reading.h"
#include "model/worksheet.h"
#include "numerics/environment.h"

namespace orv {

// The plot that was sent last, in the settings folder. It stands beside the trace of the computations, which has a file
// of its own that no plot may replace.
inline constexpr const char* kLastPlotName = "OrvLastPlot.txt";

// What the ranges of a specification hold: a plot file that is not written yet.
struct RangePlot {
  PlotHeader header;
  std::vector<std::string> lines;  // fields with tabs between them
};

// How ranges are read.
struct RangeCopy {
  std::string specification;
  std::string MainKeyword = std::string(kMainKeyword);
  int* ExcelBusyRetrynumber = nullptr;  // counts the copies that were repeated because the spreadsheet was busy
};

// Reads the ranges of the active sheet. As many lines as the longest range; numbers in full with a point, errors as
// empty fields. Nothing, and the user was told, when the first range is narrower than 3 columns (`narrow` is set then)
// or the spreadsheet does not give the cells.
std::optional<RangePlot> ReadRangePlot(Spreadsheet& sheet, const RangeCopy& copy, CellText& reader, const Clock& clock,
                                       bool& narrow);

// Sends the ranges to the plot file names.TraceFile and reads that into the lists. A specification without a range of 3
// columns leaves the plot file as it is, which is shown then. When the cells cannot be read the lists stay as they are
// and the source is Nothing; a plot file that cannot be written is told and the plot shown all the same.
PlotReading SendRangePlot(Spreadsheet& sheet, const RangeCopy& copy, const PlotFileNames& names, PointLists& lists,
                          CellText& reader, const Clock& clock);

}  // namespace orv
