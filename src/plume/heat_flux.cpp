#include "plume/heat_flux.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "geometry/quantities.h"
#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "numerics/progress_pace.h"
#include "plume/heat_flux_cell.h"
#include "plume/rotation_step.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kMostSteps = 1e5;
constexpr double kEndOfTurn = 0.001;  // a last step that only repeats the first one is left out

class HeatFlux {
 public:
  explicit HeatFlux(EffectContext& context)
      : context_(context),
        data_(context.cells.CellData),
        block_(context.prompt(),
               {"Error fautea_SpaceApplicationEffectHEATFLUX ", "Error fautea_SpaceApplicationEffectHEATFLUX"}),
        progress_(context.dialogs()),
        pass_(context) {}

  void Execute() {
    const int last = context_.cells.numberPrimWithVolumic;
    for (int p = 1; p <= last; ++p) {
      if (p == context_.thruster.ThrusterPrimitive) continue;
      Begin("heat flux", static_cast<double>(p - 1) / last, 1.0 / last);
      block_([&] { Clear(p, false); });
      if (Turns(p)) {
        block_([&] { Turn(p); });
      } else {
        block_([&] { OnePrimitive(p); });
      }
    }
  }

 private:
  // A part of the work: what is done before it and how much it is of the whole.
  void Begin(const std::string& phase, double done, double part) {
    phase_ = phase;
    done_ = done;
    part_ = part;
    progress_(phase_, done_);
  }

  // Plots of the extremes keep the rotating primitive but do not turn it.
  bool Turns(int p) const {
    const double plot = context_.IndexPlot;
    return p == context_.geometry.rotation.RotatingPrimitive &&
           ((plot >= 22 && plot <= 28) || (plot >= 36 && plot <= 56));
  }

  // Zeroes the effect quantities of a primitive; between two steps the wider set.
  void Clear(int p, bool betweenSteps) {
    for (int q = 22; q <= 81; ++q) {
      const bool effect = q <= 28 || (q >= 36 && q <= 56) || q >= 64;
      const bool kept = (q >= 29 && q <= 35) || (q >= 57 && q <= 63);
      if (betweenSteps ? kept : !effect) continue;
      ClearQuantity(context_.cells, p, q);
    }
  }

  void Turn(int p) {
    auto& sums = context_.stores.RotationSums;
    const double from = context_.directives.RotationFrom;
    const double to = context_.directives.RotationTo;
    const double step = context_.directives.RotationStep;
    if (!(std::abs(step) >= kSmallestRotationStep)) {
      context_.prompt()("_The rotation step of the directive line is " + NumberText(step) + ": " +
                        context_.PrimitiveNames[static_cast<std::size_t>(p)] + " is not turned");
      OnePrimitive(p);
      return;
    }
    const double shift = context_.rotation.RotPercentTable(-1, 1);
    const auto goesOn = [&](double angle) { return step > 0 ? angle <= to - kEndOfTurn : angle >= to - kEndOfTurn; };
    int s = 0;
    for (double angle = from; goesOn(angle); angle += step) {
      ++s;
      Begin("heat flux, turn of " + context_.PrimitiveNames[static_cast<std::size_t>(p)], (angle - from) / (to - from),
            std::min(step / (to - from), (to - angle) / (to - from)));
      block_([&] { sums(s, 0) = angle; });
      Clear(p, true);
      CheckTableAngle(s, angle);
      RenewRotationStep(context_, angle + shift, StepScope::RotatingPrimitive);
      OnePrimitive(p);
      StoreStep(p, s);
    }
    block_([&] { sums(0, 0) = s; });
    Clear(p, true);
    RenewRotationStep(context_, from, StepScope::RotatingPrimitive);
    OnePrimitive(p);
  }

  void CheckTableAngle(int s, double angle) {
    const bool agrees = !block_.Condition([&] { return context_.rotation.RotPercentTable(s, 1) != angle; });
    if (agrees) return;
    context_.dialogs().Tell("Error Rot% in Heat Flux", "", Icon::Critical);
    context_.prompt()("Error Rot% in Heat Flux");
  }

