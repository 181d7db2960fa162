#pragma once

#include <string>

#include "plume/effect_context.h"
#include "plume/sputter_yield.h"

namespace orv {

// What erosion needs of a material.
struct SputterMaterial {
  double density = 0;    // kg/m3
  double molarMass = 0;  // g/mol
  YieldRecords records;
  YieldTable yields;
};

// The one or two materials of a primitive; the second one belongs to the second face of a two-sided sheet.
struct SurfaceMaterials {
  std::string firstName;
  std::string secondName;  // empty: one material
  SputterMaterial first;
  SputterMaterial second;
  bool two() const { return !secondName.empty(); }
  const SputterMaterial& of(bool secondFace) const { return secondFace ? second : first; }
  SputterMaterial& of(bool secondFace) { return secondFace ? second : first; }
};

// Takes a material from MaterialTable by its name. Where the table has no such material, which is told, the values stay
// as they were.
void LoadSputterMaterial(EffectContext& context, const std::string& name, FailureBlock& block,
                         SputterMaterial& material);

// The materials that the row of a primitive names; the shells of a volume have the row of the last primitive.
void LoadSurfaceMaterials(EffectContext& context, int primitive, FailureBlock& block, SurfaceMaterials& materials);

}  // namespace orv
