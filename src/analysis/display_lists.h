#pragma once

#include "analysis/run_context.h"
#include "numerics/vectors.h"
#include "view/point_lists.h"

namespace orv {

inline constexpr double kAnalysisScale = 1.01;  // FactorScale of a run's plots
inline constexpr int kAxisPoints = 20;          // on each axis of the thruster
inline constexpr int kMostLineEntries = 10000;  // entries of lines behind the outlines

// Moves the results of a run into its point lists: cell centres with the values of the plot, outlines, the axes of the
// thruster as points and lines, the vectors of the heat flux behind them (hidden at first), the turn of the rotating
// primitive. Adds quantity, scale and the texts of a turn or a plasma volume to the plot's title. The stores of the run
// stay as they are; the lists are made aside and handed over whole, so that no paint meets half of them. With a plot
// requested it is a re-plot, on the scale of the plot before. Raises nothing but ProgramEnd: each part is a statement
// of the driver's block.
void FillDisplayLists(RunContext& run);

// Adds one line, two entries of TraceList, behind the outlines: from `origin` - `offset` over `length` along
// `direction`; the entry behind it lifts the pen. `count`: entries of lines so far; from 10000 on nothing is added.
// Failure 9 beyond the table: `count` keeps its value.
void AddTraceLine(PointLists& lists, int& count, double length, const Vector3& origin, const Vector3& direction,
                  const Vector3& offset);

}  // namespace orv
