#pragma once

#include "plume/effect_context.h"

namespace orv {

// Heat flux (quantity 22, W/m2), force (23 to 25, N) and moments (26 to 28 about the origin, 36 to 38 about
// MomentOrigin, N.m) of the ion flow on every cell that the plume reaches, by free-molecular exchange with the
// accommodation of the cell's material; the two worst cases of that exchange (39 to 47 and 48 to 56), their extremes
// per axis (64 to 75) and the extreme negative and positive moment terms (76 to 81). With a heat flux or force plot the
// rotating primitive is taken through its turn and RotationSums keeps each step. HeatFluxMaxTable gets the largest flux
// met at the centre and corners of a primitive's hottest cell.
void aSpaceApplicationEffectHEATFLUX(EffectContext& context);

// Bounds of the stores that this effect fills; cleared.
void SizeHeatFluxStores(EffectContext& context);

// The interaction of one flow of ions with one surface: what the cell pass adds up. Angles in radians, SI units.
struct SurfaceFlow {
  double incidence = 0;        // between the flow and the normal, 0 to pi / 2
  double dynamicPressure = 0;  // rho v^2 / 2
  double speed = 0;
  double speedRatio2 = 1;  // (v / thermal speed)^2, 1 below the thermal speed
};

// Heat flux per area for a thermal accommodation.
double HeatFluxOf(const SurfaceFlow& flow, double thermalAccommodation);

// Normal and tangential force per area and dynamic pressure for the momentum accommodations sn and st.
struct ForceFactors {
  double normal = 0;
  double tangential = 0;
};
ForceFactors ForceFactorsOf(const SurfaceFlow& flow, double sn, double st);

}  // namespace orv
