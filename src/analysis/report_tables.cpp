#include "analysis/report_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kSummaryDigits = 3;
constexpr int kCornerDigits = 4;
constexpr std::size_t kNameWidth = 24;
constexpr std::size_t kMaterialWidth = 20;
constexpr std::size_t kNumberWidth = 11;

const char* const kSputterNote =
    "NOTE: The sum of the true Maxi is higher than the one given by Average/Rotations because the cells where the Maxi "
    "occurs can be different.";
const char* const kRedepositionNote =
    " NOTE: The sum of the True Average Maxi is higher than the one given by the True Average/Rotations because the "
    "cells where the Maxi occurs may be not always the same.";

bool IsForceTable(int q) {
  return (q >= 23 && q <= 28) || (q >= 36 && q <= 38);
}

// The heads behind the area, one a value of the row.
std::string HeadsOf(int q) {
  if (q == Number(Quantity::HeatFlux)) return " Sum(Cells) Sum(Cell*CellArea)_(#*m²)  Max/CellCorner";
  if (!IsForceTable(q)) return "";
  if (q < 26) return " Sum(Cells)  WC1  WC2  Fmin     Fmax";
  if (q < 36) return " Sum(Cells)  WC1  WC2 ";
  return " Sum(Cells)  WC1  WC2  Min Max  Neg  Pos  ";
}

std::string Column(double value) {
  return NumberColumn(value, kSummaryDigits, kNumberWidth);
}

std::string StepLine(double angle, double smallest, double largest) {
  return TextColumn(NumberText(angle), 0) + Column(smallest) + Column(largest);
}

}  // namespace

ReportTables::ReportTables(RunContext& run, std::function<void(const std::string&)> print)
    : run_(run), print_(std::move(print)) {
  QuantitySums_.Size({Bounds{0, std::max(0, LastPrimitive(run))}, Bounds{0, kQuantities}});
}

const QuantitySummary& ReportTables::Of(int p, int q) {
  const auto found = known_.find({p, q});
  if (found != known_.end()) return found->second;
  return known_[{p, q}] = SummariseQuantity(run_, p, q);
}

void ReportTables::Summary(int q, SummaryForm form, int primitives) {
  const int last = std::min(primitives, LastPrimitive(run_));
  if (form == SummaryForm::Silent) {
    QuantitySums_(0, q) = q;
    for (int p = 1; p <= last; ++p) QuantitySums_(p, q) = Of(p, q).Sum;
    return;
  }
  const std::string label = LabelOf(run_.ResultLabels, q);
  if (label.empty()) return;
  std::string title = HardBlanks(label) + " Summary_parameters ";
  if (form == SummaryForm::Full) title += " " + std::string(32, '=');
  print_(title);
  if (form == SummaryForm::Full) print_(" n°Name Material min/Cell Max/Cell Area_(m²)" + HeadsOf(q));
  for (int p = 1; p <= last; ++p) {
    if (PrimitiveWeight(Of(p, q)) != 0) PrintRow(p, q, form);
  }
}

void ReportTables::PrintRow(int p, int q, SummaryForm form) {
  const QuantitySummary& s = Of(p, q);
  std::string row = TextColumn(std::to_string(p) + PrimitiveName(run_, p), kNameWidth) +
                    TextColumn(MaterialColumn(run_, p), kMaterialWidth) + Column(s.Min) + Column(s.Max) +
                    Column(PrimitiveArea(run_, p));
  const bool full = form == SummaryForm::Full;
  if (full && IsForceTable(q)) {
    row += Column(s.Sum) + ForceColumns(p, q);
  } else if (full && q == Number(Quantity::HeatFlux)) {
    const double atCorner = p <= kHeatFluxMaxPrimitives ? run_.stores.HeatFluxMaxTable(p) : 0;
    row += Column(s.Sum) + Column(s.Integral) + Column(atCorner);
  } else if (!full && IsForceOrMoment(q)) {
    row += Column(s.Sum);
  }
  print_(row);
  if (!full || p != run_.plot.SputterRotationActive) return;
  if (q == Number(Quantity::Sputtering)) PrintSputterSteps();
  if (q >= Number(Quantity::Redeposition)) PrintRedepositionSteps(q, p);
}

// Both worst cases, then what tells the range: smallest and largest force, or smallest, largest, negative and positive
// moment.
std::string ReportTables::ForceColumns(int p, int q) {
  const auto sum = [&](int quantity) { return Column(QuantitySums_(p, quantity)); };
  const int a = q > 28 ? 7 : 0;
  std::string columns = sum(q + 16 - a) + sum(q + 25 - a);
  if (q < 26) columns += sum(q + 41) + sum(q + 44);
  if (q >= 36) columns += sum(q + 34) + sum(q + 37) + sum(q + 40) + sum(q + 43);
  return columns;
}

