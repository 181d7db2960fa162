#pragma once

#include <string>

#include "plume/effect_context.h"
#include "plume/sputter_stores.h"
#include "plume/sputtering_cell.h"

namespace orv {

struct SputterInput {
  int SpectrumBand = -1;  // -1: the full plume; else the angular band, from 1, that the rotating primitive gets
};

struct SputterOutput {
  // Of the rotating primitive's turn; without a turn they stay as they are.
  std::string summary;  // smallest and largest average rate, in words
  double smallestAverage = 0;
  double largestAverage = 0;  // m/s
  double SpectrumAngle = -1;  // degrees; -1 without a band
};

// Erosion of every cell by the plume (quantities 19, 31, 59, 62), with RedepositionOn where the eroded atoms settle
// (quantity 89 + material slot), and with CleaningOn how much of the deposit the plume erodes in turn (94 + slot) and
// what stays (99 + slot); m/s. The rotating primitive is taken through its turn in sputter and redeposition plots: each
// step is weighted by RotPercentTable and kept in the stores, the quantities are averages over the turn, and the
// primitive is left at the angle 0. Failures go through the common block of "aSpaceApplicationEffectSPUTTERING".
void aSpaceApplicationEffectSPUTTERING(EffectContext& context, const SputterInput& input, SputterOutput& output);

}  // namespace orv
