#include "model/plot_filler.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kProgressSteps = 60;
constexpr long long kUnknownRowsStep = 1000;  // lines a progress step when the number of lines is not known

Locale WithPointAsDecimal(Locale locale) {
  if (locale.thousandSeparator == ".") locale.thousandSeparator.clear();
  return locale;
}

bool IsPlainNumber(std::string_view field) {
  return std::all_of(field.begin(), field.end(), [](char c) {
    return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
  });
}

void TellNote(UserDialogs& dialogs, const std::string& name, const LineNote& note, const std::string& what) {
  if (note.lines == 0) return;
  dialogs.Log("_" + name + ", line " + std::to_string(note.first) +
              (note.lines > 1 ? " and " + std::to_string(note.lines - 1) + " more: " : ": ") + what);
}

}  // namespace

Answer FirstBoxOnly::Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) {
  return boxes_++ == 0 ? dialogs_.Ask(text, title, buttons, icon) : Answer::None;
}

std::string FirstBoxOnly::Input(const std::string& prompt, const std::string& title, const std::string& initial) {
  return dialogs_.Input(prompt, title, initial);
}

PlotFiller::PlotFiller(PointLists& lists, CellText& reader)
    : lists_(lists),
      dialogs_(reader.prompt().dialogs()),
      boxes_(dialogs_),
      prompt_(boxes_),
      reader_(prompt_, reader.locale()),
      pointReader_(prompt_, WithPointAsDecimal(reader.locale())),
      pointIsThousands_(reader.locale().thousandSeparator == ".") {}

void PlotFiller::Begin(const PlotHeader& header, PlotReading& reading, std::string_view MainKeyword) {
  lists_.Clear();
  // A reading that was broken off may have left entries behind that no count tells of.
  for (ListTable* table : {&lists_.PointList, &lists_.TraceList, &lists_.EventList, &lists_.PanelAngleList1,
                           &lists_.PanelAngleList2, &lists_.ValueTable}) {
    table->Clear();
  }
  lists_.PlotLoaded = lists_.PlotNormalised = 1;
  double scaleOfText = 1;
  std::string options;
  RangeTexts texts;
  ParseSpecification(header.specification, scaleOfText, options, texts, reader_, MainKeyword);
  rangesKnown_ = FindPlotRanges(texts, ranges_);
  if (!rangesKnown_) ranges_ = {};
  if (header.hasOptions) options = header.options;
  switches_ = ReadPlotOptions(options);
  scale_ = header.scale;
  const long long rows = ranges_.range[0].rows();
  progressStep_ = rows > 0 ? (rows - 1) / kProgressSteps + 1 : kUnknownRowsStep;
  reading.header = header;
  reading.ranges = ranges_;
  reading.switches = switches_;
  reading.Rescaled = scale_ != 1;
}

double PlotFiller::Number(std::string_view field) {
  if (field.empty()) return 0;
  const long before = boxes_.boxes();
  if (IsPlainNumber(field)) {
    try {
      return LeadingNumber(field);
    } catch (const RuntimeFailure&) {
      // Told below in the way of every number that is too large.
    }
  }
  // Spreadsheets put numbers with commas in quotes.
  if (field.size() > 1 && field.front() == '"' && field.back() == '"') field = field.substr(1, field.size() - 2);
  const bool byLocale = !pointIsThousands_ || Contains(field, ",");
  const double value = byLocale ? reader_.ReadNumber(field) : pointReader_.ReadNumber(field);
  if (boxes_.boxes() != before) outOfRange_.Add(lineNumber_);
  return value;
}

float PlotFiller::Single(double value) {
  if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
    outOfRange_.Add(lineNumber_);
    return 0;
  }
  return static_cast<float>(value);
}

float PlotFiller::EventState(std::string_view field) {
  const float state = Single(Number(field));
  if (state != 0) return state;
  const std::string text = UpperTrim(SoftBlanks(field));
  return !text.empty() && text.back() == 'S' ? 1.0F : 0.0F;
}

