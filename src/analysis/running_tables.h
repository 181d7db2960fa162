#pragma once

#include "analysis/run_context.h"

namespace orv {

inline constexpr std::size_t kRunningTableLines = 15000;

// Puts one row a primitive of this run at the head of "OrvforTables_.xls" beside the workbook: largest values, sums of
// forces and moments, the case line. A table last written on an earlier day begins anew, with its heads in the
// thruster's place. The file is stamped with the run's clock. True when it was written.
bool WriteRunningTable(RunContext& run);

// Puts the sums of forces and moments of every rotation step at the head of "OrvForcesAndMoments_.xls". Nothing is
// written, and the result is true, when no step was computed.
bool WriteForcesAndMoments(RunContext& run);

}  // namespace orv
