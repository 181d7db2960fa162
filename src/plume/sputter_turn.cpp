#include "plume/sputter_turn.h"

#include <algorithm>
#include <array>
#include <string>

#include "geometry/quantities.h"
#include "numerics/number_format.h"
#include "plume/rotation_step.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kEndOfTurn = 360 - 0.001;  // a last step that only repeats the first one is left out
constexpr double kMicrometresPerHour = 1000000.0 * 3600;
constexpr std::array<int, 13> kStepQuantities = {1, 2, 3, 4, 5, 6, 7, 9, 10, 15, 16, 20, 61};

struct Extremes {
  double least = 0;
  double most = 0;
};

Extremes ExtremesOf(const std::vector<double>& values) {
  if (values.empty()) return {};
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return {*least, *most};
}

}  // namespace

void SputterTurn::Run(int primitive, SurfaceMaterials& materials, int cleaningSlot, Redeposition* redeposition) {
  Begin(primitive, cleaningSlot);
  const double from = context_.directives.RotationFrom;
  const double stepAngle = context_.directives.RotationStep;
  const double shift = context_.rotation.RotPercentTable(-1, 1);
  const std::string phase = (Cleans() ? "cleaning, turn of " : "sputtering, turn of ") +
                            context_.PrimitiveNames[static_cast<std::size_t>(primitive)];
  int steps = 0;
  for (double angle = from; stepAngle >= kSmallestRotationStep && angle <= kEndOfTurn; angle += stepAngle) {
    ++steps;
    progress_(phase, (angle - from) / (kEndOfTurn - from));
    if (!Cleans()) block_([&] { context_.stores.RotationCellStore(steps, 0, 0, 0) = static_cast<float>(angle); });
    CheckTableAngle(steps, angle);
    if (Cleans()) {
      block_([&] { Restore(steps); });
    } else {
      RenewRotationStep(context_, angle + shift, StepScope::RotatingPrimitive, input_.SpectrumBand,
                        &output_.SpectrumAngle);
    }
    aSpaceApplicationEffectSPUTTERINGonePrimitive(context_, primitive, materials, cleaningSlot);
    WeighStep(steps);
    if (redeposition != nullptr) redeposition->FromPrimitive(primitive, steps, weighted_, materials);
  }
  CheckSteps(steps, from, stepAngle);
  StoreAverages(steps);
  RenewRotationStep(context_, 0, StepScope::AllWithoutPlume);
}

void SputterTurn::Begin(int primitive, int cleaningSlot) {
  primitive_ = primitive;
  cleaningSlot_ = cleaningSlot;
  const EffectRange range = RangeOf(context_.cells, primitive);
  weighted_.countI = TruncatedCount(range.countI, "X", ". ");
  weighted_.countJ = TruncatedCount(range.countJ, "Y", "");
  weighted_.speed.assign(static_cast<std::size_t>(weighted_.countI) * static_cast<std::size_t>(weighted_.countJ), 0);
  before_ = weighted_.speed;
  average_ = weighted_.speed;
  if (Cleans()) return;
  block_([&] {
    auto& store = context_.stores.RotationCellStore;
    store(0, 0, 0, 1) = static_cast<float>(weighted_.countI);
    store(0, 0, 0, 2) = static_cast<float>(weighted_.countJ);
  });
}

int SputterTurn::TruncatedCount(int count, const char* axis, const char* end) {
  if (count <= kRotatingCells) return count;
  context_.dialogs().Tell("The number of  elements  on " + std::string(axis) +
                              " of the rotating primitive is= " + std::to_string(count) +
                              ", which is higher than the limit = " + std::to_string(kRotatingCells) +
                              ". Results will be truncated................... See Maravo for update" + end,
                          " Update required", Icon::Warning);
  context_.prompt().AbortQuestion();
  return kRotatingCells;
}

void SputterTurn::CheckTableAngle(int step, double angle) {
  const bool differs = block_.Condition([&] { return context_.rotation.RotPercentTable(step, 1) != angle; });
  if (differs) context_.prompt()("Error Rot% in Sputtering");
}

void SputterTurn::CheckSteps(int steps, double from, double stepAngle) {
  const bool differ = block_.Condition([&] {
    return steps != Int(Divide(kEndOfTurn - from, stepAngle)) + 1 || steps != context_.rotation.RotationSteps;
  });
  if (!differ) return;
  context_.dialogs().Tell("Error nb rotation steps", "", Icon::Critical);
  context_.prompt().AbortQuestion();
}

// The step as it was when the primitive was eroded.
void SputterTurn::Restore(int step) {
  const auto& store = context_.stores.RotationCellStore;
  for (const int q : kStepQuantities) {
    for (int i = 1; i <= weighted_.countI; ++i) {
      for (int j = 1; j <= weighted_.countJ; ++j) {
        context_.cells.CellData(primitive_, i, j, q) = static_cast<double>(store(step, i, j, q));
      }
    }
  }
}

