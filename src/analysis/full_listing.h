#pragma once

#include "analysis/run_context.h"

namespace orv {

// Whether the run asks for the listing of all cells: the plot option "G", or a geometry plot.
bool WantsFullListing(const RunContext& run);

// Writes "Orvfull..._tmp_.xls" beside the workbook: for each primitive a line of its grid, the heads, and a row for
// each cell with its place and normal before and after placement (metres), its area, the plotted quantity, angles,
// distance, current and energy. Only primitive ListPrimitive when the plot option "L" names one. True when it was
// written.
bool WriteFullListing(RunContext& run);

}  // namespace orv
