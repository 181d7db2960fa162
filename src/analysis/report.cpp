#include "analysis/report.h"

#include <algorithm>

#include "analysis/full_listing.h"
#include "analysis/report_tables.h"
#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "analysis/run_block.h"
#include "analysis/running_tables.h"
#include "analysis/sputter_tables.h"
#include "numerics/number_format.h"
#include "numerics/progress_pace.h"
#include "numerics/text.h"

namespace orv {
namespace {

const char* const kKeyword = "Orvdata";
const char* const kDatabaseKeyword = "DatabaseOrvValis";
const char* const kRowsUsedLabel = " LinesDataBase_used";

std::string Rule(char mark, std::size_t length) {
  return std::string(length, mark);
}

// A text in which no search finds the word: it is broken behind `head` characters, whatever its case.
std::string Break(const std::string& text, std::string_view word, std::size_t head) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  const auto alike = [&](char a, char b) { return lower(a) == lower(b); };
  std::string out = text;
  for (std::size_t from = 0;;) {
    const auto hit =
        std::search(out.begin() + static_cast<std::ptrdiff_t>(from), out.end(), word.begin(), word.end(), alike);
    if (hit == out.end()) return out;
    from = static_cast<std::size_t>(hit - out.begin()) + head;
    out.insert(from, "_");
  }
}

// What stands above the model must not be taken for it when the report is loaded as a model sheet.
std::string WithoutKeywords(const std::string& line) {
  return Break(Break(line, kKeyword, 3), kDatabaseKeyword, 8);
}

// A cell of a line whose cells are separated by tabs.
std::string TabCell(const std::string& text) {
  const std::string cell = text.empty() ? std::string(kHardBlank) : HardBlanks(text);
  return cell.front() == '"' ? "\"" + ReplaceAll(cell, "\"", "\"\"") + "\"" : cell;
}

// Empty cells at the end of the line are left out.
std::string TabLine(std::vector<std::string> cells) {
  while (!cells.empty() && Trim(cells.back()).empty()) cells.pop_back();
  std::string line;
  for (std::size_t k = 0; k < cells.size(); ++k) line += (k == 0 ? "" : "\t") + TabCell(Trim(cells[k]));
  return line;
}

std::vector<std::string> SplitAtTabs(const std::string& line) {
  std::vector<std::string> cells(1);
  for (const char c : line) {
    if (c == '\t') {
      cells.emplace_back();
    } else {
      cells.back().push_back(c);
    }
  }
  return cells;
}

// The row of a primitive as the user typed it; a potential text goes behind what is left of the row.
std::string ModelLine(const RunContext& run, int p, const std::vector<std::string>& potentials) {
  std::vector<std::string> cells;
  for (int column = 1; column <= kModelColumns; ++column) {
    cells.push_back(ReplaceAll(SoftBlanks(run.model.ModelCells(p, column)), "@", "|"));
  }
  while (!cells.empty() && Trim(cells.back()).empty()) cells.pop_back();
  const auto index = static_cast<std::size_t>(p);
  if (index < potentials.size() && !Trim(potentials[index]).empty()) {
    cells.resize(std::max<std::size_t>(cells.size(), kSpecColumn));
    cells.push_back(ReplaceAll(SoftBlanks(potentials[index]), "@", "|"));
  }
  return TabLine(cells);
}

// The cell of the keyword with the text that stands beside it in it.
std::string KeywordCell(const RunContext& run) {
  const std::string id = Trim(SoftBlanks(run.model.ModelId));
  return Contains(id, kKeyword) ? id : Trim(std::string(kKeyword) + " " + id);
}

}  // namespace

void PrintHeading(const RunContext& run, const PrintLine& print) {
  print(Rule('=', 64));
  print(WithoutKeywords("TracefileLine:" + HardBlanks(run.record.TraceFile) + " " + HardBlanks(run.record.CaseLine)));
  const CivilTime now = run.clock.Local();
  print("Software OrvValis " ORV_VERSION " " + DateText(now) + " " + TimeText(now));
  const int plot = static_cast<int>(ToIndex(run.plot.IndexPlot));
  print(WithoutKeywords(HardBlanks(LabelOf(run.ResultLabels, plot)) + " IndexPlot=" + NumberText(run.plot.IndexPlot) +
                        " Reference: " + HardBlanks(run.model.SheetTitle)));
  print(Rule('=', 32));
}

