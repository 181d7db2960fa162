#include "analysis/full_listing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "numerics/number_format.h"
#include "numerics/progress_pace.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kDigits = 4;
constexpr int kRowsAtOnce = 250;  // between two reports of progress
constexpr std::size_t kIndexWidth = 4;
constexpr std::size_t kWidth = 11;
constexpr std::array<int, 6> kPlaceAndNormal = {1, 2, 3, 5, 6, 7};

std::string UnitOf(double code) {
  if (code == 1) return "(m)";
  if (code == 2) return "(deg)";
  if (code == 3) return "Ray(m)";
  if (code == 4) return "RayProj(m)";
  return "m";
}

class Listing {
 public:
  Listing(RunContext& run, ReportFile& file)
      : run_(run),
        file_(file),
        data_(run.cells.CellData),
        progress_(run.dialogs()),
        plot_(static_cast<int>(std::lround(run.plot.IndexPlot))) {
    label_ = ReplaceAll(SoftBlanks(LabelOf(run.ResultLabels, plot_)), " ", "_");
    if (label_.empty()) label_ = "_";
  }

  void Print() {
    file_.Print(HardBlanks(Trim(Trim(run_.plot.PlotTitle) + " " + Trim(run_.model.ModelTitle))));
    file_.Print(HardBlanks(LabelOf(run_.ResultLabels, plot_)));
    const int only = Only();
    for (int p = 1; p <= LastPrimitive(run_); ++p) {
      if (only == 0 || p == only) PrintPrimitive(p);
    }
  }

 private:
  // The one primitive to list, 0 for all.
  int Only() {
    const double wanted = CInt(run_.plot.ListPrimitive);
    if (wanted == 0) return 0;
    if (wanted >= 1 && wanted <= LastPrimitive(run_)) return static_cast<int>(wanted);
    run_.prompt("_Full listing: there is no primitive " + NumberText(wanted) + ", all are listed");
    return 0;
  }

  void PrintPrimitive(int p) {
    PrintGrid(p);
    file_.Print(
        "    I   J   Xloc   Yloc   Zloc   Nxloc  Nyloc  Nzloc  X   Y   Z   Nx  Ny  Nz  Square  " + label_ +
        "  IncidenceOnElem(°) DistToElem(m)  IndicatrixFromThr(°) JcurrentDensity(A/m²) EnergySimpleCharge(eV)");
    const bool thruster = p == run_.thruster.ThrusterPrimitive;
    const int n = std::min(thruster ? 1 : run_.cells.CountI(p), data_.cellsI());
    const int m = std::min(thruster ? 1 : run_.cells.CountJ(p), data_.cellsJ());
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        if ((j - 1) % kRowsAtOnce == 0)
          progress_("reports, full listing", (p - 1 + (i - 1.0) / n) / LastPrimitive(run_));
        PrintCell(p, i, j);
      }
    }
    if (thruster) file_.Print(" Source Point of the Thruster's Exit plane");
  }

  void PrintGrid(int p) {
    const auto header = [&](int column) { return data_(p, 0, 0, column); };
    const auto length = [&](const char* name, int column, int unit) {
      return TextColumn(name + Trim(SignificantText(header(column), kDigits)) + UnitOf(header(unit)), 0);
    };
    const int row = std::min(p, run_.model.NumberOfPrimitives);
    file_.Print(TextColumn(std::to_string(p), kIndexWidth) + TextColumn(PrimitiveName(run_, p), 0) +
                TextColumn(PrimitiveTypeAsTyped(run_.model.ModelCells, row, kSpecColumn), 0) +
                TextColumn("n=" + NumberText(header(1)), 0) + TextColumn("m=" + NumberText(header(2)), 0) +
                length("start1=", 6, 8) + length("step1=", 4, 8) + length("start2=", 7, 9) + length("step2=", 5, 9));
  }

  void PrintCell(int p, int i, int j) {
    std::string row = IndexColumn(i, kIndexWidth) + IndexColumn(j, kIndexWidth);
    for (const double value : Local(p, i, j)) row += NumberColumn(value, kDigits, kWidth);
    for (const int q : kPlaceAndNormal) row += NumberColumn(data_(p, i, j, q), kDigits, kWidth);
    for (const int q : {4, plot_, 9, 8, 10, 15, 16}) row += NumberColumn(data_(p, i, j, q), kDigits, kWidth);
    file_.Print(row);
  }

  // Centre and normal before placement; zeros for a cell that the copy does not reach.
  std::array<double, 6> Local(int p, int i, int j) {
    std::array<double, 6> values{};
    try {
      for (std::size_t k = 0; k < values.size(); ++k) {
        values[k] = static_cast<double>(run_.geometry.LocalCellTable(p, i, j, kPlaceAndNormal[k]));
      }
    } catch (const RuntimeFailure&) {
      values.fill(0);
    }
    return values;
  }

  RunContext& run_;
  ReportFile& file_;
  const CellBlock& data_;
  ProgressPace progress_;
  int plot_;
  std::string label_;
};

}  // namespace

bool WantsFullListing(const RunContext& run) {
  return run.plot.FullListing == 1 || IsGeometryPlot(run.plot.IndexPlot);
}

bool WriteFullListing(RunContext& run) {
  return WriteReportFile(run, ResultName(run, "Orvfull" + ShortTitle(run, 44) + "_tmp_.xls"),
                         [&](ReportFile& file) { Listing(run, file).Print(); });
}

}  // namespace orv
