#pragma once

#include <span>
#include <string>

#include "model/plot_file.h"
#include "model/range_plot.h"
#include "view/point_lists.h"

namespace orv {

// Where a range plot comes from.
struct PlotFileNames {
  std::string TraceFile;
  std::string DemoFile;
  int SourceMode = 0;  // 1: the sample plot is wanted
};

struct PlotReading {
  enum class Source { Nothing, PlotFile, Demo };
  Source source = Source::Nothing;
  std::string file;
  PlotHeader header;
  PlotRanges ranges;  // of the header's specification
  PlotSwitches switches;
  long long lines = 0;    // behind the header
  bool Rescaled = false;  // the scale differs from 1
  bool complete = false;  // the header was there; otherwise the plot is empty
};

// Reads the plot file, or the sample plot when that is wanted or there is no plot file, into the lists. They are
// emptied first and handed to the scene when they are complete. What the lists cannot hold or the file holds in vain is
// told in the warning window; fields that are no numbers read as 0.
PlotReading ReadPlotFile(const PlotFileNames& names, PointLists& lists, CellText& reader,
                         std::string_view MainKeyword = kMainKeyword);

// The same for lines that come from elsewhere; `name` stands for the file in what is told.
PlotReading ReadPlotLines(const PlotHeader& header, std::span<const std::string> lines, const std::string& name,
                          PointLists& lists, CellText& reader, std::string_view MainKeyword = kMainKeyword);

// Fills the lists with five points of a circle in the plane of x and y and with two events, for a plot file that holds
// no point.
void MakeDefaultShape(PointLists& points, double scale);

}  // namespace orv
