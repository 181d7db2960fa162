#pragma once

#include <optional>
#include <string>

#include "analysis/run_context.h"
#include "numerics/level_lines.h"

namespace orv {

// What the level lines of the plot option "L n" show: the plot's quantity over the cells of primitive n in the
// primitive's own grid (metres or degrees), on a logarithmic scale its logarithms. Takes ListPrimitive from the option
// text, so that a text entered for a re-plot counts. Nothing, with an empty message, without the option or before the
// end of a run; nothing with a message for a primitive that the run does not have. Raises nothing.
std::optional<LevelLineInput> FindLevelLineData(RunContext& run, std::string& message);

// Coordinates of the cells: first coordinate and step of the primitive's header; the cells of a two-sided plate where
// they were built, on its verso face when only that counts; the distance along the cell centres for a primitive whose
// header holds no step.
LevelAxis LevelAxisX(const RunContext& run, int primitive);
LevelAxis LevelAxisY(const RunContext& run, int primitive);

// Takes the base-10 logarithm of every value. What has none gets that of the least positive value, 0 without one; with
// LogScale 1 a step of 32 below it.
void TakeLevelLogarithms(LevelGrid& Z, double LogScale);

// What stands between the last parentheses of a label, as it is.
std::string LevelUnit(const std::string& label);

}  // namespace orv
