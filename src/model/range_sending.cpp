#include "model/range_sending.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <span>
#include <system_error>

#include "model/range_plot.h"
#include "model/sheet_grid.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kBusyRetries = 20;  // in a row
constexpr double kProgressAtStart = 0.10;
// Behind each range.
constexpr std::array<double, kPlotRanges> kProgressSteps = {0.15, 0.20, 0.25, 0.27, 0.28, 0.30};

void LogUnused(const RangeTexts& texts, UserDialogs& dialogs) {
  for (std::size_t k = 0; k < kPlotRanges; ++k) {
    const std::string& text = texts[k];
    std::string twice = text;
    twice.append(":").append(text);
    const bool firstCellOfValues = k == 1 && ParseRange(twice).present();
    if (text.empty() || ParseRange(text).present() || firstCellOfValues) continue;
    const bool otherSheet = Contains(text, "!");
    dialogs.Log("_The range " + LeftCharacters(text, 100) + " is left out: " +
                (otherSheet ? "it is on another sheet; only those of the sheet in front are plotted"
                            : "it does not look like A2:C60"));
  }
}

// Runs a request to the spreadsheet again as long as it is busy and patience lasts.
template <class Request>
std::string Patiently(Spreadsheet& sheet, int& retryNumber, Request&& request) {
  for (int retries = 0;; ++retries) {
    try {
      return request();
    } catch (const RuntimeFailure& failure) {
      if (failure.number() != FailureNumber::SpreadsheetBusy || retries == kBusyRetries) throw;
    }
    ++retryNumber;
    sheet.LetEventsThrough();
  }
}

// The text of a rectangle. One without text is what a clipboard gives that others use.
std::string CopyRange(Spreadsheet& sheet, const RangeBounds& range, int& retryNumber) {
  return Patiently(sheet, retryNumber, [&] {
    std::string text = sheet.RangeText(RangeText(range));
    if (text.empty()) Raise(FailureNumber::SpreadsheetBusy);
    return text;
  });
}

// Takes the cells of a copied rectangle one by one.
class CopiedRows {
 public:
  explicit CopiedRows(std::string text) : text_(std::move(text)) {}
  bool Holds(char c) const { return text_.find(c) != std::string::npos; }
  // Goes to the next row; behind the last one all cells are empty.
  void NextRow() {
    const std::size_t end = std::min(text_.find("\r\n", next_), text_.size());
    row_ = std::string_view(text_).substr(next_, end - next_);
    next_ = std::min(end + 2, text_.size());
  }
  std::string_view NextCell() {
    const std::size_t tab = std::min(row_.find('\t'), row_.size());
    const std::string_view cell = row_.substr(0, tab);
    row_.remove_prefix(std::min(tab + 1, row_.size()));
    return cell;
  }

 private:
  std::string text_;
  std::size_t next_ = 0;
  std::string_view row_;
};

// Appends the cells of the spreadsheet as fields of a plot file.
class FieldWriter {
 public:
  FieldWriter(CellText& reader, bool decimalComma) : reader_(reader), point_(decimalComma ? ',' : '.') {}

  void Append(std::string& line, std::string_view cell) {
    if (IsEmptyField(cell)) return;
    double value = 0;
    if (ReadPlain(cell, value)) {
      AppendExact(line, value);
    } else if (HasGroups(cell)) {
      AppendExact(line, reader_.ReadNumber(cell));
    } else {
      line += FieldText(cell);
    }
  }

 private:
  // A number as the spreadsheet gives it.
  bool ReadPlain(std::string_view cell, double& value) const {
    std::array<char, 64> buffer;
    if (cell.size() > buffer.size()) return false;
    std::size_t size = 0;
    for (std::size_t k = cell.front() == '+' ? 1 : 0; k < cell.size(); ++k) {
      char c = cell[k];
      if (c == point_) {
        c = '.';
      } else if (!(c >= '0' && c <= '9') && c != '-' && c != '+' && c != 'E' && c != 'e') {
        return false;
      }
      buffer[size++] = c;
    }
    const char* const end = buffer.data() + size;
    const auto read = std::from_chars(buffer.data(), end, value);
    return read.ec == std::errc() && read.ptr == end;
  }

  // A text with dots between thousands: the plot file's point would part it elsewhere.
  bool HasGroups(std::string_view cell) const {
    return point_ == ',' && reader_.locale().thousandSeparator == "." && Contains(cell, ".") &&
           cell.find_first_not_of("0123456789.,+-Ee ") == std::string_view::npos;
  }

  static void AppendExact(std::string& line, double value) { line += ExactText(value); }

  CellText& reader_;
  char point_;
};

// Copies the ranges; an entry without text for each that is absent.
std::array<CopiedRows, kPlotRanges> CopyRanges(Spreadsheet& sheet, const PlotRanges& ranges, int& retryNumber,
                                               UserDialogs& dialogs) {
  std::array<std::string, kPlotRanges> texts;
  for (std::size_t k = 0; k < kPlotRanges; ++k) {
    const RangeBounds taken = ranges.Taken(k);
    if (taken.present()) texts[k] = CopyRange(sheet, taken, retryNumber);
    dialogs.Progress(kPlotProgress, kProgressSteps[k]);
  }
  return {CopiedRows(std::move(texts[0])), CopiedRows(std::move(texts[1])), CopiedRows(std::move(texts[2])),
          CopiedRows(std::move(texts[3])), CopiedRows(std::move(texts[4])), CopiedRows(std::move(texts[5]))};
}

