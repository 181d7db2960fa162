#include <cmath>

#include "fuzz/fuzz_support.h"
#include "model/plot_reading.h"
#include "model/range_plot.h"
#include "model/sheet_grid.h"

// The specification of a range plot: the first line with the common keyword, with the second one as keyword as well.
namespace orv::testing {
namespace {

void CheckBounds(const RangeBounds& bounds) {
  if (!bounds.present()) return;
  Require(bounds.lastColumn >= bounds.firstColumn && bounds.lastRow >= bounds.firstRow, "bounds are in order");
  Require(bounds.lastRow <= kSheetRows && bounds.lastColumn <= kSheetColumns, "bounds are inside of the sheet");
  Require(ParseRange(RangeText(bounds)) == bounds, "a range is written as it is read", RangeText(bounds));
}

void CheckRange(const std::string& text) {
  const RangeBounds bounds = ParseRange(text);
  if (!bounds.present()) return;
  Require(ParseRange(RangeText(bounds)) == bounds, "a range is written as it is read", text);
  Require(bounds.lastRow >= 1 && bounds.lastColumn >= 1, "both corners are there", text);
}

void Check(const std::string& spec, const std::string& keyword, const Locale& locale) {
  FuzzDialogs dialogs(Answer::Ignore, 2);
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, locale);
  double scale = 0;
  std::string options;
  RangeTexts texts;
  const bool plottable = ParseSpecification(spec, scale, options, texts, reader, keyword);
  Require(std::isfinite(scale) && scale != 0, "a scale is a number", spec);
  Require(options.size() <= spec.size() + kDefaultPlotOptions.size(), "options are part of the text", spec);
  RequireText(options, "options are a text");
  bool anyColon = false;
  for (const std::string& text : texts) {
    RequireText(text, "a range is a text");
    CheckRange(text);
    anyColon = anyColon || Contains(text, ":");
  }
  Require(plottable == anyColon, "a range makes a specification", spec);

  PlotRanges ranges;
  const bool wide = FindPlotRanges(texts, ranges);
  int lines = 0;
  for (std::size_t k = 0; k < kPlotRanges; ++k) {
    const RangeBounds& range = ranges.range[k];
    CheckBounds(range);
    const RangeBounds taken = ranges.Taken(k);
    CheckBounds(taken);
    Require(taken.columns() <= kColumnsTaken[k] && taken.rows() == range.rows(), "the part taken is bounded", spec);
    lines = std::max(lines, range.rows());
  }
  Require(ranges.LineCount() == lines, "the longest range counts", spec);
  Require(!wide || ranges.range[0].columns() >= kColumnsTaken[0], "the first range is wide enough", spec);

  const PlotSwitches switches = ReadPlotOptions(options);
  Require(switches.ValueColumn >= 0 && switches.ValueColumn <= 3, "a value column is one", spec);
  RequireText(options, "options are a text");
  RequireText(WrongSpecificationText(spec), "the complaint is a text");
}

}  // namespace
}  // namespace orv::testing

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orv;
  using namespace orv::testing;
  FuzzInput input(data, size);
  const std::string spec = input.TextLine();
  const std::string keyword = input.TextLine();
  for (const Locale& locale : FuzzLocales()) {
    Check(spec, std::string(kMainKeyword), locale);
    Check(spec, keyword, locale);
  }
  CheckRange(spec);
  std::string rest = spec;
  for (int k = 0; k < 10'000 && RemoveWord("PENUP", rest); ++k) Require(rest.size() < spec.size() + 2, "a word goes");
  return 0;
}