void PrintModelSummary(const RunContext& run, const std::string& outputName, SummaryPlace place,
                       const std::vector<std::string>& potentials, const PrintLine& print) {
  const bool loadable = place == SummaryPlace::PlotReport;
  const auto shown = [&](const std::string& line) { return loadable ? line : WithoutKeywords(line); };
  print(WithoutKeywords("Model Summary               This ouput filename " + HardBlanks(outputName)));
  if (run.rotation.RotatingPrimitive > 0) {
    const char* const note = loadable ? "Note: Autorotation true Averaged values (over one complete turn) on n°"
                                      : "Note: Autorotation Average values (over one complete turn) on n°";
    print(WithoutKeywords(std::string(19, ' ') + note + std::to_string(run.rotation.RotatingPrimitive) + "    " +
                          HardBlanks(run.rotation.RotatingName)));
  }
  print("");  // keeps the note out of the title when the model is read again
  print(shown(TabCell(KeywordCell(run))) + "\t" + HardBlanks(" si " + run.model.DirectiveLine));
  for (int p = 1; p <= run.model.NumberOfPrimitives; ++p) print(shown(ModelLine(run, p, potentials)));
  print("");
  print(shown(HardBlanks(Trim(kDatabaseKeyword + (" " + run.model.DatabaseTitle)))));
  print(HardBlanks(kRowsUsedLabel));  // above the title of Table 1, where a reading of the database begins
  const std::vector<std::string>& lines = run.model.database.DatabaseLines;
  for (int k = 1; k <= run.rowsUsed.count(); ++k) {
    const auto row = static_cast<std::size_t>(run.rowsUsed.rows()[static_cast<std::size_t>(k)]);
    if (row < lines.size()) print(shown(TabLine(SplitAtTabs(SoftBlanks(lines[row])))));
  }
  print("");  // two empty lines end the last table
  print("");
  print(Rule('=', 32));
  print(Rule('=', 32));
  print(Rule('=', 64));
}

namespace {

// The plot report in the order of its lines. The other files of the run that belong to a line are written on the way.
class PlotReport {
 public:
  PlotReport(RunContext& run, const std::vector<std::string>& potentials)
      : run_(run),
        potentials_(potentials),
        name_(run.record.PlotReportFile.empty() ? ResultName(run, PlotReportName(run)) : run.record.PlotReportFile),
        block_(run.prompt, run.record.ignoreFailures, name_, ResultName(run, "OrvForcesAndMoments_.xls")),
        progress_(run.dialogs()),
        tables_(run, [this](const std::string& line) { Print(line); }),
        plot_(static_cast<int>(ToIndex(run.plot.IndexPlot))),
        geometryPlot_(IsGeometryPlot(run.plot.IndexPlot)),
        ownSummary_(plot_ != 19 && plot_ < 90 && plot_ != 13 && !run.plot.AutoRotationPlot),
        all_(LastPrimitive(run)),
        typed_(run.model.NumberOfPrimitives) {}

  void Write() {
    block_([&] { PrintHeading(run_, [this](const std::string& line) { Print(line); }); });
    PrintPlasma();
    if (run_.plot.SputterRotationActive > 0) block_([&] { WriteSputterRotationTable(run_, potentials_); });
    if (geometryPlot_) PrintGeometry();
    FirstSummaries();
    FirstMoments();
    if (run_.plot.AutomaticRotationActive > 0) block_([&] { WriteForcesAndMoments(run_); });
    Print(Rule('=', 64));
    Print("");
    SecondSummaries();
    SecondMoments();
    block_([&] {
      PrintModelSummary(run_, name_, SummaryPlace::PlotReport, potentials_,
                        [this](const std::string& line) { lines_.push_back(line); });
    });
    WriteReportFile(run_, name_, [this](ReportFile& file) {
      for (const std::string& line : lines_) file.Print(line);
    });
  }

 private:
  void Print(const std::string& line) { lines_.push_back(WithoutKeywords(line)); }

