#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "model/cell_table.h"
#include "numerics/array.h"
#include "numerics/general_value.h"
#include "plume/prepared_curve.h"

// How many atoms an ion ejects, in two stages: the rows of a material are reduced to a few figures at the ion's energy,
// then the law of incidence is applied to these.
namespace orv {

inline constexpr int kGases = 2;
inline constexpr int kYieldFields = 5;

// What Table 9 holds of one material.
struct YieldRecords {
  std::array<int, kGases + 1>
      YieldRowCount{};  // by gas 1, 2: number of rows; -1: row 1 holds the texts of three curves
  // (gas 1 .. 2, row 0 .. c, field 1 .. 5): energy (eV), yield at normal incidence and at the peak angle (at/ion), peak
  // angle (deg), BettaEmission. With the count -1: yield against energy, factor against angle, BettaEmission against
  // energy.
  Array<GeneralValue, 3> YieldRows{{Bounds{1, kGases}, Bounds{0, 1}, Bounds{1, kYieldFields}}};
};

// One gas's figures at an energy.
struct GasYield {
  double yieldAtNormal = 0;  // atoms per ion
  double yieldAtPeak = 0;
  double peakAngleDeg = 0;
  double bettaEmission = 0;  // exponent of the cosine law of the ejected atoms
  double exponent = 0;       // of the law of incidence; -1 when the peak yield is 0
};
struct YieldAtEnergy {
  std::array<GasYield, kGases + 1> gas;  // by gas 1, 2
};

// The records of a material, ready to be asked for many energies and angles: rows in order of energy, curves read once.
class YieldTable {
 public:
  YieldTable() = default;
  YieldTable(const YieldRecords& records, TableCache& tables, CellText& reader);

  // The energy stage: fills the figures of both gases at energyEV. Between two rows linear in the root of the energy
  // (yields), its inverse (peak angle) or the energy (BettaEmission); the root law above the rows, told once by
  // `extrapolationTold`, and the square law below. A failure ends the stage: what was not reached keeps its value.
  void AtEnergy(double energyEV, YieldAtEnergy& out, bool& extrapolationTold);

  // Whether the yields come as curves.
  bool HasCurves() const { return hasCurves_; }
  // Factor on the yield at an incidence (deg), curves only. Failure 9 for a curve of more than 36 points.
  double AngularFactor(int gas, double incidenceDeg);

 private:
  struct Row {
    double energy;
    double rootEnergy;  // not set for an energy below 0
    GasYield figures;   // without the exponent
  };
  // A curve and the failure that reading it ended with, which comes again whenever it is asked for.
  struct Curve {
    std::string text;
    bool read = false;
    PreparedCurve curve;
    std::optional<RuntimeFailure> failure;
  };

  void TakeRows(const YieldRecords& records, int gas);
  void FromRows(const std::vector<Row>& rows, double energyEV, GasYield& out, bool& extrapolationTold) const;
  double FromCurve(Curve& curve, double x);
  const PreparedCurve& Read(Curve& curve);

  TableCache* tables_ = nullptr;
  CellText* reader_ = nullptr;
  bool stageFromCurves_ = false;
  bool hasCurves_ = false;
  std::array<std::vector<Row>, kGases + 1> rows_;
  std::array<std::array<Curve, 3>, kGases + 1> curves_;  // yield, angular factor, BettaEmission
};

// Yield in atoms per ion at an incidence th (deg) for gas 1 or 2: rises from the normal yield as cos^-f up to the peak
// angle, then falls on a straight line to 0 at 90 degrees. MaiOrigine 1 and 3 take 1 / f. Angles above 90 degrees are
// told, then the abort question.
double SputtYield_at_ion(double th, int gas, const YieldAtEnergy& atEnergy, YieldTable& table, double MaiOrigine,
                         ErrorPrompt& prompt);

}  // namespace orv