int SputterTurn::QuantityNumber() const {
  return Cleans() ? Number(Quantity::SputteringCleaning) + cleaningSlot_ - 1 : Number(Quantity::Sputtering);
}

// The quantity accumulates from step to step: what this step added, weighted by its share of the time.
void SputterTurn::WeighStep(int step) {
  block_([&] { weight_ = context_.rotation.RotPercentTable(step, 2); });
  const auto plane = context_.cells.CellData.plane(QuantityNumber(), primitive_);
  const EffectRange range = RangeOf(context_.cells, primitive_);
  std::size_t n = 0;
  for (int i = 1; i <= weighted_.countI; ++i) {
    for (int j = 1; j <= weighted_.countJ; ++j, ++n) {
      const double accumulated = plane[range.at(i, j)];
      weighted_.speed[n] = static_cast<double>(static_cast<float>((accumulated - before_[n]) * weight_));
      before_[n] = accumulated;
      average_[n] += weighted_.speed[n];
    }
  }
  if (Cleans()) {
    block_([&] { StoreCleaning(step); });
  } else {
    block_([&] { StoreErosion(step); });
    StorePositions(step);
  }
}

void SputterTurn::StoreErosion(int step) {
  auto& store = context_.stores.RotationCellStore;
  for (int i = 1; i <= weighted_.countI; ++i) {
    for (int j = 1; j <= weighted_.countJ; ++j) {
      store(step, i, j, 0) = static_cast<float>(weighted_.at(i, j));
      for (const int q : kStepQuantities) {
        store(step, i, j, q) = static_cast<float>(context_.cells.CellData(primitive_, i, j, q));
      }
    }
  }
  const Extremes extremes = ExtremesOf(weighted_.speed);
  context_.stores.SputterRotationList(step, 1) = extremes.least;
  context_.stores.SputterRotationList(step, 2) = extremes.most;
}

void SputterTurn::StoreCleaning(int step) {
  if (primitive_ > kStorePrimitives) return;
  for (int i = 1; i <= std::min(weighted_.countI, kStoreCells); ++i) {
    for (int j = 1; j <= std::min(weighted_.countJ, kStoreCells); ++j) {
      context_.stores.RedepositionStore(step, i, j, cleaningSlot_ + kCleaningSlots, primitive_) =
          static_cast<float>(weighted_.at(i, j));
    }
  }
}

// Where the cells of all primitives stand that turn together.
void SputterTurn::StorePositions(int step) {
  const GeometryState& geometry = context_.geometry;
  for (int entry = 1; entry <= geometry.RotatedCount(); ++entry) {
    const int p = geometry.AutoRotatedList[static_cast<std::size_t>(entry)];
    const EffectRange range = RangeOf(context_.cells, p);
    block_([&] {
      for (int i = 1; i <= std::min(range.countI, kRotatingCells); ++i) {
        for (int j = 1; j <= std::min(range.countJ, kRotatingCells); ++j) {
          for (int axis = 1; axis <= 3; ++axis) {
            context_.stores.AutoRotatedStore(step, i, j, axis, entry) =
                static_cast<float>(context_.cells.CellData(p, i, j, axis));
          }
        }
      }
    });
  }
}

// The quantity becomes the average over the turn; cells beyond the limit have none.
void SputterTurn::StoreAverages(int steps) {
  ClearQuantity(context_.cells, primitive_, QuantityNumber());
  const auto plane = context_.cells.CellData.plane(QuantityNumber(), primitive_);
  const EffectRange range = RangeOf(context_.cells, primitive_);
  std::size_t n = 0;
  for (int i = 1; i <= weighted_.countI; ++i) {
    for (int j = 1; j <= weighted_.countJ; ++j, ++n) plane[range.at(i, j)] = average_[n];
  }
  const Extremes extremes = ExtremesOf(average_);
  output_.smallestAverage = extremes.least;
  output_.largestAverage = extremes.most;
  output_.summary = "  (Average/Rotations  R " + NumberText(extremes.least) + " to " + NumberText(extremes.most) +
                    " i.e. " + NumberText(extremes.most * kMicrometresPerHour) + " µm/h ) ";
  weighted_.speed = average_;
  if (Cleans()) {
    block_([&] { StoreCleaning(0); });
    return;
  }
  block_([&] {
    auto& store = context_.stores.RotationCellStore;
    store(0, 0, 0, 3) = static_cast<float>(steps);
    for (int i = 1; i <= weighted_.countI; ++i) {
      for (int j = 1; j <= weighted_.countJ; ++j) store(0, i, j, 0) = static_cast<float>(weighted_.at(i, j));
    }
    context_.stores.SputterRotationList(0, 1) = extremes.least;
    context_.stores.SputterRotationList(0, 2) = extremes.most;
  });
}

}  // namespace orv
