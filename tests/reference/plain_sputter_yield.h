#pragma once

#include <array>
#include <cmath>
#include <string>

#include "model/cell_table.h"
#include "numerics/angles.h"
#include "numerics/failure.h"
#include "plume/sputter_yield.h"

// The two stages of the sputter yield as they read: every row and every curve looked at for every cell. What the
// prepared form must agree with bit for bit.
namespace orv::reference {

struct PlainYieldAtEnergy {
  // (gas, field): 1 normal yield, 2 peak yield, 3 peak angle, 4 BettaEmission, 5 exponent
  std::array<std::array<double, 6>, 3> field{};
  std::array<std::array<std::string, 9>, 3> text;  // 6 to 8
};

inline void PlainRowStage(double E, const YieldRecords& records, int gas, PlainYieldAtEnergy& out) {
  const auto row = [&](int k, int f) { return records.YieldRows(gas, k, f).number(); };
  std::array<double, 6>& field = out.field[static_cast<std::size_t>(gas)];
  int lo = 0;
  int hi = 0;
  double energyLo = 0;
  double energyHi = 0;
  for (int k = 1; k <= records.YieldRowCount[static_cast<std::size_t>(gas)]; ++k) {
    const double e = row(k, 1);
    if (e == 0) continue;
    if (e <= E && (energyLo == 0 || e > energyLo)) {
      energyLo = e;
      lo = k;
    }
    if (e >= E && (energyHi == 0 || e < energyHi)) {
      energyHi = e;
      hi = k;
    }
  }
  const auto exponent = [&] {
    return Divide(-Logarithm(Divide(field[2], field[1])), Logarithm(std::cos(field[3] * (kPi15 / 180))));
  };
  if (hi == 0) {
    field[1] = row(lo, 2) * Power(Divide(E, row(lo, 1)), 0.5);
    field[2] = row(lo, 3) * Power(Divide(E, row(lo, 1)), 0.5);
    field[3] = row(lo, 4);
    field[4] = row(lo, 5);
    field[5] = exponent();
    return;
  }
  if (lo == 0) {
    const double ratio = Divide(E, row(hi, 1));
    field[1] = row(hi, 2) * (ratio * ratio);
    field[2] = row(hi, 3) * (ratio * ratio);
    field[3] = row(hi, 4);
    field[4] = row(hi, 5);
    field[5] = field[2] == 0 ? -1 : exponent();
    return;
  }
  const double d = 0.001;
  const double E1 = row(lo, 1);
  const double E2 = row(hi, 1);
  for (const int f : {1, 2}) {
    field[static_cast<std::size_t>(f)] = row(lo, f + 1) + (row(hi, f + 1) - row(lo, f + 1)) /
                                                              (std::sqrt(E2) + d - std::sqrt(E1)) *
                                                              (std::sqrt(E) - std::sqrt(E1));
  }
  field[3] = row(lo, 4) + (row(hi, 4) - row(lo, 4)) / (1 / std::sqrt(E2) + d * d - 1 / std::sqrt(E1)) *
                              (1 / std::sqrt(E) - 1 / std::sqrt(E1));
  field[4] = row(lo, 5) + (row(hi, 5) - row(lo, 5)) / (E2 + d - E1) * (E - E1);
  field[5] = exponent();
}

inline void PlainEnergyStage(double E, const YieldRecords& records, PlainYieldAtEnergy& out, TableCache& cache,
                             CellText& reader) {
  for (int gas = 1; gas <= 2; ++gas) {
    const auto g = static_cast<std::size_t>(gas);
    if (records.YieldRowCount[1] != -1) {
      PlainRowStage(E, records, gas, out);
      continue;
    }
    for (std::size_t f = 1; f <= 3; ++f) out.text[g][f + 5] = records.YieldRows(gas, 1, f).text();
    out.field[g][1] = Interpolate(cache.Get(out.text[g][6], reader), E, reader.prompt());
    out.field[g][4] = Interpolate(cache.Get(out.text[g][8], reader), E, reader.prompt());
  }
}

inline double PlainYield(double th, int gas, const PlainYieldAtEnergy& at, double MaiOrigine, CellText& reader) {
  const auto g = static_cast<std::size_t>(gas);
  const std::array<double, 6>& field = at.field[g];
  if (!at.text[1][6].empty()) {
    XYTable table;
    int count = 0;
    ReadTable(at.text[g][7], table, count, reader);
    return field[1] * Interpolate(table, th, reader.prompt());
  }
  const double f = MaiOrigine == 1 || MaiOrigine == 3 ? 1 / field[5] : field[5];
  if (th <= field[3]) return field[1] * std::pow(std::cos(th * (kPi15 / 180)), -f);
  return field[2] * (90 - th) / (90 - field[3]);
}

}  // namespace orv::reference
