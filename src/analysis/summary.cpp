#include "analysis/summary.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "geometry/quantities.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kTwoSidedCode = 15;

// One quantity of a primitive; element (i, j) of its rows.
class QuantityPlane {
 public:
  QuantityPlane(const CellBlock& data, int p, int q) : values_(data.plane(q, p)), rowLength_(data.rowLength()) {}
  double operator()(int i, int j) const {
    return values_[static_cast<std::size_t>(i) * rowLength_ + static_cast<std::size_t>(j)];
  }

 private:
  std::span<const double> values_;
  std::size_t rowLength_;
};

// Widens lo and hi by the columns j from first to last.
void Extremes(const QuantityPlane& values, int n, int first, int last, double& lo, double& hi) {
  for (int i = 1; i <= n; ++i) {
    for (int j = first; j <= last; ++j) {
      lo = std::min(lo, values(i, j));
      hi = std::max(hi, values(i, j));
    }
  }
}

// Elements (p, 0, 1 .. 8, q), as far as the array holds them. Zeros that stand there already need no memory.
void Store(CellBlock& data, int p, int q, const QuantitySummary& s) {
  const double kinds[8] = {s.Min, s.Max, s.Sum, s.Integral, s.MinFirst, s.MaxFirst, s.MinSecond, s.MaxSecond};
  for (int j = 1; j <= std::min(8, data.cellsJ()); ++j) {
    if (std::as_const(data)(p, 0, j, q) != kinds[j - 1]) data(p, 0, j, q) = kinds[j - 1];
  }
}

}  // namespace

QuantitySummary SummariseQuantity(RunContext& run, int p, int q) {
  CellBlock& data = run.cells.CellData;
  QuantitySummary s;
  const bool thruster = p == run.thruster.ThrusterPrimitive;
  const int n = std::min(thruster ? 1 : run.cells.CountI(p), data.cellsI());
  const int m = std::min(thruster ? 1 : run.cells.CountJ(p), data.cellsJ());
  if (n < 1 || m < 1) return s;
  const QuantityPlane values(data, p, q);
  const QuantityPlane areas(data, p, Number(Quantity::Area));
  s.Min = s.Max = values(1, 1);
  Extremes(values, n, 1, m, s.Min, s.Max);
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= m; ++j) {
      s.Sum += values(i, j);
      s.Integral += values(i, j) * std::abs(areas(i, j));
    }
  }
  s.twoSided = data(p, 0, 0, 10) == kTwoSidedCode;
  if (s.twoSided) {
    s.MinFirst = s.MaxFirst = values(1, 1);
    Extremes(values, n, 1, m / 2, s.MinFirst, s.MaxFirst);
    s.MinSecond = s.MaxSecond = values(1, std::min(m / 2 + 1, m));
    Extremes(values, n, m / 2 + 1, m, s.MinSecond, s.MaxSecond);
  }
  Store(data, p, q, s);
  return s;
}

int LastPrimitive(const RunContext& run) {
  return std::min(run.cells.numberPrimWithVolumic, run.cells.CellData.primitives());
}

std::string MaterialColumn(const RunContext& run, int p) {
  const TextTable& cells = run.model.ModelCells;
  const int row = std::min(p, run.model.NumberOfPrimitives);
  if (row < cells.bounds(0).lower || row > cells.bounds(0).upper) return {};
  return Trim(SoftBlanks(cells(row, 1)));
}

std::string PrimitiveName(const RunContext& run, int p) {
  const auto index = static_cast<std::size_t>(p);
  return index < run.PrimitiveNames.size() ? Trim(SoftBlanks(run.PrimitiveNames[index])) : "";
}

double PrimitiveArea(const RunContext& run, int p) {
  double area = 0;
  const int n = std::min(run.cells.CountI(p), run.cells.CellData.cellsI());
  const int m = std::min(run.cells.CountJ(p), run.cells.CellData.cellsJ());
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= m; ++j) area += std::abs(run.cells.CellData(p, i, j, 4));
  }
  return area;
}

RunSummary SummariseRun(RunContext& run) {
  RunSummary s;
  s.primitives = run.cells.numberPrimWithVolumic;
  const CellBlock& data = run.cells.CellData;
  for (int p = 1; p <= s.primitives; ++p) {
    if (p == run.thruster.ThrusterPrimitive) continue;
    const int n = std::min(run.cells.CountI(p), data.cellsI());
    const int m = std::min(run.cells.CountJ(p), data.cellsJ());
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        ++s.cells;
        const double flag = data(p, i, j, 20);
        if (flag >= 0.25) {
          ++(flag == 0.5 ? s.outside : s.shadowed);
          continue;
        }
        ++s.lit;
        const double density = data(p, i, j, 13);
        if (!(density > 0)) continue;
        s.densityMin = s.densityMin == 0 ? density : std::min(s.densityMin, density);
        s.densityMax = std::max(s.densityMax, density);
      }
    }
  }
  return s;
}

}  // namespace orv
