#pragma once

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "plume/plume_models.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {

// Quantities of a cell as the plume leaves them.
struct PlumeValues {
  double n = 0, N = 0, J = 0, E = 0, v = 0, n1 = 0, n2 = 0;
};

// A thruster by its columns of Table 1, with the laws as plain formulas of angle and distance. Nothing is carried from
// cell to cell.
struct PlumeSetup {
  std::array<double, 18> C{};  // by column of Table 1
  double charge1 = 1, charge2 = 2, molarMass = 131.3, share1 = 0.75, share2 = 0.25;
  std::vector<std::pair<double, double>> density, energy, ratio;
  PhysicalConstants constants;

  double e() const { return constants.ElementaryCharge; }
  double M() const { return molarMass / 1000 / constants.AvogadroNumber; }
  double Ih() const { return C[3] / 2; }
  double Speed(double charge, double E) const { return std::sqrt(2 * e() * charge * E / M()); }
  static double Radians(double degrees) { return degrees * std::numbers::pi / 180; }

  double CosineN(double theta) const {
    return (C[5] * std::pow(std::cos(Radians(theta)), C[6]) + C[7]) / std::numbers::pi;
  }
  double InverseSquareE(double theta) const {
    const double a = theta < C[16] ? theta : C[16];
    return C[13] + C[14] / (a * a + C[15]);
  }
  double ExponentialE(double theta) const {
    const double x = Radians(theta < C[16] ? theta : C[16]);
    return C[11] * std::exp(-std::sin(x) * std::sin(x) / C[12]) - C[13] * std::exp(-(x / C[14]) * (x / C[14])) + C[15];
  }
  static double Line(const std::vector<std::pair<double, double>>& rows, double x) {
    if (x <= rows.front().first) return rows.front().second;
    for (std::size_t k = 1; k < rows.size(); ++k) {
      if (x > rows[k].first) continue;
      const double share = (x - rows[k - 1].first) / (rows[k].first - rows[k - 1].first);
      return rows[k - 1].second + share * (rows[k].second - rows[k - 1].second);
    }
    return rows.back().second;
  }

  // Two charge states of the shares f1 and f2, with a density law N and an energy E at distance r.
  PlumeValues TwoStates(double N, double E, double r, double f1, double f2) const {
    PlumeValues x;
    x.N = N;
    x.J = N * Ih() / (r * r);
    x.E = E;
    x.v = Speed(charge1, E);
    x.n1 = x.J / (e() * charge1 * Speed(charge1, E)) * f1;
    x.n2 = x.J / (e() * charge2 * Speed(charge2, E)) * f2;
    x.n = x.n1 + x.n2;
    return x;
  }
  PlumeValues Model0(double theta, double r) const { return TwoStates(CosineN(theta), C[4], r, share1, share2); }
  PlumeValues Model1(double theta, double r) const {
    const double j = C[9] + C[10] / (theta * theta + C[11]);
    PlumeValues x;
    x.N = j * 10 / Ih();
    x.J = j * 10 / (r * r);
    x.E = InverseSquareE(theta);
    x.n = x.J / e() / (Speed(1, x.E) + 1e-05);
    x.n1 = x.n;
    x.v = Speed(charge1, C[4]);
    return x;
  }
  PlumeValues Model2(double theta, double r) const {
    return TwoStates(CosineN(theta), InverseSquareE(theta), r, share1, share2);
  }
  PlumeValues Model3(double theta, double r) const {
    PlumeValues x;
    x.N = CosineN(theta);
    x.J = x.N * Ih() / (r * r);
    x.E = C[4];
    x.n = x.J / e() / Speed(1, C[4]);
    x.v = Speed(charge1, C[4]);
    return x;
  }
  PlumeValues Model100(double theta, double r) const {
    const double N = C[5] * std::exp(Radians(theta) * C[6]) + C[7] * std::pow(Radians(theta), C[9]) + C[10];
    return TwoStates(N, ExponentialE(theta), r, share1, share2);
  }
  double Share1(double theta) const {
    if (ratio.empty()) return share1;
    const double R = Line(ratio, theta);
    const double w1 = R * std::pow(e() * charge1, 1.5);
    return w1 / (w1 + (1 - R) * std::pow(e() * charge2, 1.5));
  }
  PlumeValues Model1000(double theta, double r) const {
    const double f1 = Share1(theta);
    const double f2 = ratio.empty() ? share2 : 1 - f1;
    return TwoStates(Line(density, theta), Line(energy, std::min(theta, C[16])), r, f1, f2);
  }

