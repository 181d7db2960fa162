#include "plume/sputter_yield.h"

#include <algorithm>
#include <cmath>

#include "numerics/angles.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kRadiansOf = kPi15 / 180;
constexpr double kEqualEnergies = 0.001;  // guard of the interpolation
constexpr int kMostAngles = 36;           // points of the angular curve

double Cosine(double degrees) {
  return std::cos(degrees * kRadiansOf);
}

// The exponent that makes the law of incidence meet the peak yield at the peak angle.
double ExponentOf(const GasYield& g) {
  const double rise = Logarithm(Divide(g.yieldAtPeak, g.yieldAtNormal));
  return Divide(-rise, Logarithm(Cosine(g.peakAngleDeg)));
}

}  // namespace

YieldTable::YieldTable(const YieldRecords& records, TableCache& tables, CellText& reader)
    : tables_(&tables), reader_(&reader), stageFromCurves_(records.YieldRowCount[1] == -1) {
  for (int gas = 1; gas <= kGases; ++gas) {
    const auto g = static_cast<std::size_t>(gas);
    if (stageFromCurves_) {
      for (int field = 1; field <= 3; ++field) {
        curves_[g][static_cast<std::size_t>(field - 1)].text = records.YieldRows(gas, 1, field).text();
      }
    } else {
      TakeRows(records, gas);
    }
  }
  hasCurves_ = stageFromCurves_ && !Trim(curves_[1][0].text).empty();
}

// A row of the energy 0 is none; of rows with one energy the first counts.
void YieldTable::TakeRows(const YieldRecords& records, int gas) {
  const auto g = static_cast<std::size_t>(gas);
  std::vector<Row>& rows = rows_[g];
  for (int k = 1; k <= records.YieldRowCount[g]; ++k) {
    const auto field = [&](int f) { return records.YieldRows(gas, k, f).number(); };
    const double energy = field(1);
    if (energy == 0) continue;
    rows.push_back({energy, energy > 0 ? std::sqrt(energy) : 0, {field(2), field(3), field(4), field(5), 0}});
  }
  std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.energy < b.energy; });
  rows.erase(std::unique(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.energy == b.energy; }),
             rows.end());
}

void YieldTable::AtEnergy(double energyEV, YieldAtEnergy& out, bool& extrapolationTold) {
  for (std::size_t gas = 1; gas <= kGases; ++gas) {
    if (stageFromCurves_) {
      out.gas[gas].yieldAtNormal = FromCurve(curves_[gas][0], energyEV);
      out.gas[gas].bettaEmission = FromCurve(curves_[gas][2], energyEV);
    } else {
      FromRows(rows_[gas], energyEV, out.gas[gas], extrapolationTold);
    }
  }
}

