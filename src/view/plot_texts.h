#pragma once

#include "view/gl_control.h"
#include "view/point_pass.h"
#include "view/scene_scale.h"
#include "view/view_state.h"

namespace orv {

// The first word of the titles of analysis plots.
inline constexpr const char* kPlotPrefix = "OrvValis";

// The word at the head of a title.
std::string ProductWord(const std::string& title);

struct PlotTextInput {
  const PointLists& lists;
  const ViewState& view;
  const SceneScale& scale;
  const PointPass& points;
  int CURRINDEXI = 0;
  FontHandle labelFont = 0;
  FontHandle smallFont = 0;
};

// Height of the lines that a plot may write in the corner below its legend, in logical pixels.
double CornerTextHeight(const PointLists& lists, const ViewState& view);

// The texts of a plot: the value at the moving point with its limits, the date in the corner and at the moving point,
// the coordinates of the origin.
void DrawPlotTexts(const PlotTextInput& input, glxCtl& control);

}  // namespace orv
