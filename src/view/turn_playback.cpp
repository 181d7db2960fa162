#include "view/turn_playback.h"

#include <algorithm>

namespace orv {
namespace {

template <class Work>
void ForEachPrimitive(const AutoRotation& rotation, Work&& work) {
  work(rotation.main, std::size_t{0});
  for (std::size_t k = 0; k < rotation.extra.size(); ++k) work(rotation.extra[k], k + 1);
}

Point3 Moved(const RigidMotion& motion, const Point3& p) {
  Point3 result{};
  for (std::size_t r = 0; r < 3; ++r) {
    result[r] = static_cast<float>(motion.rotation[3 * r] * p[0] + motion.rotation[3 * r + 1] * p[1] +
                                   motion.rotation[3 * r + 2] * p[2] + motion.translation[r]);
  }
  return result;
}

// Entries of a stretch that lie inside the list.
std::size_t Inside(int start, int count) {
  return static_cast<std::size_t>(std::clamp(kListEntries - start, 0, std::max(0, count)));
}

}  // namespace

bool TurnPlayback::Advance(PointLists& lists, int& mode, double periodSeconds, double nowSeconds) {
  const AutoRotation& rotation = lists.rotation;
  const bool goesBack = mode == kReturnFromTurn;
  if (goesBack) mode = kMeanData;
  if (!rotation.present || rotation.frames < 1) return false;
  if (outlines_.empty()) KeepOutlines(lists);
  if (mode == kMeanData) {
    if (meanShown_ && !turned_) return false;
    const bool changed = started_;
    ShowMean(lists);
    return changed;
  }
  // Without values of the steps there is nothing to play but the turn itself.
  if (mode == kVariableData && !rotation.hasValues && !turned_) return false;
  const bool due = !started_ || nowSeconds - lastFrame_ > periodSeconds;
  const bool turnBack = mode == kVariableData && turned_;
  if (turnBack) {
    ShowPositions(lists, 0);
    turned_ = false;
  }
  if (!due) {
    if (mode == kTurnWithData && !turned_) {
      ShowPositions(lists, frame_);
      turned_ = true;
      return true;
    }
    return turnBack;
  }
  frame_ = (frame_ + 1) % (rotation.frames + 1);
  if (frame_ == 0) frame_ = 1;
  lastFrame_ = nowSeconds;
  started_ = true;
  meanShown_ = false;
  ShowValues(lists, frame_);
  if (mode == kTurnWithData) {
    ShowPositions(lists, frame_);
    turned_ = true;
  }
  return true;
}

void TurnPlayback::Restore(PointLists& lists) {
  if (lists.rotation.present && !outlines_.empty()) ShowMean(lists);
}

bool TurnPlayback::Due(const PointLists& lists, int mode, double periodSeconds, double nowSeconds) const {
  if (mode == kReturnFromTurn) return true;
  if (!lists.rotation.present || lists.rotation.frames < 1) return false;
  if (mode == kMeanData) return started_ || turned_;
  if (mode == kVariableData && !lists.rotation.hasValues && !turned_) return false;
  return !started_ || nowSeconds - lastFrame_ > periodSeconds || turned_ != (mode == kTurnWithData);
}

void TurnPlayback::ShowValues(PointLists& lists, int frame) const {
  const AutoRotation& rotation = lists.rotation;
  const auto f = static_cast<std::size_t>(frame);
  if (!rotation.hasValues || f >= rotation.values.size()) return;
  const float minimum = rotation.minimum[f];
  const float maximum = rotation.maximum[f];
  const std::vector<float>& values = rotation.values[f];
  const auto row = lists.PointList.row(0);
  const std::size_t count = std::min(values.size(), Inside(rotation.main.start, rotation.main.count));
  for (std::size_t c = 0; c < count; ++c) {
    const float value = minimum == maximum ? values[c] : (values[c] - minimum) / (maximum - minimum);
    row[static_cast<std::size_t>(rotation.main.start) + c] = value;
  }
  const double width = plain_.LegendMax - plain_.LegendMin;
  lists.legend.LegendMin = minimum;
  lists.legend.LegendMax = maximum;
  lists.legend.ScaleMin = plain_.LegendMin + minimum * width;
  lists.legend.ScaleMax = plain_.LegendMin + maximum * width;
}

// The mean stands on the scale of the whole plot, as the legend of the plot tells it.
void TurnPlayback::ShowMean(PointLists& lists) {
  const AutoRotation& rotation = lists.rotation;
  if (rotation.hasValues && !rotation.values.empty()) {
    const std::vector<float>& values = rotation.values.front();
    const std::size_t count = std::min(values.size(), Inside(rotation.main.start, rotation.main.count));
    std::copy_n(values.begin(), count, lists.PointList.row(0).begin() + rotation.main.start);
  }
  if (turned_) ShowPositions(lists, 0);
  lists.legend = plain_;
  turned_ = false;
  started_ = false;
  meanShown_ = true;
  frame_ = 0;
}

void TurnPlayback::KeepOutlines(const PointLists& lists) {
  plain_ = lists.legend;
  ForEachPrimitive(lists.rotation, [&](const TurningPrimitive& primitive, std::size_t) {
    std::vector<Point3> points(Inside(primitive.outlineStart, primitive.outlineEntries));
    for (std::size_t i = 0; i < points.size(); ++i) {
      const std::size_t entry = static_cast<std::size_t>(primitive.outlineStart) + i;
      for (int axis = 0; axis < 3; ++axis) {
        points[i][static_cast<std::size_t>(axis)] = lists.TraceList.row(axis)[entry];
      }
    }
    outlines_.push_back(std::move(points));
  });
}

void TurnPlayback::ShowPositions(PointLists& lists, int frame) {
  const auto f = static_cast<std::size_t>(frame);
  ForEachPrimitive(lists.rotation, [&](const TurningPrimitive& primitive, std::size_t k) {
    if (f < primitive.positions.size()) {
      const std::vector<Point3>& positions = primitive.positions[f];
      const std::size_t count = std::min(positions.size(), Inside(primitive.start, primitive.count));
      for (std::size_t c = 0; c < count; ++c) {
        const std::size_t entry = static_cast<std::size_t>(primitive.start) + c;
        for (int axis = 0; axis < 3; ++axis) {
          lists.PointList.row(axis + 1)[entry] = positions[c][static_cast<std::size_t>(axis)];
        }
        lists.PointList.row(4)[entry] = kPenUp;
      }
    }
    if (f < primitive.motions.size() && k < outlines_.size()) {
      const auto pen = lists.TraceList.row(3);
      for (std::size_t i = 0; i < outlines_[k].size(); ++i) {
        const std::size_t entry = static_cast<std::size_t>(primitive.outlineStart) + i;
        if (pen[entry] == kPenUp) continue;
        const Point3 moved = frame == 0 ? outlines_[k][i] : Moved(primitive.motions[f], outlines_[k][i]);
        for (int axis = 0; axis < 3; ++axis) {
          lists.TraceList.row(axis)[entry] = moved[static_cast<std::size_t>(axis)];
        }
      }
    }
  });
}

}  // namespace orv
