#pragma once

#include <vector>

#include "plume/redeposition.h"
#include "plume/sputtering.h"

namespace orv {

// The turn of the rotating primitive, step by step.
class SputterTurn {
 public:
  SputterTurn(EffectContext& context, FailureBlock& block, ProgressPace& progress, const SputterInput& input,
              SputterOutput& output)
      : context_(context), block_(block), progress_(progress), input_(input), output_(output) {}

  // Erosion of the primitive at every step; `redeposition` spreads what each step erodes. With `cleaningSlot` the
  // erosion of the deposit of one material, from the stored quantities of each step.
  void Run(int primitive, SurfaceMaterials& materials, int cleaningSlot, Redeposition* redeposition);

 private:
  int TruncatedCount(int count, const char* text, const char* end);
  void CheckTableAngle(int step, double angle);
  void CheckSteps(int steps, double from, double stepAngle);
  void Restore(int step);
  void WeighStep(int step);
  void StoreErosion(int step);
  void StoreCleaning(int step);
  void StorePositions(int step);
  void StoreAverages(int steps);
  std::span<double> Speeds();

  EffectContext& context_;
  FailureBlock& block_;
  ProgressPace& progress_;
  const SputterInput& input_;
  SputterOutput& output_;
  // Of the turn under way.
  int primitive_ = 0;
  int cleaningSlot_ = 0;
  std::vector<double> before_;   // accumulated speed behind the last step, by cell
  std::vector<double> average_;  // sum of the weighted speeds
  ErosionSpeeds weighted_;       // of the step, in single precision
};

}  // namespace orv