void PlotFiller::AddPoint(bool penUp) {
  const int n = static_cast<int>(lines_);
  // Lines behind the rows of the first range belong to longer ranges.
  const bool isPoint = !rangesKnown_ || n < ranges_.range[0].rows() || !fields_[1].empty();
  if (isPoint) lastPoint_ = n;
  const auto at = static_cast<std::size_t>(n);
  lists_.PointList.row(0)[at] = Single(Number(fields_[4]));
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    lists_.PointList.row(static_cast<int>(axis))[at] = Single(Number(fields_[axis]) * scale_);
  }
  lists_.PointList.row(4)[at] = penUp || switches_.PenUpMode ? kPenUp : 0.0F;
  hasValue_ = hasValue_ || !fields_[4].empty();
  hasMore_ = hasMore_ || std::any_of(fields_.begin() + 5, fields_.end(), [](std::string_view f) { return !f.empty(); });
}

void PlotFiller::AddTrace(int fieldCount, bool penUp) {
  bool counts = !penUp;
  if (switches_.PenUpMode && penUp) {
    counts = rangesKnown_ ? lines_ < ranges_.range[3].rows() : fieldCount >= 7;
  }
  if (!counts) return;
  const auto at = static_cast<std::size_t>(++lastTrace_);
  for (std::size_t k = 0; k < 5; ++k) {
    const double number = Number(fields_[7 + k]);
    lists_.TraceList.row(static_cast<int>(k))[at] = Single(switches_.PenUpMode && k < 3 ? number * scale_ : number);
  }
  if (switches_.PenUpMode) lists_.TraceList.row(3)[at] = penUp ? kPenUp : 0.0F;
  traceHasVertex_ = traceHasVertex_ || !penUp;
}

void PlotFiller::AddPair(ListTable& table, int& last, float first, float second) {
  const auto at = static_cast<std::size_t>(++last);
  table.row(0)[at] = first;
  table.row(1)[at] = second;
}

void PlotFiller::StepProgress() {
  if (lines_ % progressStep_ != 0 || progressCount_ >= kProgressSteps) return;
  ++progressCount_;
  boxes_.Progress(kPlotProgress, (30 + 70.0 * progressCount_ / kProgressSteps) / 100);
}

void PlotFiller::AddLine(std::string_view line, long long lineNumber) {
  lineNumber_ = lineNumber;
  if (lines_ >= kListEntries) {
    beyond_.Add(lineNumber);
    return;
  }
  int count = 0;
  bool empty1, empty5, empty7, empty12, empty14;
  ReadPlotLine(line, fields_, count, empty1, empty5, empty7, empty12, empty14);
  if (count > kPlotFields) wide_.Add(lineNumber);
  AddPoint(empty1);
  AddTrace(count, empty7);
  if (!empty5) AddPair(lists_.EventList, lastEvent_, Single(Number(fields_[5])), EventState(fields_[6]));
  if (!empty12) {
    AddPair(lists_.PanelAngleList1, lastPanel1_, Single(Number(fields_[12])), Single(Number(fields_[13])));
  }
  if (!empty14) {
    AddPair(lists_.PanelAngleList2, lastPanel2_, Single(Number(fields_[14])), Single(Number(fields_[15])));
  }
  ++lines_;
  StepProgress();
}

// Lines that only longer ranges have are no points.
void PlotFiller::FinishPoints() {
  for (int row = 0; row < lists_.PointList.rows(); ++row) {
    const std::span<float> entries = lists_.PointList.row(row);
    std::fill(entries.begin() + lastPoint_ + 1, entries.begin() + static_cast<std::ptrdiff_t>(lines_), 0.0F);
  }
  lists_.NumberPoints = lastPoint_;
  if (lastPoint_ == kNoEntry) MakeDefaultShape(lists_, scale_);
}

void PlotFiller::FinishTrace() {
  if (lastTrace_ == kNoEntry) return;
  if (switches_.PenUpMode) {
    if (!traceHasVertex_) {
      lists_.TraceList.Clear();
      return;
    }
    // The last outline ends with a break as all others do.
    const std::span<float> pen = lists_.TraceList.row(3);
    if (pen[static_cast<std::size_t>(lastTrace_)] != kPenUp && lastTrace_ + 1 < kListEntries) {
      pen[static_cast<std::size_t>(++lastTrace_)] = kPenUp;
    }
    lists_.OutlineCount = lastTrace_ + 1;
  } else if (switches_.TraceOrderWFirst) {
    for (std::size_t i = 0; i <= static_cast<std::size_t>(lastTrace_); ++i) {
      const float last = lists_.TraceList.row(4)[i];
      for (int row = 4; row > 1; --row) lists_.TraceList.row(row)[i] = lists_.TraceList.row(row - 1)[i];
      lists_.TraceList.row(1)[i] = last;
    }
  }
  lists_.TraceCount = lists_.TraceMax = lastTrace_;
}

