#pragma once

#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"

namespace orv {

// The effect of the plume on a radio link through a plasma volume.
struct RadioLink {
  double meanDensity = 0;  // 1/m3, weighted by area
  double area = 0;         // m2
  // Integrals along the paths: of the density (1/m2) and of its square (1/m5); weighted by area, largest, smallest.
  double meanIntegral = 0, maxIntegral = 0, minIntegral = 0;
  double meanSquare = 0, maxSquare = 0, minSquare = 0;

  // Dispersion constants of an integral: rad Hz and rad Hz3.
  static double K1(double integral);
  static double K2(double integralOfSquare);
  // Phase shift at 10 GHz, degrees.
  static double PhaseShiftDeg(double k1, double k2);
};

// Integrates the density along the rows of the volumic primitives first .. last: the running integrals go to quantities
// 24 and 25. `text` receives the report in one cell's text, blanks as Chr(160).
RadioLink PlasmaEffect(Cells& cells, const std::vector<std::string>& PrimitiveNames, int ThrusterPrimitive, int first,
                       int last, std::string& text, ErrorPrompt& prompt);

}  // namespace orv
