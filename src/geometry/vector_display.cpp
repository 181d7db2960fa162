#include "geometry/vector_display.h"

#include <algorithm>
#include <cmath>

#include "geometry/cell_walk.h"
#include "geometry/quantities.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kNoColumn = -1;
constexpr double kColourSteps = 32;
constexpr double kFrameMinimum = 1000;  // starts of the extremes of a frame
constexpr double kFrameMaximum = 0;

// Extremes of what is shown, and the least value above 0.
struct Extent {
  bool any = false;
  float min = 0;
  float max = 0;
  float LeastPositive = 0;

  void Add(float value) {
    min = any ? std::min(min, value) : value;
    max = any ? std::max(max, value) : value;
    if (value > 0 && (LeastPositive == 0 || value < LeastPositive)) LeastPositive = value;
    any = true;
  }
};

// Row 0 of PointList as far as it holds cells.
std::span<float> CellValueList(PointLists& lists) {
  const int count = lists.NumberPoints + 1;
  return lists.PointList.row(0).first(static_cast<std::size_t>(count));
}

class VectorDisplay {
 public:
  VectorDisplay(const VectorDisplayInput& input, const Cells& cells, PointLists& lists, ErrorPrompt& prompt)
      : input_(input),
        cells_(cells),
        rotation_(lists.rotation),
        values_(CellValueList(lists)),
        logarithmic_(input.LogScale >= 1),
        block_(prompt, FailureLabels::Of("a_SpaceVECTOROpenGL")) {
    const int last = lists.NumberPoints + 1;
    excludedBegin_ = static_cast<std::size_t>(std::clamp(input.firstExcluded, 0, last));
    const int room = last - static_cast<int>(excludedBegin_);
    excludedEnd_ = excludedBegin_ + static_cast<std::size_t>(std::clamp(input.excludedCount, 0, room));
  }

  void CopyColumn(int column) {
    const CellWalk walk = WalkCells(cells_, input_.NumberOfPrimitives, static_cast<int>(values_.size()));
    bool fits = true;
    for (const CellStretch& stretch : walk.stretches) {
      block_([&] { CopyStretch(stretch, column, fits); });
    }
    if (!fits) block_([] { Raise(FailureNumber::Overflow); });
  }

  void FindScale() {
    OnScaledEntries([&](float& value) { extent_.Add(value); });
    if (logarithmic_) OnFrames([&](std::vector<float>& frame) { AddToExtent(frame); });
    min_ = static_cast<double>(extent_.min);
    max_ = static_cast<double>(extent_.max);
    if (logarithmic_) TakeLogarithms();
    if (rotation_.hasValues) WidenByFrames();
  }

  void Normalise() {
    if (max_ != min_) {
      const auto normalise = [&](float& value) { value = Normalised(value); };
      std::for_each(values_.begin(), values_.end(), normalise);
      OnFrames([&](std::vector<float>& frame) { std::for_each(frame.begin(), frame.end(), normalise); });
      std::for_each(rotation_.minimum.begin(), rotation_.minimum.end(), normalise);
      std::for_each(rotation_.maximum.begin(), rotation_.maximum.end(), normalise);
    }
    std::fill(values_.begin() + static_cast<std::ptrdiff_t>(excludedBegin_),
              values_.begin() + static_cast<std::ptrdiff_t>(excludedEnd_), 1.0F);
  }

  double min() const { return min_; }
  double max() const { return max_; }
  bool ZeroInLog() const { return zeroInLog_; }

 private:
  void CopyStretch(const CellStretch& stretch, int column, bool& fits) {
    const double* const plane = cells_.CellData.plane(column, stretch.primitive).data();
    const std::size_t rowLength = cells_.CellData.rowLength();
    OnCells(stretch, [&](int i, int j, int n) {
      const double value = plane[static_cast<std::size_t>(i) * rowLength + static_cast<std::size_t>(j)];
      values_[static_cast<std::size_t>(n)] = SingleOrZero(value);
      fits = fits && FitsSingle(value);
    });
  }

  template <class Op>
  void OnScaledEntries(Op op) {
    for (std::size_t n = 0; n < excludedBegin_; ++n) op(values_[n]);
    for (std::size_t n = excludedEnd_; n < values_.size(); ++n) op(values_[n]);
  }
  template <class Op>
  void OnFrames(Op op) {
    if (rotation_.hasValues) std::for_each(rotation_.values.begin(), rotation_.values.end(), op);
  }
  void AddToExtent(const std::vector<float>& frame) {
    for (const float value : frame) extent_.Add(value);
  }

