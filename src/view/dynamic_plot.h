#pragma once

#include "numerics/settings.h"
#include "view/camera.h"
#include "view/outline_pass.h"
#include "view/plot_chunks.h"
#include "view/point_pass.h"
#include "view/scene_scale.h"
#include "view/view_state.h"

namespace orv {

// The plot as one display list that is compiled anew only when something that it shows has changed; any other paint is
// one call of it. What depends on the plot but not on how far it has grown is kept in chunks.
class DynamicPlot {
 public:
  struct Input {
    const PointLists& lists;
    const ViewState& view;
    const SceneScale& scale;
    int CURRINDEXI = 0;     // last entry to draw
    int CURRINDEXMINI = 0;  // first entry to draw
    double pixelRatio = 1;  // device pixels of a unit of thickness
    Vec3 towardsCamera{0, 0, 1};
    double unitsPerPixel = 0;
  };

  // The lists hold another plot, or their entries were changed.
  void Renew() { ++generation_; }

  // Rebuilds the list when it is stale; true when it was.
  bool Prepare(GlApi& gl, const Input& input);
  // Draws the plot, after a rebuild when the list is stale.
  void Draw(GlApi& gl, const Input& input);

  // Gives the lists of OpenGL back.
  void Release(GlApi& gl);

  GLuint PlotList() const { return plotList_; }
  int PlotListIndex() const { return plotListIndex_; }
  int DrawForward() const { return drawForward_; }
  long Rebuilds() const { return rebuilds_; }
  const PointPass& Points() const { return points_; }

 private:
  // All that the colours and shapes depend on.
  struct Style {
    long generation = -1;
    double ColorStyle = 0;
    double ScaleMode = 0;
    int SidesMode = 0;
    bool valueColours = false;
    int ValueAxis = 0;
    bool vectorsShown = false;
    Options options;
    double pixelRatio = 1;
    Vec3 towardsCamera{};  // with wide lines only
    double unitsPerPixel = 0;
    friend bool operator==(const Style&, const Style&) = default;
  };
  struct Extent {
    int CURRINDEXI = 0;
    int CURRINDEXMINI = 0;
    int TraceMin = 0;
    int TraceMax = 0;
    friend bool operator==(const Extent&, const Extent&) = default;
  };

  Style StyleOf(GlApi& gl, const Input& input) const;
  void TakePlot(const Input& input);
  void TakeStyle(GlApi& gl, const Input& input);
  void Rebuild(GlApi& gl, const Input& input);
  void EmitOutlines(const PointLists& lists, GlApi& gl, int first, int last) const;
  void EmitPairs(const PointLists& lists, GlApi& gl, int last) const;

  long generation_ = 0;
  long takenGeneration_ = -1;
  Style style_;
  Extent extent_;
  GLuint plotList_ = 0;
  bool complete_ = false;
  int plotListIndex_ = -1;
  int drawForward_ = 0;
  long rebuilds_ = 0;

  OutlinePass outlines_;
  PointPass points_;
  WideLine wideOutline_;
  ChunkLists outlineChunks_{512};
  ChunkLists pointChunks_{2048};
};

// Line widths of an option: 0 stands for 0.1.
double Thickness(double option);

}  // namespace orv
