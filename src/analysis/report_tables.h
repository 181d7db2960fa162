#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "analysis/summary.h"

namespace orv {

// How a summary of a quantity appears.
enum class SummaryForm {
  Silent,  // prints nothing, keeps the sums for the force tables
  Full,    // label, heads, rows, and the extremes of the rotation steps
  Compact  // label and rows
};

// Forces and moments: their sum over a primitive means something.
constexpr bool IsForceOrMoment(int quantity) {
  return (quantity >= 23 && quantity <= 28) || (quantity >= 36 && quantity <= 56) || (quantity >= 64 && quantity <= 81);
}

// The tables of the plot report; lines go to the sink.
class ReportTables {
 public:
  ReportTables(RunContext& run, std::function<void(const std::string&)> print);

  // The table of one quantity over the primitives 1 .. `primitives`. Those without weight have no row, a quantity
  // without label has no table. Failure 9 for a quantity outside 0 .. 120.
  void Summary(int quantity, SummaryForm form, int primitives);

  // Corners of each primitive after placement, metres; for the thruster its source point and one 1 m down the axis.
  void Corners();

 private:
  const QuantitySummary& Of(int p, int q);
  void PrintRow(int p, int q, SummaryForm form);
  std::string ForceColumns(int p, int q);
  void PrintSputterSteps();
  void PrintRedepositionSteps(int q, int p);

  RunContext& run_;
  std::function<void(const std::string&)> print_;
  Array<double, 2> QuantitySums_;  // (primitive 0 .., quantity 0 .. 120); row 0 the quantity itself
  std::map<std::pair<int, int>, QuantitySummary> known_;
};

// The slot 1 .. 15 of the redeposition stores that a quantity 90 .. 104 shows, found by the material's name in its
// label; 0 when no material in use is there.
int RedepositionSlot(const RunContext& run, int quantity);

}  // namespace orv