  ThrusterVector Data() const {
    ThrusterVector data = EmptyThrusterData();
    data(slot::FirstGas) = std::string("Xe+");
    data(slot::SecondGas) = std::string("Xe++");
    data(slot::SpeciesCount) = 2.0;
    data(slot::Charge1) = charge1;
    data(slot::Charge2) = charge2;
    data(slot::MolarMass) = molarMass;
    data(slot::MolarMass2) = 999.0;  // never used
    data(slot::CurrentFraction1) = share1;
    data(slot::CurrentFraction2) = share2;
    for (int column = 3; column <= 17; ++column) data(7 + column) = C[static_cast<std::size_t>(column)];
    data(slot::indexfinThruster) = 24.0;
    int last = 24;
    int end = slot::indexfinThrusterDensity;
    for (const auto* table : {&density, &energy, &ratio}) {
      for (const auto& [x, y] : *table) {
        data(++last) = x;
        data(++last) = y;
      }
      data(end--) = C[17] == 1000 ? static_cast<double>(last) : 0.0;
    }
    return data;
  }
};

// Primitives of one row of cells each, with the angle and the distance of every cell set by hand.
class PlumeModel {
 public:
  explicit PlumeModel(int primitives = 1, int cellsEach = 12) {
    input.numberPrimWithVolumic = primitives;
    cells.numberPrimWithVolumic = primitives;
    cells.CellData.Size(primitives + 10, 5, cellsEach, 120);
    for (int p = 1; p <= primitives; ++p) Set(p, 0, 0, 1) = 1;
  }

  double& Set(int p, int i, int j, int q) { return cells.CellData(p, i, j, q); }
  // Adds a cell behind those of a primitive; what the plume writes is marked beforehand.
  void Add(double theta, double r, int p = 1) {
    const int j = static_cast<int>(++Set(p, 0, 0, 2));
    Set(p, 1, j, 8) = r;
    Set(p, 1, j, 10) = theta;
    for (const int q : {13, 14, 15, 16, 17, 33, 34, 61}) Set(p, 1, j, q) = kMark;
  }
  double Data(int j, int q, int p = 1) const { return cells.CellData(p, 1, j, q); }

  void Run(const ThrusterVector& data, const PhysicalConstants& constants = {}) {
    aSpaceApplicationThrusterPLUME(cells, data, constants, input, result, prompt);
  }
  void Run(const PlumeSetup& setup) { Run(setup.Data(), setup.constants); }

  // Compares quantities 13 to 17 of a cell, and 33 and 34 when the law writes them.
  void Expect(int j, const PlumeValues& x, bool states = true, int p = 1) const {
    const std::string where = "cell " + std::to_string(j) + " at " + std::to_string(Data(j, 10, p)) + " deg, " +
                              std::to_string(Data(j, 8, p)) + " m, quantity ";
    const auto near = [&](int q, double expected) {
      EXPECT_NEAR(Data(j, q, p), expected, 1e-12 * std::abs(expected)) << where << q;
    };
    near(13, x.n);
    near(14, x.N);
    near(15, x.J);
    near(16, x.E);
    near(17, x.v);
    near(33, states ? x.n1 : kMark);
    // The second density is a difference: it has the rounding of the sum.
    EXPECT_NEAR(Data(j, 34, p), states ? x.n2 : kMark, 1e-12 * std::abs(states ? x.n : kMark)) << where << 34;
  }
  void ExpectZeros(int j, int p = 1) const {
    for (int q = 13; q <= 17; ++q) EXPECT_EQ(Data(j, q, p), 0) << "cell " << j << " quantity " << q;
  }
  void ExpectMarks(int j, const std::vector<int>& quantities, int p = 1) const {
    for (const int q : quantities) EXPECT_EQ(Data(j, q, p), kMark) << "cell " << j << " quantity " << q;
  }

  static constexpr double kMark = -777;
  Cells cells;
  PlumeInput input;
  PlumeResult result;
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

}  // namespace orv::testing
