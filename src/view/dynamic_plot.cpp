#include "view/dynamic_plot.h"

#include <algorithm>

#include "view/legend.h"

namespace orv {
namespace {

constexpr float kPlotAlpha = 0.6F;
constexpr double kBarShare = 2.05;  // six bars of full length would reach over about the diameter of the scene
constexpr int kBarDivisor = 6;

// Scene units for a unit of value of the bars.
double ValueGain(const PointLists& lists, double radius) {
  const double maximum = lists.ValueMin == lists.ValueMax ? lists.ValueMin + 1 : lists.ValueMax;
  return kBarShare / (maximum - lists.ValueMin) * radius / kBarDivisor;
}

// The value from which bars grow: 0, or the bound next to it.
double ValueBase(const PointLists& lists) {
  if (lists.ValueMin > 0) return lists.ValueMin;
  return lists.ValueMax < 0 ? lists.ValueMax : 0;
}

}  // namespace

double Thickness(double option) {
  return option == 0 ? 0.1 : option;
}

DynamicPlot::Style DynamicPlot::StyleOf(GlApi& gl, const Input& input) const {
  Style style;
  style.generation = generation_;
  style.ColorStyle = input.view.ColorStyle;
  style.ScaleMode = input.view.ScaleMode;
  style.SidesMode = input.view.SidesMode;
  style.valueColours = input.view.valueColours;
  style.ValueAxis = input.lists.ValueAxis;
  style.vectorsShown = input.lists.VectorsShown;
  style.options = input.view.options;
  const double widest =
      std::max(Thickness(style.options.ThicknessLineAxis), Thickness(style.options.ThicknessLinePlot));
  style.pixelRatio = input.pixelRatio;
  if (widest * input.pixelRatio > gl.WidestLine()) {
    style.towardsCamera = input.towardsCamera;
    style.unitsPerPixel = input.unitsPerPixel;
  }
  return style;
}

void DynamicPlot::TakePlot(const Input& input) {
  outlines_.Take(input.lists);
  points_.Take(input.lists);
  takenGeneration_ = generation_;
}

void DynamicPlot::TakeStyle(GlApi& gl, const Input& input) {
  const Options& options = input.view.options;
  PointPass::Look look;
  look.nominal = OptionColour(options.ColourOfPlotNominal, kPlotAlpha);
  look.event = OptionColour(options.ColourOfPlotEvents, kPlotAlpha);
  look.scale = {input.view.ColorStyle, input.lists.legend.LogScale};
  look.valueColours = input.view.valueColours;
  look.valueGain = ValueGain(input.lists, input.scale.RRMAXAXES);
  look.valueBase = ValueBase(input.lists);
  const auto wide = [&](double thickness) {
    return WideLineOf(gl, Thickness(thickness) * input.pixelRatio, input.towardsCamera, input.unitsPerPixel);
  };
  look.wide = wide(options.ThicknessLinePlot);
  wideOutline_ = wide(options.ThicknessLineAxis);
  points_.SetLook(look);
  if (input.lists.PenUpMode == 1) points_.ColourByValue(input.lists);
  outlineChunks_.Clear(gl);
  pointChunks_.Clear(gl);
}

bool DynamicPlot::Prepare(GlApi& gl, const Input& input) {
  const Style style = StyleOf(gl, input);
  const Extent extent{input.CURRINDEXI, input.CURRINDEXMINI, input.lists.TraceMin, input.lists.TraceMax};
  const bool sameStyle = style == style_;
  if (complete_ && sameStyle && extent == extent_) return false;
  if (takenGeneration_ != generation_) TakePlot(input);
  if (plotList_ == 0 || !sameStyle) TakeStyle(gl, input);
  style_ = style;
  extent_ = extent;
  complete_ = false;  // a failure on the way leaves the plot to the next paint
  Rebuild(gl, input);
  complete_ = true;
  return true;
}

void DynamicPlot::Draw(GlApi& gl, const Input& input) {
  Prepare(gl, input);
  gl.CallList(plotList_);
}

void DynamicPlot::Release(GlApi& gl) {
  outlineChunks_.Clear(gl);
  pointChunks_.Clear(gl);
  if (plotList_ != 0) gl.DeleteLists(plotList_, 1);
  plotList_ = 0;
  complete_ = false;
}

void DynamicPlot::EmitOutlines(const PointLists& lists, GlApi& gl, int first, int last) const {
  std::vector<ColouredVertex> vertices;
  outlines_.Append(lists, style_.SidesMode, first, last, points_.Colours(), vertices);
  if (style_.SidesMode < kRectoSide && wideOutline_.halfWidth != 0) {
    WidenLines(vertices, wideOutline_);
    if (!vertices.empty()) gl.DrawVertices(GL_TRIANGLES, vertices);
  } else if (!vertices.empty()) {
    gl.DrawVertices(OutlinePass::Primitive(style_.SidesMode), vertices);
  }
}

void DynamicPlot::EmitPairs(const PointLists& lists, GlApi& gl, int last) const {
  std::vector<ColouredVertex> pairs;
  OutlinePass::AppendPairs(lists, last, points_.Colours(), pairs);
  if (wideOutline_.halfWidth != 0) WidenLines(pairs, wideOutline_);
  if (!pairs.empty()) gl.DrawVertices(wideOutline_.halfWidth != 0 ? GL_TRIANGLES : GL_LINES, pairs);
}

void DynamicPlot::Rebuild(GlApi& gl, const Input& input) {
  const PointLists& lists = input.lists;
  const Options& options = input.view.options;
  const bool penUp = lists.PenUpMode == 1;
  // The bound of this loop only: the index itself goes on to the end of the list.
  const int last = std::min(input.CURRINDEXI, lists.NumberPoints);
  const int first = std::max(0, input.CURRINDEXMINI);
  drawForward_ = 1 - drawForward_;
  const bool upwards = drawForward_ == 0;  // the direction alternates from rebuild to rebuild

  const int firstOutline = outlines_.FirstFrom(std::max(0, lists.TraceMin));
  const int lastOutline = outlines_.CountUpTo(lists.TraceMax) - 1;
  const bool outlines = penUp && input.view.SidesMode != kDots && firstOutline <= lastOutline;
  const ChunkLists::Emit emitOutlines = [&](int a, int b, bool) { EmitOutlines(lists, gl, a, b); };
  const ChunkLists::Emit emitPoints = [&](int a, int b, bool more) { points_.Emit(lists, gl, a, b, more); };
  if (outlines) outlineChunks_.Prepare(gl, firstOutline, lastOutline, true, emitOutlines);
  if (first <= last) pointChunks_.Prepare(gl, first, last, upwards, emitPoints);

  if (plotList_ != 0) gl.DeleteLists(plotList_, 1);
  plotList_ = gl.GenLists(1);
  ListScope list(gl, plotList_);
  gl.Color({0, 1, 1, 1});
  gl.Color(OptionColour(options.ColourOfPlotNominal, kPlotAlpha));
  gl.ShadeModel(GL_SMOOTH);
  if (penUp) {
    gl.LineWidth(static_cast<float>(Thickness(options.ThicknessLineAxis) * input.pixelRatio));
    if (outlines) {
      const bool faces = input.view.SidesMode >= kRectoSide;
      if (faces) {
        gl.CullFace(GL_BACK);
        gl.Enable(GL_CULL_FACE);
      }
      outlineChunks_.Draw(gl, firstOutline, lastOutline, true, emitOutlines);
      if (faces) gl.Disable(GL_CULL_FACE);
    }
    EmitPairs(lists, gl, lists.TraceMax);
    DrawScaleOnAxes(gl, input.view, lists, input.scale.RRMAXAXES, input.pixelRatio);
    gl.PointSize(static_cast<float>(Thickness(options.ThicknessLinePlot) * input.pixelRatio));
  }
  gl.LineWidth(static_cast<float>(Thickness(options.ThicknessLinePlot) * input.pixelRatio));
  if (first <= last) pointChunks_.Draw(gl, first, last, upwards, emitPoints);
  list.Close();
  plotListIndex_ = input.CURRINDEXI;
  ++rebuilds_;
}

}  // namespace orv
