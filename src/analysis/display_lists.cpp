#include "analysis/display_lists.h"

#include <algorithm>

#include "analysis/result_labels.h"
#include "analysis/run_block.h"
#include "analysis/turn_frames.h"
#include "geometry/cell_borders.h"
#include "geometry/cell_walk.h"
#include "geometry/vector_display.h"

namespace orv {
namespace {

// One filling; its members are the steps in their order.
class DisplayListFiller {
 public:
  explicit DisplayListFiller(RunContext& run)
      : run_(run), block_(run.prompt, run.record.ignoreFailures, run.record.PlotReportFile, run.record.TraceFile) {}

  void Fill() {
    SetViewOffset();
    block_([&] { CellPoints(); });
    block_([&] { FillTurnFrames(run_, walk_, ViewOffset_, lists_); });
    block_([&] { CellValues(); });
    block_([&] { AddTexts(); });
    block_([&] { ThrusterPoints(); });
    block_([&] { Outlines(); });
    block_([&] { ThrusterLines(); });
    block_([&] { HeatFluxVectors(); });
    block_([&] { HandOver(); });
  }

 private:
  void SetViewOffset() {
    const std::array<double, 4>& origin = run_.model.directives.MomentOrigin;
    if (origin[0] == 1) ViewOffset_ = Vector3(origin[1], origin[2], origin[3]);
  }

  void CellPoints() {
    walk_ = WalkCells(run_.cells, run_.cells.numberPrimWithVolumic, kListEntries);
    for (const CellStretch& stretch : walk_.stretches) {
      if (stretch.cells == 0) continue;
      for (int axis = 1; axis <= 3; ++axis) CopyCentres(stretch, axis);
      const auto pen = lists_.PointList.row(4).subspan(static_cast<std::size_t>(stretch.first));
      std::fill_n(pen.begin(), stretch.cells, kPenUp);
    }
    lists_.NumberPoints = walk_.cells - 1;
    if (!walk_.whole) Raise(FailureNumber::SubscriptOutOfRange);
  }

  void CopyCentres(const CellStretch& stretch, int axis) {
    const CellBlock& data = run_.cells.CellData;
    const double* const plane = data.plane(axis, stretch.primitive).data();
    const double offset = ViewOffset_(static_cast<std::size_t>(axis));
    float* const row = lists_.PointList.row(axis).data();
    OnCells(stretch, [&](int i, int j, int n) {
      row[n] =
          SingleOrZero(plane[static_cast<std::size_t>(i) * data.rowLength() + static_cast<std::size_t>(j)] - offset);
    });
  }

  void CellValues() {
    VectorDisplayInput input;
    input.column = run_.plot.IndexPlot;
    input.NumberOfPrimitives = run_.cells.numberPrimWithVolumic;
    for (const CellStretch& stretch : walk_.stretches) {
      if (stretch.primitive != run_.thruster.ThrusterPrimitive) continue;
      input.firstExcluded = stretch.first;
      input.excludedCount = stretch.cells;
    }
    input.LogScale = run_.plot.LogScale;
    input.runNumber = run_.record.RunNumber;
    a_SpaceVECTOROpenGL(input, run_.cells, run_.ResultLabels, run_.plot.PlotTitle, lists_, run_.prompt);
  }

  void AddTexts() {
    const PlotState& plot = run_.plot;
    const bool before = IsSputterRotationPlot(plot.PreviousIndexPlot) || IsSputterRotationPlot(plot.IndexPlotRequest);
    if (run_.rotation.RotatingPrimitive != 0 && IsSputterRotationPlot(plot.IndexPlot) && before) {
      run_.plot.PlotTitle += run_.record.SputterText;
    }
    if (plot.IndexPlot == 13 && run_.cells.numberPrimWithVolumic != run_.model.NumberOfPrimitives) {
      run_.plot.PlotTitle += run_.record.PlasmaText;
    }
  }

  // Twice the way from the origin to the thruster; the scene's size where the thruster stands at the origin.
  double AxisLength() const {
    const double length = 2 * vNorm(run_.thruster.frame.ThrusterPosition);
    return length > 0 ? length : CellRadius(run_.cells, ViewOffset_);
  }

