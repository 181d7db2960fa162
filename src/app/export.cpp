#include <filesystem>
#include <iomanip>
#include <ostream>

#include "analysis/cell_export.h"
#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "app/command_line.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {
namespace {

std::string Fit(const std::string& text, std::size_t width) {
  const std::size_t length = CharacterCount(text);
  if (length > width) return LeftCharacters(text, width - 1) + "~";
  return text + std::string(width - length, ' ');
}

std::string Right(const std::string& text, std::size_t width) {
  const std::size_t length = CharacterCount(text);
  return length >= width ? text : std::string(width - length, ' ') + text;
}

// One row a primitive: extremes of the plotted quantity.
void PrintPrimitives(RunContext& run, std::ostream& out) {
  const int quantity = static_cast<int>(run.plot.IndexPlot);
  out << "\n" << LabelOf(run.ResultLabels, quantity) << " on each primitive\n";
  out << "   n  " << Fit("name", 22) << Fit("material", 18) << Right("cells", 8) << Right("min", 13) << Right("max", 13)
      << Right("area m2", 11) << "\n";
  for (int p = 1; p <= run.cells.numberPrimWithVolumic; ++p) {
    const QuantitySummary s = SummariseQuantity(run, p, quantity);
    const int row = std::min(p, run.model.NumberOfPrimitives);
    out << Right(std::to_string(p), 4) << "  " << Fit(run.PrimitiveNames[static_cast<std::size_t>(p)], 21) << ' '
        << Fit(Trim(run.model.ModelCells(row, 1)), 17) << ' '
        << Right(std::to_string(run.cells.CountI(p) * run.cells.CountJ(p)), 8);
    if (p == run.thruster.ThrusterPrimitive) {
      out << Right("thruster", 13) << '\n';
      continue;
    }
    out << Right(Trim(SignificantText(s.Min, 4)), 13) << Right(Trim(SignificantText(s.Max, 4)), 13)
        << Right(Trim(SignificantText(PrimitiveArea(run, p), 4)), 11) << '\n';
  }
}

void PrintSummary(RunContext& run, std::ostream& out) {
  const RunSummary s = SummariseRun(run);
  out << "Model       " << run.model.ModelTitle << '\n'
      << "Workbook    " << run.model.WorkbookName << ", sheet " << run.model.SheetName << '\n'
      << "Plot        " << NumberText(run.plot.IndexPlot) << "  "
      << LabelOf(run.ResultLabels, static_cast<int>(run.plot.IndexPlot)) << '\n'
      << "Primitives  " << s.primitives << '\n';
  if (run.thruster.ThrusterPrimitive != 0) {
    out << "Thruster    primitive " << run.thruster.ThrusterPrimitive << ", " << run.thruster.ThrusterName
        << ", plume to " << NumberText(run.thruster.PlumeLimitAngle) << " deg off its axis\n";
  } else {
    out << "Thruster    none: geometry only\n";
  }
  out << "Cells       " << s.cells << ": " << s.lit << " reached, " << s.shadowed << " shadowed, " << s.outside
      << " outside the plume\n";
  if (s.densityMax > 0) {
    out << "Density    " << SignificantText(s.densityMin, 4) << "to" << SignificantText(s.densityMax, 4)
        << "1/m3 on the cells reached\n";
  }
  if (!Trim(run.record.ShadowStatusText).empty()) out << "Shadows     " << Trim(run.record.ShadowStatusText) << '\n';
  PrintPrimitives(run, out);
  out << "\nTrace file  " << run.record.TraceFile << "\n            " << run.record.CaseLine << '\n';
}

}  // namespace

bool ReportRun(const Arguments& arguments, Session& session, std::ostream& out) {
  RunContext& run = session.run();
  if (!arguments.quiet) PrintSummary(run, out);
  bool allWritten = true;
  for (const std::string& name : arguments.exports) {
    try {
      std::error_code error;
      const std::filesystem::path folder = PathOf(name).parent_path();
      if (!folder.empty()) std::filesystem::create_directories(folder, error);
      ExportRun(run, session.dialogs().messages(), name);
      if (!arguments.quiet) out << "Export      " << name << '\n';
    } catch (const RuntimeFailure& failure) {
      session.dialogs().Tell("\"" + name + "\" could not be written: " + failure.description(), "Export",
                             Icon::Critical);
      allWritten = false;
    }
  }
  return allWritten;
}

}  // namespace orv
