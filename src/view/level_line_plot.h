#pragma once

#include <functional>
#include <string>

#include "numerics/level_lines.h"
#include "view/drawing_surface.h"

namespace orv {

// The place of a plot on its surface: values from the axes to the surface.
struct PlotArea {
  SurfaceBox box;
  AxisScale x;
  AxisScale y;
  double legendWidth = 0;  // of the room to the right, 0 where there is none

  bool HasRoom() const { return box.width() >= 1 && box.height() >= 1; }
  SurfacePoint At(double xValue, double yValue) const;
};

// Level lines of a quantity with axes, title and legend on a surface. The result is empty, or says why there are no
// lines ("Error in Input Parameters", "Error in Contour Levels"): then the frame stands alone. Anything else that fails
// is left out without a word. The surface keeps its font. At the end events are let through.
std::string PlotLevelLines(LevelLineInput input, DrawingSurface& surface,
                           const std::function<void()>& letEventsThrough = {});

// The frame alone: axes with round numbers, their texts as far as they have room, labels and title, with room for the
// legend of the levels at the right.
PlotArea DrawLevelFrame(const LevelLineInput& input, const LevelRecords& levels, DrawingSurface& surface);

// Traces the levels within a frame, then labels them and draws the legend. No label covers another. `errorText` takes
// the text of a failure, of number 1001 and source "CONREC" for input that cannot be traced, and is empty else.
void CONREC(DrawingSurface& surface, const PlotArea& area, const LevelAxis& X, const LevelAxis& Y, const LevelGrid& Z,
            LevelRecords& levels, std::string& errorText);

}  // namespace orv
