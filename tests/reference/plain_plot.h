#pragma once

#include <GL/gl.h>
#include <algorithm>

#include "view/dynamic_plot.h"

// The plain form of the plot: one glBegin loop over the lists, every colour worked out on the way. What the program
// ships must draw the same pixels.
namespace orv::reference {

inline void PlainColour(const ColourScale& scale, double value, double minimum, double maximum) {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;
  scale.ColorScale(value, red, green, blue, alpha, minimum, maximum);
  glColor4d(red, green, blue, alpha);
}

// Outlines of a plot whose outlines take six places each, up to the entry TraceMax.
inline void PlainOutlines(const PointLists& lists, int sidesMode, const ColourScale& scale) {
  const auto x = lists.TraceList.row(0);
  const auto y = lists.TraceList.row(1);
  const auto z = lists.TraceList.row(2);
  const auto pen = lists.TraceList.row(3);
  const auto vertex = [&](int i) {
    const auto p = static_cast<std::size_t>(i);
    glVertex3f(x[p], y[p], z[p]);
  };
  const auto up = [&](int i) { return pen[static_cast<std::size_t>(i)] == kPenUp; };
  const GLenum primitive = sidesMode > 1 ? GL_POLYGON : GL_LINE_LOOP;
  // The last entry of the last outline whose five points are all there.
  const int whole = (std::min(lists.TraceMax, lists.OutlineCount - 1) + 2) / kOutlineEntries;
  const int last = whole * kOutlineEntries - 1;
  if (sidesMode >= kRectoSide) {
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);
  }
  glBegin(primitive);
  for (int i = 0; i <= last; ++i) {
    if (i % kOutlineEntries == 0) {
      PlainColour(scale, lists.PointList(0, i / kOutlineEntries), lists.PlotValueMin, lists.PlotValueMax);
    }
    if (sidesMode == kVersoSide) {
      if (!up(i)) continue;
      glEnd();
      glBegin(primitive);
      for (int k = i - 1; k >= std::max(0, i - 4) && !up(k); --k) vertex(k);
    } else if (up(i)) {
      glEnd();
      glBegin(primitive);
      if (sidesMode == kBothSides) {
        for (int k = i - 1; k >= std::max(0, i - 4) && !up(k); --k) vertex(k);
        glEnd();
        glBegin(primitive);
      }
    } else {
      vertex(i);
    }
  }
  glEnd();
  glDisable(GL_CULL_FACE);
}

inline void PlainPoints(const PointLists& lists, const ViewState& view, const ColourScale& scale, int first, int last,
                        bool upwards) {
  const EventStates events(lists);
  const bool penUp = lists.PenUpMode == 1;
  const Rgba nominal = OptionColour(view.options.ColourOfPlotNominal, 0.6F);
  const Rgba event = OptionColour(view.options.ColourOfPlotEvents, 0.6F);
  const GLenum primitive = penUp ? GL_POINTS : GL_LINE_STRIP;
  glBegin(primitive);
  for (int n = 0; n <= last - first; ++n) {
    const int i = upwards ? first + n : last - n;
    if (penUp) {
      PlainColour(scale, lists.PointList(0, i), lists.PlotValueMin, lists.PlotValueMax);
    } else {
      if (lists.PointList(4, i) == kPenUp) {
        glEnd();
        glBegin(primitive);
        continue;
      }
      const Rgba& colour = events.At(lists.PointList(0, i)) > EventStates::kInEvent ? event : nominal;
      glColor4f(colour.red, colour.green, colour.blue, colour.alpha);
    }
    glVertex3f(lists.PointList(1, i), lists.PointList(2, i), lists.PointList(3, i));
  }
  glEnd();
}

// Compiles the plot into a list.
inline void PlainRebuild(GLuint list, const PointLists& lists, const ViewState& view, int first, int last,
                         bool upwards) {
  const ColourScale scale{view.ColorStyle, lists.legend.LogScale};
  glNewList(list, GL_COMPILE);
  glShadeModel(GL_SMOOTH);
  if (lists.PenUpMode == 1) {
    glLineWidth(static_cast<float>(Thickness(view.options.ThicknessLineAxis)));
    if (view.SidesMode != kDots) PlainOutlines(lists, view.SidesMode, scale);
    glPointSize(static_cast<float>(Thickness(view.options.ThicknessLinePlot)));
  }
  glLineWidth(static_cast<float>(Thickness(view.options.ThicknessLinePlot)));
  PlainPoints(lists, view, scale, first, std::min(last, lists.NumberPoints), upwards);
  glEndList();
}

}  // namespace orv::reference
