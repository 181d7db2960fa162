#pragma once

#include "plume/effect_context.h"
#include "plume/sputter_material.h"

namespace orv {

// Erosion of every cell of a primitive by the ions that reach it: adds the surface speed (m/s) to quantity 19, sets the
// yield (at/ion) in 59, the mean cosine exponent of the ejected atoms in 62 and the incidence used (deg) in 31. Cells
// in the shadow or outside the plume get 0 in 59 and 62. With `cleaningSlot` 1 .. 5 it is the deposit of the material
// `materials.first` that erodes, everywhere, and the speed goes to quantity 94 + cleaningSlot. Failures go through the
// common block of "aSpaceApplicationEffectSPUTTERINGonePrimitive", where a statement that fails leaves its variable as
// the cell before left it.
void aSpaceApplicationEffectSPUTTERINGonePrimitive(EffectContext& context, int p, SurfaceMaterials& materials,
                                                   int cleaningSlot = 0);

}  // namespace orv
