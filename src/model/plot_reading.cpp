#include "model/plot_reading.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>

#include "model/demo_plot.h"
#include "model/plot_filler.h"
#include "numerics/angles.h"
#include "numerics/paths.h"

namespace orv {
namespace {

// The plot file, or the sample plot with a word about it. Nothing when neither can be read; the cause is logged.
std::optional<PlotFileLines> OpenPlotFile(const PlotFileNames& names, PlotReading& reading, UserDialogs& dialogs) {
  const auto open = [&](const std::string& name, PlotReading::Source source) -> std::optional<PlotFileLines> {
    reading.source = source;
    reading.file = name;
    return std::optional<PlotFileLines>(std::in_place, name);
  };
  try {
    if (names.SourceMode != 1) return open(names.TraceFile, PlotReading::Source::PlotFile);
  } catch (const RuntimeFailure& failure) {
    if (failure.number() != FailureNumber::FileNotFound) {
      dialogs.Log("_" + names.TraceFile + " cannot be read: " + failure.description());
      return std::nullopt;
    }
  }
  dialogs.Tell("The demo will be shown.", "Demo default", Icon::Information);
  try {
    EnsureDemoPlot(names.DemoFile);
    return open(names.DemoFile, PlotReading::Source::Demo);
  } catch (const RuntimeFailure& failure) {
    dialogs.Log("_" + names.DemoFile + " cannot be read: " + failure.description());
    return std::nullopt;
  }
}

// Leaves the view with a plot of nothing.
void EmptyPlot(PointLists& lists) {
  lists.Clear();
  lists.KeepScale = 0;
  lists.FirstDraw = 0;
}

void TellLines(const PlotFileLines& lines, const std::string& name, UserDialogs& dialogs) {
  const auto tell = [&](const LineNote& note, const std::string& what) {
    if (note.lines == 0) return;
    dialogs.Log("_" + name + ", line " + std::to_string(note.first) +
                (note.lines > 1 ? " and " + std::to_string(note.lines - 1) + " more: " : ": ") + what);
  };
  tell(lines.cut(),
       "longer than " + std::to_string(PlotFileLines::kMaxLineBytes) + " bytes; the rest of it is not read");
  tell(lines.nul(), "holds bytes that are no text; they are read as blanks");
}

}  // namespace

PlotReading ReadPlotFile(const PlotFileNames& names, PointLists& lists, CellText& reader,
                         std::string_view MainKeyword) {
  UserDialogs& dialogs = reader.prompt().dialogs();
  PlotReading reading;
  std::optional<PlotFileLines> lines = OpenPlotFile(names, reading, dialogs);
  std::string_view line;
  if (!lines) {
    reading.source = PlotReading::Source::Nothing;
    EmptyPlot(lists);
    return reading;
  }
  const std::string shownName = TextOf(PathOf(reading.file).filename());
  PlotFiller filler(lists, reader);
  bool begun = false;
  try {
    if (!lines->Next(line)) {
      dialogs.Log("_" + shownName + " is empty");
      EmptyPlot(lists);
      return reading;
    }
    const PlotHeader header = ReadPlotHeader(line, reader);
    if (!header.isHeader)
      dialogs.Log("_" + shownName + ": line 1 is no header of a plot file (it should begin with \"From: \")");
    filler.Begin(header, reading, MainKeyword);
    begun = true;
    while (lines->Next(line)) filler.AddLine(line, lines->lineNumber());
  } catch (const RuntimeFailure& failure) {
    dialogs.Log("_" + shownName + " could not be read to its end: " + failure.description());
    if (!begun) {
      EmptyPlot(lists);
      return reading;
    }
  }
  filler.Finish(reading);
  filler.Tell(shownName);
  TellLines(*lines, shownName, dialogs);
  return reading;
}

PlotReading ReadPlotLines(const PlotHeader& header, std::span<const std::string> lines, const std::string& name,
                          PointLists& lists, CellText& reader, std::string_view MainKeyword) {
  PlotReading reading;
  reading.source = PlotReading::Source::PlotFile;
  PlotFiller filler(lists, reader);
  filler.Begin(header, reading, MainKeyword);
  long long lineNumber = 1;
  for (const std::string& line : lines) filler.AddLine(line, ++lineNumber);
  filler.Finish(reading);
  filler.Tell(name);
  return reading;
}

void MakeDefaultShape(PointLists& points, double scale) {
  constexpr int kCorners = 5;
  constexpr double kMost = std::numeric_limits<float>::max();
  const double radius = std::clamp(29242.77201 * scale * 10.5, -kMost, kMost);
  for (int k = 0; k < kCorners; ++k) {
    const double angle = DegToRad(-72.0 * k);
    const auto at = static_cast<std::size_t>(k);
    points.PointList.row(0)[at] = 0;
    points.PointList.row(1)[at] = static_cast<float>(radius * std::cos(angle));
    points.PointList.row(2)[at] = static_cast<float>(radius * std::sin(angle));
    points.PointList.row(3)[at] = 0;
    points.PointList.row(4)[at] = 0;
  }
  points.NumberPoints = kCorners - 1;
  points.EventCount = 1;
  for (int row = 0; row < 2; ++row) {
    points.EventList.row(row)[0] = 0;
    points.EventList.row(row)[1] = 0;
  }
}

}  // namespace orv