void YieldTable::FromRows(const std::vector<Row>& rows, double energyEV, GasYield& out, bool& extrapolationTold) const {
  const auto above =
      std::find_if(rows.begin(), rows.end(), [energyEV](const Row& row) { return row.energy >= energyEV; });
  if (above == rows.end()) {
    if (!extrapolationTold) {
      extrapolationTold = true;
      reader_->prompt().dialogs().Tell(
          "Warning : Extrapolation in energy for sputtering Yield: there should be always a max value. HERE we use the "
          "Square root law",
          "Required to update the sputtering DATABASE");
    }
    const Row none{};
    const Row& lo = rows.empty() ? none : rows.back();
    out.yieldAtNormal = lo.figures.yieldAtNormal * Power(Divide(energyEV, lo.energy), 0.5);
    out.yieldAtPeak = lo.figures.yieldAtPeak * Power(Divide(energyEV, lo.energy), 0.5);
    out.peakAngleDeg = lo.figures.peakAngleDeg;
    out.bettaEmission = lo.figures.bettaEmission;
    out.exponent = ExponentOf(out);
    return;
  }
  const Row& hi = *above;
  if (hi.energy == energyEV) {
    out = {hi.figures.yieldAtNormal, hi.figures.yieldAtPeak, hi.figures.peakAngleDeg, hi.figures.bettaEmission,
           out.exponent};
    out.exponent = ExponentOf(out);
    return;
  }
  if (above == rows.begin()) {
    const double ratio = Divide(energyEV, hi.energy);
    out.yieldAtNormal = hi.figures.yieldAtNormal * (ratio * ratio);
    out.yieldAtPeak = hi.figures.yieldAtPeak * (ratio * ratio);
    out.peakAngleDeg = hi.figures.peakAngleDeg;
    out.bettaEmission = hi.figures.bettaEmission;
    out.exponent = out.yieldAtPeak == 0 ? -1 : ExponentOf(out);
    return;
  }
  const Row& lo = *(above - 1);
  if (lo.energy < 0) Raise(FailureNumber::InvalidProcedureCall);  // it has no root
  const double root = Root(energyEV);
  const double inRoot = kEqualEnergies + hi.rootEnergy - lo.rootEnergy;
  const double inInverse = 1 / hi.rootEnergy + kEqualEnergies * kEqualEnergies - 1 / lo.rootEnergy;
  const double inEnergy = hi.energy + kEqualEnergies - lo.energy;
  const auto between = [](double y1, double y2, double width, double x) { return y1 + Divide(y2 - y1, width) * x; };
  const GasYield& a = lo.figures;
  const GasYield& b = hi.figures;
  out.yieldAtNormal = between(a.yieldAtNormal, b.yieldAtNormal, inRoot, root - lo.rootEnergy);
  out.yieldAtPeak = between(a.yieldAtPeak, b.yieldAtPeak, inRoot, root - lo.rootEnergy);
  out.peakAngleDeg = between(a.peakAngleDeg, b.peakAngleDeg, inInverse, 1 / root - 1 / lo.rootEnergy);
  out.bettaEmission = between(a.bettaEmission, b.bettaEmission, inEnergy, energyEV - lo.energy);
  out.exponent = ExponentOf(out);
}

const PreparedCurve& YieldTable::Read(Curve& curve) {
  if (!curve.read) {
    curve.read = true;
    try {
      curve.curve = PreparedCurve(tables_->Get(curve.text, *reader_));
    } catch (const RuntimeFailure& failure) {
      curve.failure = failure;
    }
  }
  if (curve.failure) throw *curve.failure;
  return curve.curve;
}

double YieldTable::FromCurve(Curve& curve, double x) {
  return Read(curve).At(x, reader_->prompt());
}

double YieldTable::AngularFactor(int gas, double incidenceDeg) {
  Curve& curve = curves_[static_cast<std::size_t>(gas)][1];
  if (Read(curve).count() > kMostAngles) Raise(FailureNumber::SubscriptOutOfRange);
  return FromCurve(curve, incidenceDeg);
}

double SputtYield_at_ion(double th, int gas, const YieldAtEnergy& atEnergy, YieldTable& table, double MaiOrigine,
                         ErrorPrompt& prompt) {
  const GasYield& figures = atEnergy.gas[static_cast<std::size_t>(gas)];
  if (table.HasCurves()) return figures.yieldAtNormal * table.AngularFactor(gas, th);
  const double peak = figures.peakAngleDeg;
  if (th > 90) prompt.dialogs().Tell("error SputtYield_at_ion If th > 90  ", "", Icon::Critical);
  if (peak > 90) prompt.dialogs().Tell("error SputtYield_at_ion If ThetamaxDeg > 90 ", "", Icon::Critical);
  if (th > 90 || peak > 90) prompt.AbortQuestion();
  double f = figures.exponent;
  if (MaiOrigine == 1 || MaiOrigine == 3) f = Divide(1, f);
  if (th <= peak) return Finite(figures.yieldAtNormal * Power(Cosine(th), -f));
  return Divide(figures.yieldAtPeak * (90 - th), 90 - peak);
}

}  // namespace orv
