#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "plume/effect_model.h"
#include "plume/sputtering.h"

namespace orv::testing {

using YieldRow = std::array<double, 5>;

// A small model with materials that erode, taken through the sputter effect.
class SputterModel : public EffectModel {
 public:
  explicit SputterModel(const std::vector<std::array<std::string, 2>>& rows, double plot = 19) : EffectModel(rows) {
    IndexPlot = plot;
    RedepositionOn = plot >= 90 ? 1 : 0;
    cleaningOn = plot >= 95 ? 1 : 0;
    SetThruster({1, 2}, {0.8, 0.2});
    for (const char* const name : {"gold", "carbon", "kapton", "glass", "steel"}) AddMaterial(name, 1, 1, 1);
    SetYields("silver", 10490, 107.87, {{150, 0.9, 1.4, 50, 0.7}, {700, 3.1, 5.2, 58, 1.3}});
    SetYields("gold", 19300, 196.97, {{100, 0.6, 1.1, 45, 0.9}, {900, 3.6, 6.4, 60, 1.9}});
    SetYields("carbon", 2200, 12.011, {{150, 0.05, 0.2, 60, 1}, {700, 0.4, 1.3, 65, 1}});
    SetYields("kapton", 1420, 382, {{150, 0.01, 0.03, 60, 0.6}, {700, 0.1, 0.3, 65, 1.1}});
    SetYields("glass", 2500, 60.08, {{150, 0.2, 0.5, 60, 0.8}, {700, 0.5, 1.3, 65, 1.4}});
    SetYields("steel", 7900, 55.85, {{150, 0.3, 0.5, 60, 0.8}, {700, 0.9, 1.8, 65, 1.4}});
    UniformTurn(4, 90);
    UseMaterials();
  }

  // Density (kg/m3), molar mass (g/mol) and the rows of both gases.
  void SetYields(const std::string& name, double density, double molarMass, const std::vector<YieldRow>& gas1,
                 const std::vector<YieldRow>& gas2) {
    const auto found = std::find(materials.MaterialNames.begin(), materials.MaterialNames.end(), name);
    const int m = static_cast<int>(found - materials.MaterialNames.begin());
    materials.MaterialTable(m, 2) = density;
    materials.MaterialTable(m, 3) = molarMass;
    int offset = 0;
    for (const auto* rows : {&gas1, &gas2}) {
      materials.MaterialTable(m, 8 + offset) = static_cast<double>(rows->size());
      int at = 9 + offset;
      for (const YieldRow& row : *rows) {
        for (const double value : row) materials.MaterialTable(m, at++) = value;
      }
      offset += kSecondGasOffset;
    }
  }
  void SetYields(const std::string& name, double density, double molarMass, const std::vector<YieldRow>& rows) {
    SetYields(name, density, molarMass, rows, rows);
  }
  // Yield against energy, factor against angle, exponent against energy, for both gases.
  void SetCurves(const std::string& name, const std::array<std::string, 3>& curves) {
    const auto found = std::find(materials.MaterialNames.begin(), materials.MaterialNames.end(), name);
    const int m = static_cast<int>(found - materials.MaterialNames.begin());
    for (const int offset : {0, kSecondGasOffset}) {
      materials.MaterialTable(m, 8 + offset) = -1.0;
      for (int k = 0; k < 3; ++k) {
        materials.MaterialTable(m, 9 + offset + k) = curves[static_cast<std::size_t>(k)];
      }
    }
  }

  // Steps from 0 degrees, all with the same share of the time.
  void UniformTurn(int steps, double stepAngle) {
    std::vector<double> weights(static_cast<std::size_t>(steps), 1.0 / steps);
    Turn(0, stepAngle, weights);
  }
  void Turn(double from, double stepAngle, const std::vector<double>& weights, double shift = 0) {
    directives.RotationFrom = from;
    directives.RotationStep = stepAngle;
    rotation.RotationSteps = static_cast<int>(weights.size());
    rotation.RotPercentTable(-1, 1) = shift;
    rotation.RotPercentTable(-1, 2) = static_cast<double>(weights.size());
    for (std::size_t k = 1; k <= weights.size(); ++k) {
      rotation.RotPercentTable(k, 1) = from + static_cast<double>(k - 1) * stepAngle;
      rotation.RotPercentTable(k, 2) = weights[k - 1];
    }
  }

  void UseMaterials() {
    materials.MaterialsUsed = CollectMaterialsUsed(table, count, 1, 1, materials.NumberOfMaterialsUsed);
  }

  EffectContext Context() {
    EffectContext context = EffectModel::Context();
    context.CleaningOn = cleaningOn;
    context.MaiOrigine = MaiOrigine;
    return context;
  }

  // The effect on the built model.
  SputterModel& Run(int band = -1) {
    EffectContext context = Context();
    aSpaceApplicationEffectSPUTTERING(context, {band}, output);
    return *this;
  }

  double& At(int p, int i, int j, int q) { return cells.CellData(p, i, j, q); }
  float Stored(int step, int i, int j, int slot, int p) const { return stores.RedepositionStore(step, i, j, slot, p); }
  float Least(int step, int slot, int p) const { return stores.RedepositionExtrema(step, 1, slot, p); }
  float Most(int step, int slot, int p) const { return stores.RedepositionExtrema(step, 2, slot, p); }
  // Sum of a rate times the area over the cells of a primitive, m3/s.
  double Volume(int p, int q) const {
    double sum = 0;
    for (int i = 1; i <= cells.CountI(p); ++i) {
      for (int j = 1; j <= cells.CountJ(p); ++j) sum += Q(p, i, j, q) * std::abs(Q(p, i, j, 4));
    }
    return sum;
  }
  std::vector<double> Values(int p, int q) const {
    std::vector<double> values;
    for (int i = 1; i <= cells.CountI(p); ++i) {
      for (int j = 1; j <= cells.CountJ(p); ++j) values.push_back(Q(p, i, j, q));
    }
    return values;
  }

  int cleaningOn = 0;
  double MaiOrigine = 0;
  SputterOutput output;
};

inline const std::string kTestThruster = "T thr size 0.01 0.01 cells 1 1";

}  // namespace orv::testing
