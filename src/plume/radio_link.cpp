#include "plume/radio_link.h"

#include <algorithm>
#include <cmath>

#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kLightSpeed = 300000000.0;   // m/s
constexpr double kFrequency = 10000000000.0;  // Hz
constexpr double kPlasmaConstant = 9;         // the plasma frequency is 9 sqrt(n) Hz
constexpr int kDigits = 3;

// Sums over the paths; a path is one row i of a volumic primitive.
struct PathSums {
  double density = 0, area = 0;
  double integral = 0, square = 0;
};

}  // namespace

double RadioLink::K1(double integral) {
  return kPi15 * std::pow(kPlasmaConstant, 2) / kLightSpeed * integral;
}

double RadioLink::K2(double integralOfSquare) {
  return 3.0 / 4 * kPi15 * std::pow(kPlasmaConstant, 4) / kLightSpeed * integralOfSquare;
}

double RadioLink::PhaseShiftDeg(double k1, double k2) {
  return ((1 / kFrequency) * k1 + (1 / std::pow(kFrequency, 3)) * k2) * 180 / kPi15;
}

RadioLink PlasmaEffect(Cells& cells, const std::vector<std::string>& PrimitiveNames, int ThrusterPrimitive, int first,
                       int last, std::string& text, ErrorPrompt& prompt) {
  FailureBlock block(prompt, FailureLabels::Of("PlasmaEffect"));
  CellBlock& data = cells.CellData;
  RadioLink link;
  link.minIntegral = 1e+60;
  link.minSquare = 1e+120;
  PathSums sums;
  for (int p = first; p <= last; ++p) {
    if (p == ThrusterPrimitive) continue;
    const double step = data(p, 0, 0, 5);
    const int n = std::min(cells.CountI(p), data.cellsI());
    const int m = std::min(cells.CountJ(p), data.cellsJ());
    for (int i = 1; i <= n; ++i) {
      double integral = 0;
      double square = 0;
      double rowArea = 0;
      for (int j = 1; j <= m; ++j) {
        const double density = data(p, i, j, 13);
        const double area = data(p, i, j, 4);
        sums.density += density * area;
        rowArea += area;
        integral += density * step;
        square += density * density * step;
        data(p, i, j, 24) = integral;
        data(p, i, j, 25) = square;
      }
      sums.area += rowArea;
      sums.integral += rowArea * integral;
      sums.square += rowArea * square;
      link.minIntegral = std::min(link.minIntegral, integral);
      link.maxIntegral = std::max(link.maxIntegral, integral);
      link.minSquare = std::min(link.minSquare, square);
      link.maxSquare = std::max(link.maxSquare, square);
    }
  }
  link.area = sums.area;
  block([&] { link.meanDensity = Divide(sums.density, sums.area); });
  block([&] { link.meanIntegral = Divide(sums.integral, sums.area); });
  block([&] { link.meanSquare = Divide(sums.square, sums.area); });

  const auto number = [](double value) { return SignificantText(value, kDigits); };
  const auto three = [&](double a, double b, double c) { return number(a) + number(b) + number(c); };
  std::string name = static_cast<std::size_t>(first) < PrimitiveNames.size()
                         ? PrimitiveNames[static_cast<std::size_t>(first)]
                         : std::string();
  name = name.substr(0, name.rfind("__"));
  const double k1 = RadioLink::K1(link.meanIntegral);
  const double k2 = RadioLink::K2(link.meanSquare);
  const double k1Max = RadioLink::K1(link.maxIntegral);
  const double k2Max = RadioLink::K2(link.maxSquare);
  text = " Average #" + name + " =" + number(link.meanDensity) + " @ " + number(link.area) + " m²" +
         " Average in the volume, max min    K1(rd.Hz) = " + three(k1, k1Max, RadioLink::K1(link.minIntegral)) +
         " K2(rd.Hz3) = " + three(k2, k2Max, RadioLink::K2(link.minSquare)) + " Phase shift for Freq=10GHz " +
         number(RadioLink::PhaseShiftDeg(k1, k2)) + " deg  (max " + number(RadioLink::PhaseShiftDeg(k1Max, k2Max)) +
         " deg ).              Average  integral(density.dl) " + number(link.meanIntegral) + " (m-2)";
  text = ReplaceAll(text, " ", kHardBlank);
  return link;
}

}  // namespace orv