void ReportTables::PrintSputterSteps() {
  const Array<double, 2>& angles = run_.rotation.tables.RotPercentTable;
  const Array<double, 2>& list = run_.stores.SputterRotationList;
  print_(" True Average MiniMaxi list of Sputtering for all rotation steps");
  print_("for the true Average/Rotations.");
  const auto steps = std::min<std::ptrdiff_t>(run_.rotation.tables.RotationSteps, list.bounds(0).upper);
  for (std::ptrdiff_t s = 1; s <= steps; ++s) print_(StepLine(angles(s, 1), list(s, 1), list(s, 2)));
  print_(kSputterNote);
}

void ReportTables::PrintRedepositionSteps(int q, int p) {
  const int slot = RedepositionSlot(run_, q);
  if (slot == 0) {
    run_.dialogs().Tell("Wrong thing in Synthetic table " + LabelOf(run_.ResultLabels, q), "Error see Hallam",
                        Icon::Critical);
    run_.prompt.AbortQuestion();
    return;
  }
  const Array<double, 2>& angles = run_.rotation.tables.RotPercentTable;
  const Array<float, 4>& extrema = run_.stores.RedepositionExtrema;
  print_(
      "for the true AverageDeposition/Rotations. True Average MiniMaxi list for all rotation steps of the rotating "
      "primitive: ");
  const auto steps = std::min<std::ptrdiff_t>(run_.rotation.tables.RotationSteps, extrema.bounds(0).upper);
  for (std::ptrdiff_t s = 1; s <= steps && p <= extrema.bounds(3).upper; ++s) {
    print_(StepLine(angles(s, 1), extrema(s, 1, slot, p), extrema(s, 2, slot, p)));
  }
  print_(kRedepositionNote);
}

void ReportTables::Corners() {
  print_(
      "Table of locations of the 4 corners for each primitives (note: those are not the centre of the corner cells, "
      "but really the corners). For Cone this give the summit location.");
  const CellBlock& corners = run_.cells.CellCorners;
  for (int p = 1; p <= LastPrimitive(run_); ++p) {
    const int row = std::min(p, run_.model.NumberOfPrimitives);
    const std::string type = PrimitiveTypeAsTyped(run_.model.ModelCells, row, kSpecColumn);
    const auto print = [&](int corner, double x, double y, double z) {
      std::string line = TextColumn(std::to_string(p) + "_" + std::to_string(corner), 7) +
                         TextColumn(PrimitiveName(run_, p), kNameWidth) + TextColumn(type, 12);
      for (const double value : {x, y, z}) line += NumberColumn(value, kCornerDigits, kNumberWidth);
      print_(line);
    };
    if (p == run_.thruster.ThrusterPrimitive) {
      const Vector3& at = run_.thruster.frame.ThrusterPosition;
      const Vector3& axis = run_.thruster.frame.axiT;
      print(1, at(1), at(2), at(3));
      print(2, at(1) + axis(1), at(2) + axis(2), at(3) + axis(3));
      continue;
    }
    const int n = std::min(run_.cells.CountI(p), corners.cellsI());
    const int m = std::min(run_.cells.CountJ(p), corners.cellsJ());
    if (n < 1 || m < 1) continue;
    const std::array<std::pair<int, int>, 4> cells = {{{n, 1}, {1, 1}, {1, m}, {n, m}}};
    for (int c = 1; c <= 4; ++c) {
      const auto [i, j] = cells[static_cast<std::size_t>(c - 1)];
      const int first = 3 * (c - 1);
      print(c, corners(p, i, j, first + 1), corners(p, i, j, first + 2), corners(p, i, j, first + 3));
    }
  }
  print_(
      "Note : for the thruster, only two points are given: the source point and at 1 m on the plume axis. This allows "
      "the check of the plume orientation.");
}

int RedepositionSlot(const RunContext& run, int q) {
  static constexpr std::array<const char*, 3> kKinds = {"Redeposition ", "SputtClean. ", "NetRedep. "};
  const std::string label = LabelOf(run.ResultLabels, q);
  const std::vector<std::string>& materials = run.materials.MaterialsUsed;
  const int used =
      std::min({run.materials.NumberOfMaterialsUsed, kStoreMaterials, static_cast<int>(materials.size()) - 1});
  const auto shows = [&](int kind, int k) {
    const std::string name = ReplaceAll(materials[static_cast<std::size_t>(k)], "Tbl", "");
    return label == kKinds[static_cast<std::size_t>(kind)] + name + "(m/s)";
  };
  // Names that differ only by "Tbl" share a label: the place of the quantity decides between them.
  const int place = q - Number(Quantity::Redeposition);
  if (place >= 0 && place < 3 * kStoreMaterials && place % kStoreMaterials < used &&
      shows(place / kStoreMaterials, place % kStoreMaterials + 1)) {
    return place + 1;
  }
  for (int kind = 0; kind < 3; ++kind) {
    for (int k = 1; k <= used; ++k) {
      if (shows(kind, k)) return kStoreMaterials * kind + k;
    }
  }
  return 0;
}

}  // namespace orv
