#pragma once

#include "plume/effect_context.h"

namespace orv {

// A smaller step of the Rotation directive turns nothing: a typing fault must not ask for millions of steps.
inline constexpr double kSmallestRotationStep = 0.01;  // degrees

// What a rotation step renews behind the geometry of the rotating primitives.
enum class StepScope {
  RotatingPrimitive,  // angles, plume and rays of the rotating primitive alone
  AllWithoutPlume     // angles and rays of every primitive, no plume: the end of a turn
};

// Turns the rotating primitives to an angle (degrees) and renews what follows from it. `spectrumBand` -1: the full
// plume; the angle of the band goes to `spectrumAngle` when it is given.
void RenewRotationStep(EffectContext& context, double angleDeg, StepScope scope, int spectrumBand = -1,
                       double* spectrumAngle = nullptr);

// Angles and plume of a single cell, renewed after it was moved.
void RenewCell(EffectContext& context, int primitive, int i, int j);

}  // namespace orv