  void StoreStep(int p, int s) {
    auto& sums = context_.stores.RotationSums;
    const int n = std::min(context_.cells.CountI(p), data_.cellsI());
    const int m = std::min(context_.cells.CountJ(p), data_.cellsJ());
    for (int q = 22; q <= 81; ++q) {
      if (q > 28 && q < 36) continue;
      double sum = 0;
      double largest = 0;
      for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= m; ++j) {
          const double value = data_(p, i, j, q);
          sum += value;
          if ((i == 1 && j == 1) || value > largest) largest = value;
        }
      }
      block_([&] { sums(s, q) = q == 22 ? largest : sum; });
    }
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        block_([&] {
          for (int axis = 1; axis <= 3; ++axis) {
            context_.stores.StepCellPositions(s, i, j, axis) = data_(p, i, j, axis);
          }
        });
      }
    }
    block_([&] { sums(s, 57) = context_.stores.HeatFluxMaxTable(p); });
  }

  void OnePrimitive(int p) {
    pass_.Begin(p);
    pass_.AllCells(p, [this](double share) { progress_(phase_, done_ + part_ * share); });
    int hotI = 0;
    int hotJ = 0;
    FindHottest(p, hotI, hotJ);
    pass_.block()([&] { context_.stores.HeatFluxMaxTable(p) = 0; });
    if (hotI == 0) return;
    SearchCorners(p, hotI, hotJ);
  }

  void FindHottest(int p, int& hotI, int& hotJ) const {
    const int n = std::min(context_.cells.CountI(p), data_.cellsI());
    const int m = std::min(context_.cells.CountJ(p), data_.cellsJ());
    double hottest = 0;
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        const double flux = data_(p, i, j, 22);
        if (flux <= hottest) continue;
        hottest = flux;
        hotI = i;
        hotJ = j;
      }
    }
  }

  // The hottest point may lie at a corner of the hottest cell: the cell is moved to each corner in turn, and back.
  void SearchCorners(int p, int i, int j) {
    const double centre[3] = {data_(p, i, j, 1), data_(p, i, j, 2), data_(p, i, j, 3)};
    double hottest = 0;
    for (int corner = 1; corner <= 5; ++corner) {
      for (int axis = 1; axis <= 3; ++axis) {
        data_(p, i, j, axis) =
            corner == 5 ? centre[axis - 1] : context_.cells.CellCorners(p, i, j, (corner - 1) * 3 + axis);
      }
      RenewCell(context_, p, i, j);
      ClearCell(p, i, j);
      pass_.SingleCell(p, i, j);
      hottest = std::max(hottest, data_(p, i, j, 22));
    }
    if (context_.AutomaticRotationActive == 0) pass_.ShowFlow(p, i, j);
    pass_.block()([&] { context_.stores.HeatFluxMaxTable(p) = hottest; });
  }

  void ClearCell(int p, int i, int j) {
    for (int q = 22; q <= 81; ++q) {
      if (q <= 28 || (q >= 36 && q <= 56) || q >= 64) data_(p, i, j, q) = 0;
    }
  }

  EffectContext& context_;
  CellBlock& data_;
  FailureBlock block_;
  ProgressPace progress_;
  HeatFluxPass pass_;
  std::string phase_;
  double done_ = 0;
  double part_ = 0;
};

}  // namespace

void SizeHeatFluxStores(EffectContext& context) {
  EffectStores& stores = context.stores;
  stores.HeatFluxList.clear();
  stores.HeatFluxMaxTable.Size({Bounds{0, kHeatFluxMaxPrimitives}});
  Bounds steps{0, 1};
  Bounds numbers{0, 1};
  if (context.AutomaticRotationActive != 0) {
    const Directives& d = context.directives;
    const double count = d.RotationStep != 0 ? (d.RotationTo - d.RotationFrom) / d.RotationStep : 0;
    steps = {0, ToIndex(std::clamp(count, 1.0, kMostSteps))};
    numbers = {0, kQuantities};
    const int p = context.AutomaticRotationActive;
    stores.StepCellPositions.Size(
        {steps, Bounds{0, context.cells.CountI(p)}, Bounds{0, context.cells.CountJ(p)}, Bounds{0, 3}});
  }
  stores.RotationSums.Size({steps, numbers});
}

void aSpaceApplicationEffectHEATFLUX(EffectContext& context) {
  HeatFlux(context).Execute();
}

double HeatFluxOf(const SurfaceFlow& flow, double thermalAccommodation) {
  double g = thermalAccommodation * std::cos(flow.incidence);
  if (flow.speedRatio2 > 2) g *= 1 - 2 / flow.speedRatio2;
  return (2 * flow.dynamicPressure * flow.speed * g) / 2;
}

ForceFactors ForceFactorsOf(const SurfaceFlow& flow, double sn, double st) {
  const double cosine = std::cos(flow.incidence);
  ForceFactors factors;
  factors.normal = (2 - sn) * (cosine * cosine) + (sn / 2) * std::sqrt(kPi15 / flow.speedRatio2) * cosine;
  factors.tangential = st * std::sin(flow.incidence) * cosine;
  return factors;
}

}  // namespace orv
