#pragma once

#include <span>
#include <vector>

#include "plume/redeposition.h"
#include "plume/sputtering.h"

namespace orv {

// The rotating primitive, taken through its turn step by step.
class SputterTurn {
 public:
  SputterTurn(EffectContext& context, FailureBlock& block, ProgressPace& progress, const SputterInput& input,
              SputterOutput& output)
      : context_(context), block_(block), progress_(progress), input_(input), output_(output) {}

  // Erodes the primitive at every step and keeps the steps in the stores; `redeposition`, when given, spreads what each
  // step erodes. With `cleaningSlot` it is the deposit of a material that erodes, from the stored quantities of the
  // steps. The primitive's quantity becomes the average over the turn, and it is left at the angle 0.
  void Run(int primitive, SurfaceMaterials& materials, int cleaningSlot, Redeposition* redeposition);

 private:
  bool Cleans() const { return cleaningSlot_ != 0; }
  int QuantityNumber() const;
  void Begin(int primitive, int cleaningSlot);
  int TruncatedCount(int count, const char* axis, const char* end);
  void CheckTableAngle(int step, double angle);
  void CheckSteps(int steps, double from, double stepAngle);
  void Restore(int step);
  void WeighStep(int step);
  void StoreErosion(int step);
  void StoreCleaning(int step);
  void StorePositions(int step);
  void StoreAverages(int steps);

  EffectContext& context_;
  FailureBlock& block_;
  ProgressPace& progress_;
  const SputterInput& input_;
  SputterOutput& output_;
  // Of the turn under way.
  int primitive_ = 0;
  int cleaningSlot_ = 0;
  double weight_ = 0;            // of the step
  ErosionSpeeds weighted_;       // of the step, in single precision
  std::vector<double> before_;   // speed accumulated up to the step before
  std::vector<double> average_;  // sum of the weighted speeds
};

}  // namespace orv