  void ThrusterPoints() {
    const ThrusterFrame& frame = run_.thruster.frame;
    const double spacing = AxisLength() / kAxisPoints;
    const std::array<std::pair<const Vector3*, float>, 3> axes = {
        {{&frame.axiT, 1.0F}, {&frame.AxAzimuth, 0.5F}, {&frame.axDeclin, 0.0F}}};
    ListTable& points = lists_.PointList;
    for (int k = 1; k <= kAxisPoints; ++k) {
      for (const auto& [direction, value] : axes) {
        const int n = lists_.NumberPoints + 1;
        for (std::size_t axis = 1; axis <= 3; ++axis) {
          points(axis, n) =
              SingleOrZero(frame.ThrusterPosition(axis) + (*direction)(axis)*k * spacing - ViewOffset_(axis));
        }
        points(0, n) = value;
        points(4, n) = kPenUp;
        lists_.NumberPoints = n;
      }
    }
  }

  void Outlines() {
    CellBordersInput input;
    input.NumberOfPrimitives = run_.cells.numberPrimWithVolumic;
    input.RotatingPrimitive = run_.rotation.RotatingPrimitive;
    input.originShift = {1, ViewOffset_(1), ViewOffset_(2), ViewOffset_(3)};
    const CellBordersOutput borders = a_SpaceApplicationCellsBordersQater(run_.cells, input, lists_, run_.prompt);
    SetTurnOutlines(walk_, borders, lists_.rotation);
  }

  void ThrusterLines() {
    const ThrusterFrame& frame = run_.thruster.frame;
    const double length = AxisLength();
    for (const Vector3* const direction : {&frame.axiT, &frame.AxAzimuth, &frame.axDeclin}) {
      block_([&] { AddTraceLine(lists_, lineEntries_, length, frame.ThrusterPosition, *direction, ViewOffset_); });
    }
  }

  // They stand behind TraceCount until they are shown.
  void HeatFluxVectors() {
    const int first = lists_.OutlineCount + lineEntries_;
    for (const HeatFluxPoint& point : run_.stores.HeatFluxList) {
      const int n = first + lists_.VectorCount;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const double x = static_cast<double>(point[axis]) - ViewOffset_(axis + 1);
        lists_.TraceList(axis, n) = SingleOrZero(x);
      }
      lists_.TraceList(3, n) = point[3];
      ++lists_.VectorCount;
    }
  }

  void HandOver() {
    lists_.TraceMin = 0;
    lists_.TraceMax = lists_.TraceCount;
    lists_.PenUpMode = 1;
    lists_.FactorScale = kAnalysisScale;
    lists_.IndexPlot = run_.plot.IndexPlot;
    lists_.Title = run_.plot.PlotTitle;
    lists_.FindPlotValues();
    lists_.KeepScale = run_.plot.IndexPlotRequest != 0 ? 1 : 0;
    lists_.FirstDraw = 0;
    lists_.PlotNormalised = 0;
    lists_.PlotLoaded = 0;
    run_.lists = std::move(lists_);
  }

  RunContext& run_;
  RunBlock block_;
  PointLists lists_;
  CellWalk walk_;
  Vector3 ViewOffset_;
  int lineEntries_ = 0;
};

}  // namespace

void FillDisplayLists(RunContext& run) {
  DisplayListFiller(run).Fill();
}

void AddTraceLine(PointLists& lists, int& count, double length, const Vector3& origin, const Vector3& direction,
                  const Vector3& offset) {
  if (count >= kMostLineEntries) return;
  const int first = lists.OutlineCount + count;
  ListTable& list = lists.TraceList;
  list(3, first + 2) = kPenUp;
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    const double begin = origin(axis) - offset(axis);
    list(axis - 1, first) = SingleOrZero(begin);
    list(axis - 1, first + 1) = SingleOrZero(begin + direction(axis) * length);
  }
  list(3, first) = 0;
  list(3, first + 1) = 0;
  count += 2;
  lists.TraceCount = lists.OutlineCount + count - 1;
}

}  // namespace orv
