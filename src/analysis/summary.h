#pragma once

#include "analysis/run_context.h"

namespace orv {

// Smallest and largest value, sum and integral (sum of value times absolute area) of one quantity on one primitive.
struct QuantitySummary {
  double Min = 0;
  double Max = 0;
  double Sum = 0;
  double Integral = 0;
  bool twoSided = false;  // the halves below hold values
  double MinFirst = 0, MaxFirst = 0, MinSecond = 0, MaxSecond = 0;
  bool AllZero() const { return Min == 0 && Max == 0; }
};

// Summary of quantity q of primitive p, also stored in CellData(p, 0, 1 .. 8, q). Min and Max start from cell (1, 1);
// the thruster counts with this one cell only. A primitive of type code 15 has its two sides told apart.
QuantitySummary SummariseQuantity(RunContext& run, int primitive, int quantity);

// Sum and integral together; a primitive without weight is left out of the tables.
inline double PrimitiveWeight(const QuantitySummary& s) {
  return s.Sum + s.Integral;
}

// The last primitive of a run that the arrays hold, the shells of a plasma volume included.
int LastPrimitive(const RunContext& run);

// Column 1 of the model for a primitive: the material, or the name of the thruster. The shells of a plasma volume have
// that of the last row, from which they were made. Trimmed, with plain blanks.
std::string MaterialColumn(const RunContext& run, int primitive);
std::string PrimitiveName(const RunContext& run, int primitive);

// Sum of the absolute areas of a primitive's cells, m2.
double PrimitiveArea(const RunContext& run, int primitive);

// Numbers that a user wants to see at the end of a run.
struct RunSummary {
  int primitives = 0;
  long cells = 0;
  long lit = 0;
  long shadowed = 0;
  long outside = 0;                       // beyond the limit angle
  double densityMin = 0, densityMax = 0;  // over lit cells with a positive density, 1/m3
};

RunSummary SummariseRun(RunContext& run);

}  // namespace orv
