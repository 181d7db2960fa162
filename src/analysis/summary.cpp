#include "analysis/summary.h"

#include <algorithm>
#include <cmath>

namespace orv {
namespace {

constexpr double kTwoSidedCode = 15;

// Adds the extremes of the columns j from first to last; starts from what lo and hi hold.
void Extremes(const CellBlock& data, int p, int q, int n, int first, int last, double& lo, double& hi) {
  for (int i = 1; i <= n; ++i) {
    for (int j = first; j <= last; ++j) {
      const double value = data(p, i, j, q);
      lo = std::min(lo, value);
      hi = std::max(hi, value);
    }
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
  s.Min = s.Max = data(p, 1, 1, q);
  Extremes(data, p, q, n, 1, m, s.Min, s.Max);
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= m; ++j) {
      const double value = data(p, i, j, q);
      s.Sum += value;
      s.Integral += value * std::abs(data(p, i, j, 4));
    }
  }
  s.twoSided = data(p, 0, 0, 10) == kTwoSidedCode;
  if (s.twoSided) {
    s.MinFirst = s.MaxFirst = data(p, 1, 1, q);
    Extremes(data, p, q, n, 1, m / 2, s.MinFirst, s.MaxFirst);
    s.MinSecond = s.MaxSecond = data(p, 1, std::min(m / 2 + 1, m), q);
    Extremes(data, p, q, n, m / 2 + 1, m, s.MinSecond, s.MaxSecond);
  }
  if (s.AllZero()) return s;  // zeros need no memory
  const double stored[8] = {s.Min, s.Max, s.Sum, s.Integral, s.MinFirst, s.MaxFirst, s.MinSecond, s.MaxSecond};
  for (int j = 1; j <= std::min(8, data.cellsJ()); ++j) data(p, 0, j, q) = stored[j - 1];
  return s;
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
