#include "view/axes.h"

#include <cmath>

#include "view/view_state.h"

namespace orv {
namespace {

constexpr Rgba kYellow{1, 1, 0, 1};
constexpr float kEndAlpha = 0.6F;

Vertex VertexAt(double x, double y, double z) {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

Rgba ColourOf(double r, double g, double b, float alpha) {
  return {static_cast<float>(r), static_cast<float>(g), static_cast<float>(b), alpha};
}

}  // namespace

void glVertex3fColor(GlApi& gl, double x, double y, double z) {
  gl.Color({x > 0 ? 1.0F : 0.0F, y > 0 ? 1.0F : 0.0F, z > 0 ? 1.0F : 0.0F, 1});
  gl.Point(VertexAt(x, y, z));
}

void SceneAxes::Draw(GlApi& gl, const Options& options, double RRMAXAXES) {
  const Look look{AxisLength(RRMAXAXES, options), options.ColourOfAxis, options.Check1[1] == 0};
  if (options.Check1[3] != 0 || !std::isfinite(look.length)) return;
  if (axisList_ == 0 || !(look == look_)) {
    look_ = look;
    Compile(gl);
  }
  gl.CallList(axisList_);
}

void SceneAxes::Compile(GlApi& gl) {
  if (axisList_ != 0) gl.DeleteLists(axisList_, 1);
  axisList_ = gl.GenLists(1);
  gl.NewList(axisList_);
  gl.Begin(GL_LINES);
  gl.Color(OptionColour(look_.colour));
  gl.Point({0, 0, 0});
  gl.Point(VertexAt(0, 0, look_.length));
  gl.Point({0, 0, 0});
  gl.Point(VertexAt(0, look_.length, 0));
  if (look_.yellowX) gl.Color(kYellow);
  gl.Point({0, 0, 0});
  gl.Point(VertexAt(look_.length, 0, 0));
  gl.End();
  gl.EndList();
}

void SceneAxes::AddAxisFromCenter(GlApi& gl, const Options& options, double lineSized, double col01rd, double col01gd,
                                  double col01bd, double col02rd, double col02gd, double col02bd, double posxd,
                                  double posyd, double poszd) {
  if (!std::isfinite(posxd) || !std::isfinite(posyd) || !std::isfinite(poszd)) return;
  if (lineList_ == 0) lineList_ = gl.GenLists(1);
  gl.NewList(lineList_);
  gl.LineWidth(static_cast<float>(lineSized));
  gl.Begin(GL_LINE_STRIP);
  gl.Color(ColourOf(col01rd, col01gd, col01bd, 1));
  gl.Point({0, 0, 0});
  gl.Color(ColourOf(col02rd, col02gd, col02bd, kEndAlpha));
  gl.Point(VertexAt(posxd, posyd, poszd));
  gl.End();
  const double linePlot = options.ThicknessLinePlot;
  gl.LineWidth(static_cast<float>(linePlot == 0 ? 0.1 : linePlot));
  gl.EndList();
  gl.CallList(lineList_);
}

void SceneAxes::Release(GlApi& gl) {
  for (GLuint* list : {&axisList_, &lineList_}) {
    if (*list != 0) gl.DeleteLists(*list, 1);
    *list = 0;
  }
}

}  // namespace orv
