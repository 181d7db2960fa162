#include <algorithm>
#include <filesystem>
#include <ostream>

#include "analysis/cell_export.h"
#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "app/command_line.h"
#include "app/effect_tables.h"
#include "app/terminal_table.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "numerics/text.h"

namespace orv {
namespace {

// One row a primitive: extremes of the plotted quantity.
void PrintPrimitives(RunContext& run, std::ostream& out) {
  const int quantity = static_cast<int>(run.plot.IndexPlot);
  out << '\n' << LabelOf(run.ResultLabels, quantity) << " on each primitive\n";
  TerminalTable table({"n", "name", "material", "cells", "min", "max", "area m2"}, 3);
  for (int p = 1; p <= run.cells.numberPrimWithVolumic; ++p) {
    const QuantitySummary s = SummariseQuantity(run, p, quantity);
    std::vector<std::string> row = {std::to_string(p), run.PrimitiveNames[static_cast<std::size_t>(p)],
                                    Trim(run.model.ModelCells(std::min(p, run.model.NumberOfPrimitives), 1)),
                                    std::to_string(run.cells.CountI(p) * run.cells.CountJ(p))};
    if (p == run.thruster.ThrusterPrimitive) {
      row.emplace_back("thruster");
    } else {
      for (const double value : {s.Min, s.Max, PrimitiveArea(run, p)}) row.push_back(Trim(SignificantText(value, 4)));
    }
    table.Add(row);
  }
  table.Print(out);
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
  if (arguments.summary) PrintEffectTables(run, out);
  if (!arguments.quiet) {
    for (const std::string& name : run.record.files) out << "Report      " << name << '\n';
  }
  bool allWritten = run.record.filesSkipped.empty();
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