  // The bottom of the scale stands for what has no logarithm; a margin keeps it apart from the least positive value.
  void TakeLogarithms() {
    floor_ = extent_.LeastPositive > 0 ? Logarithm10(extent_.LeastPositive) : 0;
    zeroInLog_ = extent_.any && !(extent_.min > 0);
    min_ = static_cast<double>(Logarithmic(extent_.min));
    max_ = static_cast<double>(Logarithmic(extent_.max));
    if (zeroInLog_ && extent_.LeastPositive > 0 && input_.LogScale == 1) {
      floor_ = static_cast<float>(static_cast<double>(floor_) - (max_ - static_cast<double>(floor_)) / kColourSteps);
      min_ = static_cast<double>(Logarithmic(extent_.min));
      max_ = static_cast<double>(Logarithmic(extent_.max));
    }
    const auto take = [&](float& value) { value = Logarithmic(value); };
    std::for_each(values_.begin(), values_.end(), take);
    OnFrames([&](std::vector<float>& frame) { std::for_each(frame.begin(), frame.end(), take); });
  }

  static float Logarithm10(float value) { return static_cast<float>(std::log10(static_cast<double>(value))); }
  float Logarithmic(float value) const { return value > 0 ? Logarithm10(value) : floor_; }

  void WidenByFrames() {
    rotation_.minimum.clear();
    rotation_.maximum.clear();
    for (const std::vector<float>& frame : rotation_.values) {
      const auto [least, most] = std::minmax_element(frame.begin(), frame.end());
      double low = frame.empty() ? min_ : static_cast<double>(*least);
      double high = frame.empty() ? max_ : static_cast<double>(*most);
      if (!logarithmic_ && !frame.empty()) {
        low = std::min(low, kFrameMinimum);
        high = std::max(high, kFrameMaximum);
      }
      rotation_.minimum.push_back(static_cast<float>(low));
      rotation_.maximum.push_back(static_cast<float>(high));
      min_ = std::min(min_, low);
      max_ = std::max(max_, high);
    }
  }

  float Normalised(float value) const {
    return static_cast<float>((static_cast<double>(value) - min_) / (max_ - min_));
  }

  const VectorDisplayInput& input_;
  const Cells& cells_;
  AutoRotation& rotation_;
  std::span<float> values_;
  bool logarithmic_;
  FailureBlock block_;
  std::size_t excludedBegin_ = 0;
  std::size_t excludedEnd_ = 0;
  Extent extent_;
  double min_ = 0;
  double max_ = 0;
  float floor_ = 0;
  bool zeroInLog_ = false;
};

std::string LabelAt(const std::vector<std::string>& labels, int column) {
  if (column < 0 || static_cast<std::size_t>(column) >= labels.size()) return {};
  return labels[static_cast<std::size_t>(column)];
}

}  // namespace

void a_SpaceVECTOROpenGL(const VectorDisplayInput& input, const Cells& cells,
                         const std::vector<std::string>& ResultLabels, std::string& title, PointLists& lists,
                         ErrorPrompt& prompt) {
  FailureBlock block(prompt, FailureLabels::Of("a_SpaceVECTOROpenGL"));
  int column = kNoColumn;
  block([&] {
    const std::ptrdiff_t asked = ToIndex(input.column);
    if (asked < 0 || asked > cells.CellData.quantities()) Raise(FailureNumber::SubscriptOutOfRange);
    column = asked == 0 ? Number(Quantity::Density) : static_cast<int>(asked);
  });
  VectorDisplay display(input, cells, lists, prompt);
  if (column != kNoColumn) display.CopyColumn(column);
  const std::string label = LabelAt(ResultLabels, column);
  title += " M" + FormatNumber(input.runNumber, "#") + (input.LogScale >= 1 ? " Log " : "  ") + input.prefix + label;
  display.FindScale();
  display.Normalise();
  title += " Scale " + SignificantText(display.min(), 3) + " -> " + SignificantText(display.max(), 3);

  LegendRange& legend = lists.legend;
  legend.LegendMin = legend.ScaleMin = display.min();
  legend.LegendMax = legend.ScaleMax = display.max();
  legend.LogScale = input.LogScale;
  legend.HasNonPositive = display.ZeroInLog() ? 1 : 0;
  legend.unit = UnitOfLabel(label);
}

std::string UnitOfLabel(const std::string& label) {
  const std::size_t end = label.rfind(')');
  if (end == std::string::npos) return {};
  const std::size_t begin = label.rfind('(', end);
  if (begin == std::string::npos) return {};
  const std::string unit = Trim(std::string_view(label).substr(begin + 1, end - begin - 1));
  return unit == "-" ? "" : unit;
}

}  // namespace orv
