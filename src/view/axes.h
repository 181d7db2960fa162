#pragma once

#include "numerics/settings.h"
#include "view/outline_pass.h"

namespace orv {

// A vertex coloured by its octant: red with x > 0, green with y > 0, blue with z > 0.
void glVertex3fColor(GlApi& gl, double x, double y, double z);

// The axes of the scene and single lines from its centre, in display lists that are kept.
class SceneAxes {
 public:
  // The three axes of AxisLength as one list of lines, in the line width in force; nothing with "no Plot Axis". The
  // list is made anew when its length, its colours or the options change. X is yellow unless "no Colour Axis X".
  // `wide`: for a line width that the system does not draw.
  void Draw(GlApi& gl, const Options& options, double RRMAXAXES, const WideLine& wide = {});

  // A line from the origin of the matrix in force to a position, at once: the first colour at the origin, the second
  // with alpha 0.6 at the end. `lineSized` is its width in logical pixels of `pixelRatio` device pixels; afterwards the
  // width is `Thickness LinePlot`.
  void AddAxisFromCenter(GlApi& gl, const Options& options, double lineSized, double col01rd, double col01gd,
                         double col01bd, double col02rd, double col02gd, double col02bd, double posxd, double posyd,
                         double poszd, double pixelRatio = 1);

  // Gives the lists back.
  void Release(GlApi& gl);

 private:
  struct Look {
    double length = 0;
    std::array<double, 3> colour{};
    bool yellowX = true;
    WideLine wide;
    friend bool operator==(const Look&, const Look&) = default;
  };
  void Compile(GlApi& gl);

  GLuint axisList_ = 0;
  GLuint lineList_ = 0;
  Look look_;  // of axisList_
};

}  // namespace orv