  void PrintPlasma() {
    std::string line;
    for (const char c : run_.record.PlasmaText + "\n") {
      if (c == '\n') {
        if (!Trim(line).empty()) Print(HardBlanks(line));
        line.clear();
      } else if (c != '\r') {
        line.push_back(c);
      }
    }
  }

  void PrintGeometry() {
    Print(" ");
    Print("Synthetic parameters for Geometry");
    block_([&] { tables_.Corners(); });
  }

  void Summary(int q, SummaryForm form) {
    // The shells of a plasma volume hold integrals along their paths in two of the force quantities.
    int primitives = IsForceOrMoment(q) ? typed_ : all_;
    if (q == Number(Quantity::Density) && plot_ == q) primitives = typed_;
    progress_("reports", 0);
    block_([&] { tables_.Summary(q, form, primitives); });
  }

  void Summaries(int first, int last, SummaryForm form) {
    for (int q = first; q <= last; ++q) Summary(q, form);
  }

  // Quantities of the effects on materials: erosion, then one quantity a material of what lands and is cleaned.
  void MaterialSummaries(SummaryForm form) {
    Summary(Number(Quantity::Sputtering), form);
    const auto ofMaterials = [&](Quantity first) {
      const int last = Number(first) + run_.materials.NumberOfMaterialsUsed - 1;
      Summaries(Number(first), std::min(last, kQuantities), form);
    };
    if (run_.plot.RedepositionOn != 0) ofMaterials(Quantity::Redeposition);
    if (run_.plot.CleaningOn == 0) return;
    ofMaterials(Quantity::SputteringCleaning);
    ofMaterials(Quantity::NetRedeposition);
  }

  void FirstSummaries() {
    Print(" ");
    Print(
        "Synthetic parameters for each Primitive:mini,maxi,Area,integral,integral*Area  (Nul values on all cells of a "
        "primitive are skipped)");
    if (ownSummary_) Summary(plot_, SummaryForm::Full);
    MaterialSummaries(SummaryForm::Full);
    Summary(Number(Quantity::Density), SummaryForm::Full);
    Summary(Number(Quantity::HeatFlux), SummaryForm::Full);
    Summaries(39, 81, SummaryForm::Silent);
    Summaries(23, 28, SummaryForm::Full);
  }

  // The moments about the point of the directive, under a line that names it. False when there is no such point.
  bool PrintMomentOrigin() {
    const auto& origin = run_.model.directives.MomentOrigin;
    if (origin[0] < 1) return false;
    Print(Rule('*', 64));
    Print(NumberText(origin[1]) + " " + NumberText(origin[2]) + " " + NumberText(origin[3]));
    return true;
  }

  void FirstMoments() {
    if (!PrintMomentOrigin()) return;
    Summaries(36, 38, SummaryForm::Full);
    Print(Rule('*', 64));
  }

  void SecondSummaries() {
    if (geometryPlot_) {
      Summaries(8, 10, SummaryForm::Compact);
      Summaries(1, 3, SummaryForm::Compact);
    } else if (ownSummary_) {
      Summary(plot_, SummaryForm::Compact);
    }
    MaterialSummaries(SummaryForm::Compact);
    Summary(Number(Quantity::Density), SummaryForm::Compact);
    for (const int first : {23, 39, 48, 64, 67, 26}) Summaries(first, first + 2, SummaryForm::Compact);
  }

  void SecondMoments() {
    if (!PrintMomentOrigin()) return;
    for (const int first : {36, 45, 54, 70, 73}) Summaries(first, first + 2, SummaryForm::Compact);
  }

  RunContext& run_;
  const std::vector<std::string>& potentials_;
  std::string name_;
  std::vector<std::string> lines_;
  RunBlock block_;
  ProgressPace progress_;
  ReportTables tables_;
  int plot_;
  bool geometryPlot_;
  bool ownSummary_;
  int all_;    // primitives, the shells of a plasma volume included
  int typed_;  // rows of the model
};

}  // namespace

void WriteReports(RunContext& run, const std::vector<std::string>& potentials) {
  if (run.model.directives.SilentMode == 1) return;
  PlotReport(run, potentials).Write();
  if (WantsFullListing(run)) WriteFullListing(run);
  WriteRunningTable(run);
}

}  // namespace orv
