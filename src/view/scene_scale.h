#pragma once

#include <array>
#include <functional>

#include "numerics/error_prompt.h"
#include "view/point_lists.h"

namespace orv {

struct AxisRecord {
  double Min = 0;
  double Max = 0;
  double Span = 0;
  double Offset = 0;
  double Gain = 1;
};

// How the scene measures a plot. Everything is scaled so that it fits a sphere of radius Scale80 about the origin.
struct SceneScale {
  float RRMAXAXES = 0;  // largest distance of a point from the origin
  float RRMINAXES = 0;  // the smallest
  float Scale80 = 10;
  float InverseScale = 0.1F;
  float RememberedRadius = 0;             // radius of the last full plot, before it was scaled
  std::array<AxisRecord, 4> AxisRange{};  // 1 .. 3

  // Largest and smallest distance over the points that are drawn (all of them with PenUpMode).
  void NormPass(const PointLists& lists);
  void AxisPass(const PointLists& lists);
};

// 1 while row 1 of EventList holds only 0 or only 1.
int FindEventTwoState(const PointLists& lists);

// Brings the points, outlines, vectors and the frames of a turn into the scene. A plot whose FactorScale is 1 is
// stretched to fill each axis; any other keeps its proportions. A re-plot keeps the scale of the plot before it. Runs
// once a plot: nothing happens while PlotNormalised is 1.
void NormaliseLists(PointLists& lists, SceneScale& scale, ErrorPrompt& prompt);

}  // namespace orv