// Whether the copied numbers have a decimal comma. A running spreadsheet may have another locale than this program, but
// it is asked only when there is something to tell apart: its test may write to scratch cells.
bool HasDecimalComma(Spreadsheet& sheet, const RangeBounds& first, std::span<const CopiedRows> rows,
                     const Locale& locale) {
  const bool comma = locale.decimalSeparator == ",";
  const char other = comma ? '.' : ',';
  if (std::none_of(rows.begin(), rows.end(), [&](const CopiedRows& copy) { return copy.Holds(other); })) return comma;
  return sheet.PrintsDecimalComma({std::min(first.lastRow + 1, kSheetRows - 1), first.firstColumn});
}

std::vector<std::string> JoinLines(const PlotRanges& ranges, std::array<CopiedRows, kPlotRanges>& rows,
                                   FieldWriter& writer) {
  std::size_t used = kPlotRanges;
  while (used > 0 && !ranges.range[used - 1].present()) --used;
  std::vector<std::string> lines(static_cast<std::size_t>(ranges.LineCount()));
  for (std::string& line : lines) {
    for (std::size_t k = 0; k < used; ++k) {
      rows[k].NextRow();
      const int columns = ranges.Taken(k).columns();
      for (int column = 0; column < kColumnsTaken[k]; ++column) {
        if (k + static_cast<std::size_t>(column) > 0) line.push_back('\t');
        if (column < columns) writer.Append(line, rows[k].NextCell());
      }
    }
  }
  return lines;
}

bool Write(const RangePlot& plot, const std::string& name, UserDialogs& dialogs) {
  if (name.find_first_of("*?") != std::string::npos) dialogs.Log("faute x18 ");
  try {
    std::error_code error;
    const std::filesystem::path folder = PathOf(name).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    PlotFileWriter writer(name, plot.header);
    for (const std::string& line : plot.lines) writer.WriteLine(line);
    writer.Commit();
    return true;
  } catch (const RuntimeFailure& failure) {
    dialogs.Log("_The plot is shown but not kept: " + failure.description());
    return false;
  }
}

}  // namespace

std::optional<RangePlot> ReadRangePlot(Spreadsheet& sheet, const RangeCopy& copy, CellText& reader, const Clock& clock,
                                       bool& narrow) {
  UserDialogs& dialogs = reader.prompt().dialogs();
  RangePlot plot;
  RangeTexts texts;
  PlotRanges ranges;
  // As the plot file will hold it, so that both are read alike.
  plot.header.specification = FieldText(copy.specification);
  ParseSpecification(plot.header.specification, plot.header.scale, plot.header.options, texts, reader,
                     copy.MainKeyword);
  LogUnused(texts, dialogs);
  narrow = !FindPlotRanges(texts, ranges);
  if (narrow) {
    dialogs.Tell(WrongSpecificationText(LeftCharacters(copy.specification, 1000)), kWrongSpecificationTitle);
    return std::nullopt;
  }
  dialogs.Progress(kPlotProgress, kProgressAtStart);
  int unused = 0;
  int& retryNumber = copy.ExcelBusyRetrynumber != nullptr ? *copy.ExcelBusyRetrynumber : unused;
  try {
    plot.header.workbook = Patiently(sheet, retryNumber, [&] { return sheet.WindowCaption(sheet.WindowCount()); });
    plot.header.sheet = Patiently(sheet, retryNumber, [&] { return sheet.SheetName(); });
    plot.header.date = PlotDate(clock.Local());
    std::array<CopiedRows, kPlotRanges> rows = CopyRanges(sheet, ranges, retryNumber, dialogs);
    FieldWriter writer(reader, HasDecimalComma(sheet, ranges.range[0], rows, reader.locale()));
    plot.lines = JoinLines(ranges, rows, writer);
  } catch (const RuntimeFailure& failure) {
    const bool busy = failure.number() == FailureNumber::SpreadsheetBusy;
    dialogs.Tell(
        "The ranges of " + LeftCharacters(copy.specification, 1000) + " could not be read: " +
            (busy ? "the spreadsheet stays busy. End what it is doing there and try again." : failure.description()),
        "Range plot", Icon::Warning);
    return std::nullopt;
  }
  return plot;
}

PlotReading SendRangePlot(Spreadsheet& sheet, const RangeCopy& copy, const PlotFileNames& names, PointLists& lists,
                          CellText& reader, const Clock& clock) {
  bool narrow = false;
  const std::optional<RangePlot> plot = ReadRangePlot(sheet, copy, reader, clock, narrow);
  if (!plot && !narrow) return {};
  if (plot && !Write(*plot, names.TraceFile, reader.prompt().dialogs())) {
    return ReadPlotLines(plot->header, plot->lines, "the range plot", lists, reader, copy.MainKeyword);
  }
  return ReadPlotFile(names, lists, reader, copy.MainKeyword);
}

}  // namespace orv
