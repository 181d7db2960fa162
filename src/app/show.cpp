#include <filesystem>

#include "app/command_line.h"
#include "model/plot_reading.h"
#include "model/range_sending.h"
#include "model/workbook_contents.h"
#include "numerics/paths.h"
#include "numerics/settings.h"
#include "numerics/text.h"

namespace orv {
namespace {

// The word that marks a range plot, as it is set among the options of the window.
std::string MainKeyword(Session& session) {
  std::string keyword = Trim(ReadSetting(session.settings(), kSectionUse, "Setstr02.00"));
  return keyword.empty() ? std::string(kMainKeyword) : keyword;
}

bool IsSpecification(const std::string& text, Session& session, const std::string& keyword) {
  double scale = 1;
  std::string options;
  RangeTexts ranges;
  return ParseSpecification(text, scale, options, ranges, session.reader(), keyword);
}

// The specification that was given, or the one in the active cell.
std::string ChooseSpecification(const Arguments& arguments, Session& session, FileWorkbook& workbook,
                                const std::string& keyword) {
  const std::string example = "\"=" + keyword + "(A2:C60)\"";
  if (!arguments.spec.empty()) {
    if (IsSpecification(arguments.spec, session, keyword)) return arguments.spec;
    throw WorkbookError(arguments.shown, "cannot be plotted by \"" + arguments.spec +
                                             "\": a specification names ranges, such as " + example + ".");
  }
  const CellPosition cell = workbook.ActiveCell();
  std::string formula = workbook.Formula(cell);
  if (IsSpecification(formula, session, keyword)) return formula;
  throw WorkbookError(arguments.shown, "is no plot file, and its cell " + CellName(cell) + " on the sheet \"" +
                                           workbook.SheetName() + "\" holds no specification such as " + example +
                                           ". Name the ranges with --spec, or the cell with --sheet and --cell.");
}

// The ranges go to the lists without a plot file: what the window has shown last stays what it was.
void LoadRanges(const Arguments& arguments, Session& session) {
  FileWorkbook workbook(PathOf(arguments.shown), session.reader().locale());
  if (!arguments.sheet.empty()) workbook.ChooseSheet(arguments.sheet);
  if (!arguments.cell.empty()) workbook.ChooseCell(arguments.cell);
  for (const std::string& warning : workbook.warnings()) session.dialogs().Log(warning);
  workbook.Attach();
  RangeCopy copy;
  copy.MainKeyword = MainKeyword(session);
  copy.specification = ChooseSpecification(arguments, session, workbook, copy.MainKeyword);
  bool narrow = false;
  const auto plot = ReadRangePlot(workbook, copy, session.reader(), session.clock(), narrow);
  if (!plot) {
    session.dialogs().EndProgress();
    throw WorkbookError(arguments.shown, narrow ? "is not plotted: the first range needs 3 columns, x, y and z."
                                                : "is not plotted: its ranges cannot be read.");
  }
  ReadPlotLines(plot->header, plot->lines, TextOf(PathOf(arguments.shown).filename()), session.run().lists,
                session.reader(), copy.MainKeyword);
}

void LoadPlotFile(const Arguments& arguments, Session& session) {
  if (!arguments.spec.empty() || !arguments.sheet.empty() || !arguments.cell.empty()) {
    throw WorkbookError(arguments.shown, "is a plot file: --spec, --sheet and --cell are for workbooks.");
  }
  PlotFileNames names;
  names.TraceFile = arguments.shown;
  const PlotReading reading = ReadPlotFile(names, session.run().lists, session.reader(), MainKeyword(session));
  if (!reading.complete) throw WorkbookError(arguments.shown, "holds no plot.");
}

}  // namespace

void LoadPlot(const Arguments& arguments, Session& session) {
  std::error_code error;
  if (!std::filesystem::exists(PathOf(arguments.shown), error)) {
    throw WorkbookError(arguments.shown, "does not exist.");
  }
  if (HoldsPlot(arguments.shown)) {
    LoadPlotFile(arguments, session);
  } else {
    LoadRanges(arguments, session);
  }
  session.dialogs().EndProgress();
}

}  // namespace orv
