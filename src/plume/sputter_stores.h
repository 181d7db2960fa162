#pragma once

#include "plume/effect_context.h"

namespace orv {

// Blocks of five material slots in RedepositionStore and RedepositionExtrema.
inline constexpr int kCleaningSlots = 5;
inline constexpr int kNetSlots = 10;
inline constexpr int kStoreSlots = 15;

// Gives the stores of sputtering and redeposition their bounds for RotationTables::RotationSteps steps and clears them.
// A run does it once; the effect does it again at its start.
void SizeSputterStores(EffectContext& context);

// Minima start above any rate.
void OpenExtrema(EffectStores& stores);

// Minima of the slots `first` to `last` that no value met become 0.
void CloseExtrema(EffectStores& stores, int first, int last);

// Material slots that both the labels and the stores have room for.
int MaterialSlots(const EffectContext& context);

// Whether a material has landed on a primitive, and the note of it.
bool HasLanded(const EffectStores& stores, int primitive, const std::string& material);
void NoteLanding(EffectStores& stores, int primitive, const std::string& material);

// Net deposit of every material: redeposition less cleaning, never below 0, into quantity 99 + slot (m/s) and, within
// the limits of the stores, step by step into RedepositionStore and RedepositionExtrema. `turning`: the rotating
// primitive when it was taken through its turn, else 0; its steps have their own cleaning rates, those of any other
// primitive are its rate weighted by the share of time of the step. Step 0 is the whole turn.
void ComputeNetDeposit(EffectContext& context, FailureBlock& block, int turning);

}  // namespace orv
