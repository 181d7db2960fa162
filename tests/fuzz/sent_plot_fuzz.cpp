#include <algorithm>

#include "fuzz/plot_checks.h"
#include "model/memory_sheet.h"
#include "model/range_sending.h"
#include "numerics/paths.h"
#include "support/workbook_writer.h"

// A range plot of a sheet: the specification on the first line, the cells behind it. The plot that goes through its
// file is the one that comes straight from the cells.
namespace orv::testing {
namespace {

constexpr int kMostLines = 2000;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsLong(const std::string& specification, CellText& reader) {
  double scale = 1;
  std::string options;
  RangeTexts texts;
  PlotRanges ranges;
  ParseSpecification(specification, scale, options, texts, reader);
  return FindPlotRanges(texts, ranges) && ranges.LineCount() > kMostLines;
}

void Send(MemorySheet& sheet, const std::string& specification, CellText& reader, bool ascii) {
  const FixedClock clock({2031, 4, 5, 6, 7, 8});
  const TemporaryFolder folder;
  const PlotFileNames names{TextOf(folder.path() / "plot.txt"), TextOf(folder.path() / "demo.txt"), 0};
  RangeCopy copy;
  copy.specification = specification;
  bool narrow = false;
  const std::optional<RangePlot> plot = ReadRangePlot(sheet, copy, reader, clock, narrow);
  if (!plot) return;
  Require(!narrow, "a plot has a wide range");
  for (const std::string& line : plot->lines) {
    RequireText(line, "a line is a text");
    Require(std::count(line.begin(), line.end(), '\t') < kPlotFields, "a line has its fields", line);
    Require(line.find_first_of("\r\n") == std::string::npos, "a line is one line");
  }
  PointLists direct;
  ReadPlotLines(plot->header, plot->lines, "plot", direct, reader);
  CheckLists(direct);
  PointLists sent;
  const PlotReading reading = SendRangePlot(sheet, copy, names, sent, reader, clock);
  Require(reading.source == PlotReading::Source::PlotFile && reading.complete, "what was sent is read");
  CheckLists(sent);
  if (ascii && reading.header.scale == plot->header.scale) CheckSame(direct, sent);
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  FuzzInput input(data, size);
  const std::string specification = input.TextLine();
  const Locale& locale = FuzzLocales()[specification.size() % 3];
  FuzzDialogs dialogs(Answer::Ignore, kMostLines * kPlotFields);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  if (IsLong(specification, reader)) return 0;
  MemorySheet sheet(locale);
  const std::string cells = ReplaceAll(CleanUtf8(input.Rest()), std::string_view("\0", 1), " ");
  try {
    sheet.SetText({1, 1}, cells);
  } catch (const RuntimeFailure&) {
    return 0;  // more columns than a sheet has
  }
  sheet.Attach();
  Send(sheet, specification, reader, IsAscii(cells) && IsAscii(specification));
  return 0;
}