// The second panel's list holds values along the trace instead when a value column was chosen or when it begins with an
// entry of zeros; a first time of 0 marks that entry as none.
void PlotFiller::FinishPanels() {
  lists_.PanelCount1 = lastPanel1_;
  lists_.PanelCount2 = lastPanel2_;
  lists_.ValueAxis = switches_.ValueColumn;
  if (lastPanel2_ == kNoEntry) return;
  const std::span<const float> times = lists_.PanelAngleList2.row(0);
  const std::span<const float> angles = lists_.PanelAngleList2.row(1);
  if (switches_.ValueColumn == 0 && (times[0] != 0 || angles[0] != 0)) return;
  const std::size_t skip = times[0] == 0 ? 1 : 0;
  const std::size_t count = static_cast<std::size_t>(lastPanel2_) + 1;
  std::copy(times.begin() + static_cast<std::ptrdiff_t>(skip), times.begin() + static_cast<std::ptrdiff_t>(count),
            lists_.ValueTable.row(0).begin());
  std::copy(angles.begin() + static_cast<std::ptrdiff_t>(skip), angles.begin() + static_cast<std::ptrdiff_t>(count),
            lists_.ValueTable.row(1).begin());
  lists_.ValueCount = static_cast<int>(count - skip) - 1;
  lists_.PanelAngleList2.Clear();
  lists_.PanelCount2 = kNoEntry;
  lists_.FindValueRange();
}

void PlotFiller::FinishValues() {
  int source = 0;
  if (switches_.ValueColumn != 0 && lists_.ValueCount == kNoEntry) source = switches_.ValueColumn;
  const bool pointsAlone =
      rangesKnown_ ? ranges_.FirstAlone() && ranges_.range[0].columns() == 3 : !hasValue_ && !hasMore_;
  if (switches_.PenUpMode && pointsAlone) source = 3;
  if (source != 0 && lastPoint_ != kNoEntry) {
    const std::span<const float> coordinate = lists_.PointList.row(source);
    std::copy(coordinate.begin(), coordinate.begin() + lastPoint_ + 1, lists_.PointList.row(0).begin());
  }
  const bool hasTimes = rangesKnown_ ? ranges_.range[1].present() : hasValue_;
  lists_.EarthOn = scale_ != 1 && !switches_.PenUpMode;
  lists_.TimePlot = lists_.EarthOn && hasTimes;
  lists_.FindPlotValues();
  lists_.legend.LegendMin = lists_.legend.ScaleMin = lists_.PlotValueMin;
  lists_.legend.LegendMax = lists_.legend.ScaleMax = lists_.PlotValueMax;
}

void PlotFiller::Finish(PlotReading& reading) {
  FinishPoints();
  if (lastPoint_ != kNoEntry) lists_.EventCount = lastEvent_;
  lists_.PenUpMode = switches_.PenUpMode ? 1 : 0;
  lists_.MaravoFactor = switches_.MaravoFactor;
  lists_.MoonView = switches_.MoonView;
  FinishPanels();
  FinishTrace();
  lists_.FactorScale = scale_;
  FinishValues();
  lists_.Title = reading.header.Title();
  reading.lines = lines_ + beyond_.lines;
  reading.complete = true;
  boxes_.Progress(kPlotProgress, 1);
  lists_.KeepScale = 0;
  lists_.FirstDraw = 0;
  lists_.PlotNormalised = 0;
  lists_.PlotLoaded = 0;
}

void PlotFiller::Tell(const std::string& name) {
  TellNote(dialogs_, name, wide_, "more than " + std::to_string(kPlotFields) + " fields; those behind are not used");
  TellNote(dialogs_, name, outOfRange_, "a number is too large for the view and reads as 0");
  if (beyond_.lines > 0) {
    dialogs_.Tell(name + " has " + std::to_string(beyond_.lines) + " lines more than the " +
                      std::to_string(kListEntries) + " that a plot can hold. The lines from " +
                      std::to_string(beyond_.first) + " on are not shown.",
                  "Some Data are to be lost", Icon::Warning);
  }
}

}  // namespace orv
