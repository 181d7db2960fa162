#pragma once

#include <functional>
#include <string>
#include <vector>

#include "view/gl_control.h"
#include "view/point_lists.h"
#include "view/view_state.h"

// The flat layer in front of the scene: title and colour legend, and the scale along the axes. Both take their colours
// from the function that colours the plot.
namespace orv {

struct LegendInput {
  const PointLists& lists;
  const ViewState& state;
  double RRMAXAXES;  // radius of the scene
  FontHandle labelFont;
};

// One number of the legend. Of a scale that was normalised the physical number stands in `bracket`.
struct LegendLabel {
  int level = 1;        // 1 (lowest) .. levels
  double position = 0;  // along the scale, 0 .. 1
  double growth = 1;    // distance on the axes, as a part of their length
  std::string number;
  std::string bracket;
  std::string note;   // what the lowest level stands for on a logarithmic scale
  std::string plain;  // unit, with the antilogarithm on a logarithmic scale
  std::string Text() const { return number + bracket + note + plain; }
};

// Place of a level 1 .. levels along the scale, exactly 1 at the top, and its distance on the axes.
double LegendPosition(int level, int levels);
double LegendGrowth(int level, int levels);

// The labels from the lowest level up: the lowest, the highest, and every sixth between (every fifth in colour style
// 0). Numbers have as many digits, from four on, as keep neighbours apart.
std::vector<LegendLabel> LegendLabels(const PointLists& lists, double ColorStyle);

// The colour, mixed towards the text colour as far as a contrast of 4.5 to the background asks for (relative luminance
// of sRGB; W3C, Web Content Accessibility Guidelines 2.1).
Rgba ReadableColour(const Rgba& colour, const Rgba& background, const Rgba& text);

// The title in one to three lines no wider than `width`, by a measure of texts. It breaks at carriage returns, and at
// blanks where a line is too wide; what does not fit ends in "...". At least one line, which may be empty.
std::vector<std::string> TitleLines(const std::string& title, int lines, double width,
                                    const std::function<double(const std::string&)>& measure);

// Title, squares and labels; labels along the axes. What is shown depends on ScaleMode: 0 and 1 squares, 1, 2 and 4
// labels in the scene.
void DrawLegend(const LegendInput& input, glxCtl& control);

// The scale along the axes (ScaleMode 1, 3 and 4): three points for each level, in one batch. Leaves its point size.
void DrawScaleOnAxes(GlApi& gl, const ViewState& state, const PointLists& lists, double RRMAXAXES,
                     double pixelRatio = 1);

}  // namespace orv
