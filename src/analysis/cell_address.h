#pragma once

#include <string>

#include "analysis/run_context.h"

namespace orv {

// The cell behind an entry of the lists, as a reader of results names it.
struct CellAddress {
  int primitive = 0;  // 0: the entry is no cell
  std::string name;   // of the primitive
  int i = 0;
  int j = 0;
  int quantity = 0;   // of the plot shown
  std::string label;  // of the quantity, without its unit
  std::string unit;   // empty for a plain number
  double value = 0;   // in that unit, never a logarithm or a share of the scale
  bool mean = false;  // the plot has values for each step of a turn, and this is their mean

  bool Found() const { return primitive > 0; }
  // One line for the status bar, several for a tip; both empty without a cell.
  std::string StatusText() const;
  std::string TipText() const;
};

// The cell of an entry of PointList while the plot of a run is shown; none for the points of the thruster's axes, for
// entries beyond the list and for other plots. Raises nothing.
CellAddress AddressOfEntry(const RunContext& run, int entry);

}  // namespace orv
