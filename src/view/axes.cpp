#include "view/axes.h"

#include <cmath>
#include <utility>
#include <vector>

#include "view/point_pass.h"
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

void SceneAxes::Draw(GlApi& gl, const Options& options, double RRMAXAXES, const WideLine& wide) {
  const Look look{AxisLength(RRMAXAXES, options), options.ColourOfAxis, options.Check1[1] == 0, wide};
  if (options.Check1[3] != 0 || !std::isfinite(look.length)) return;
  if (axisList_ == 0 || !(look == look_)) {
    look_ = look;
    Compile(gl);
  }
  gl.CallList(axisList_);
}

void SceneAxes::Compile(GlApi& gl) {
  const Rgba plain = OptionColour(look_.colour);
  const Rgba first = look_.yellowX ? kYellow : plain;
  const double length = look_.length;
  const std::pair<Vertex, Rgba> ends[] = {
      {VertexAt(0, 0, length), plain}, {VertexAt(0, length, 0), plain}, {VertexAt(length, 0, 0), first}};
  if (axisList_ != 0) gl.DeleteLists(axisList_, 1);
  axisList_ = gl.GenLists(1);
  gl.NewList(axisList_);
  if (look_.wide.halfWidth != 0) {
    std::vector<ColouredVertex> pairs;
    for (const auto& [end, colour] : ends) {
      pairs.push_back({{0, 0, 0}, ToBytes(colour)});
      pairs.push_back({end, ToBytes(colour)});
    }
    WidenLines(pairs, look_.wide);
    gl.DrawVertices(GL_TRIANGLES, pairs);
  } else {
    gl.Begin(GL_LINES);
    for (const auto& [end, colour] : ends) {
      gl.Color(colour);
      gl.Point({0, 0, 0});
      gl.Point(end);
    }
    gl.End();
  }
  gl.EndList();
}

void SceneAxes::AddAxisFromCenter(GlApi& gl, const Options& options, double lineSized, double col01rd, double col01gd,
                                  double col01bd, double col02rd, double col02gd, double col02bd, double posxd,
                                  double posyd, double poszd, double pixelRatio) {
  if (!std::isfinite(posxd) || !std::isfinite(posyd) || !std::isfinite(poszd)) return;
  if (lineList_ == 0) lineList_ = gl.GenLists(1);
  gl.NewList(lineList_);
  gl.LineWidth(static_cast<float>(lineSized * pixelRatio));
  gl.Begin(GL_LINE_STRIP);
  gl.Color(ColourOf(col01rd, col01gd, col01bd, 1));
  gl.Point({0, 0, 0});
  gl.Color(ColourOf(col02rd, col02gd, col02bd, kEndAlpha));
  gl.Point(VertexAt(posxd, posyd, poszd));
  gl.End();
  const double linePlot = options.ThicknessLinePlot;
  gl.LineWidth(static_cast<float>((linePlot == 0 ? 0.1 : linePlot) * pixelRatio));
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
