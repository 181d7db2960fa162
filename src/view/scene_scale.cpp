#include "view/scene_scale.h"

#include <algorithm>
#include <cmath>

namespace orv {
namespace {

bool Counts(const PointLists& lists, std::size_t i) {
  return lists.PenUpMode == 1 || lists.PointList.row(4)[i] != kPenUp;
}

std::size_t EntryCount(int last) {
  return static_cast<std::size_t>(last) + 1;
}

// Entries of TraceList in use, those of vectors that are hidden included.
std::size_t TraceEntries(const PointLists& lists) {
  const int last = lists.TraceCount + (lists.VectorsShown ? 0 : lists.VectorCount);
  return EntryCount(std::min(last, kListEntries - 1));
}

// x -> (x + offset) * gain on the rows `first` to first + 2 of a table, one axis a row.
void ScaleRows(ListTable& table, int first, std::size_t entries, const std::array<AxisRecord, 4>& axes) {
  for (int axis = 1; axis <= 3; ++axis) {
    const AxisRecord& record = axes[static_cast<std::size_t>(axis)];
    const std::span<float> row = table.row(first + axis - 1);
    for (std::size_t i = 0; i < entries; ++i) {
      row[i] = static_cast<float>((static_cast<double>(row[i]) + record.Offset) * record.Gain);
    }
  }
}

void ScaleTurn(TurningPrimitive& primitive, double factor) {
  for (auto& frame : primitive.positions) {
    for (Point3& point : frame) {
      for (float& x : point) x = static_cast<float>(x * factor);
    }
  }
  for (RigidMotion& motion : primitive.motions) {
    for (double& x : motion.translation) x *= factor;
  }
}

// Span, gain and offset of each axis for a plot that fills its axes.
void FitAxes(SceneScale& scale) {
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    AxisRecord& a = scale.AxisRange[axis];
    a.Span = a.Max - a.Min;
    a.Gain = a.Span == 0 ? scale.Scale80 : scale.Scale80 / a.Span;
    a.Offset = a.Span >= a.Min || -a.Span <= a.Max ? 0 : -a.Min;
  }
}

void ScaleFreely(PointLists& lists, SceneScale& scale) {
  ScaleRows(lists.PointList, 1, EntryCount(lists.NumberPoints), scale.AxisRange);
  if (lists.PenUpMode == 1) ScaleRows(lists.TraceList, 0, TraceEntries(lists), scale.AxisRange);
  scale.NormPass(lists);
  if (scale.RRMAXAXES == 0 || !std::isfinite(scale.RRMAXAXES)) scale.RRMAXAXES = scale.Scale80;
}

void ScaleAlike(PointLists& lists, SceneScale& scale, ErrorPrompt& prompt) {
  // A plot that was scaled before is in scene units already: the radius of the model says nothing about it.
  const bool keep = lists.KeepScale == 1 && scale.RememberedRadius > 0 && !lists.Scaled;
  const float radius = keep ? scale.RememberedRadius : scale.RRMAXAXES;
  const double factor = static_cast<double>(scale.Scale80) / radius;
  std::array<AxisRecord, 4> axes{};
  for (AxisRecord& axis : axes) axis.Gain = factor;
  ScaleRows(lists.PointList, 1, EntryCount(lists.NumberPoints), axes);
  if (lists.PenUpMode == 1) ScaleRows(lists.TraceList, 0, TraceEntries(lists), axes);
  ScaleTurn(lists.rotation.main, factor);
  for (TurningPrimitive& primitive : lists.rotation.extra) ScaleTurn(primitive, factor);
  lists.FactorScale *= factor;
  scale.RRMAXAXES = static_cast<float>(factor * radius);
  if (scale.RRMAXAXES > 0) {
    scale.RRMAXAXES = scale.Scale80;
  } else {
    scale.RRMAXAXES = scale.Scale80;
    prompt.dialogs().Tell("error Reset  RRMAXAXES = 0 Then RRMAXAXES = Scale80", "", Icon::Critical);
    prompt.AbortQuestion();
  }
}

}  // namespace

void SceneScale::NormPass(const PointLists& lists) {
  double most = 0;
  double least = 0;
  bool first = true;
  const auto x = lists.PointList.row(1);
  const auto y = lists.PointList.row(2);
  const auto z = lists.PointList.row(3);
  for (std::size_t i = 0; i < EntryCount(lists.NumberPoints); ++i) {
    if (!Counts(lists, i)) continue;
    const double squared =
        static_cast<double>(x[i]) * x[i] + static_cast<double>(y[i]) * y[i] + static_cast<double>(z[i]) * z[i];
    if (std::isnan(squared)) continue;
    most = first ? squared : std::max(most, squared);
    least = first ? squared : std::min(least, squared);
    first = false;
  }
  RRMAXAXES = static_cast<float>(std::sqrt(most));
  RRMINAXES = static_cast<float>(std::sqrt(least));
}

void SceneScale::AxisPass(const PointLists& lists) {
  for (int axis = 1; axis <= 3; ++axis) {
    AxisRecord& record = AxisRange[static_cast<std::size_t>(axis)];
    record = AxisRecord{};
    bool first = true;
    const auto row = lists.PointList.row(axis);
    for (std::size_t i = 0; i < EntryCount(lists.NumberPoints); ++i) {
      const double value = row[i];
      if (!Counts(lists, i) || std::isnan(value)) continue;
      record.Min = first ? value : std::min(record.Min, value);
      record.Max = first ? value : std::max(record.Max, value);
      first = false;
    }
  }
}

int FindEventTwoState(const PointLists& lists) {
  bool zero = false;
  bool one = false;
  for (std::size_t i = 0; i < EntryCount(lists.EventCount); ++i) {
    const float state = lists.EventList.row(1)[i];
    zero = zero || state == 0;
    one = one || state == 1;
  }
  return zero && one ? 0 : 1;
}

void NormaliseLists(PointLists& lists, SceneScale& scale, ErrorPrompt& prompt) {
  if (lists.PlotNormalised == 1) return;
  if (lists.EventCount != kNoEntry) lists.EventTwoState = FindEventTwoState(lists);
  scale.NormPass(lists);
  scale.AxisPass(lists);
  if (scale.RRMAXAXES == 0) scale.RRMAXAXES = scale.Scale80;
  if (scale.RRMINAXES == scale.RRMAXAXES) scale.RRMINAXES = 0;
  lists.PlotNormalised = 1;
  const float radius = scale.RRMAXAXES;
  FitAxes(scale);
  if (!lists.Scaled) lists.FreeScale = lists.FactorScale == 1;
  if (lists.FreeScale) {
    ScaleFreely(lists, scale);
  } else {
    ScaleAlike(lists, scale, prompt);
  }
  // Only plots of an analysis share a scale.
  if (lists.IndexPlot != 0 && !lists.Scaled && !(lists.KeepScale == 1 && scale.RememberedRadius > 0)) {
    scale.RememberedRadius = radius;
  }
  lists.Scaled = true;
  lists.TraceMax = lists.TraceCount;
  scale.InverseScale = 1 / scale.RRMAXAXES;
}

}  // namespace orv
