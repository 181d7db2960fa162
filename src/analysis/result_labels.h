#pragma once

#include <string>
#include <vector>

#include "geometry/quantities.h"
#include "numerics/error_prompt.h"

namespace orv {

inline constexpr int MaxRedepMaterial10 = 5;
inline constexpr int MaxLabel32 = 31;

// Fills ResultLabels (0 .. 120) with the fixed labels and those of the redeposition quantities 90 to 104, which carry
// the names of the materials. LabelMaterials: element 0 the number of names as text, names from 1. More than five names
// run on into the next block.
void FillResultLabels(const std::vector<std::string>& LabelMaterials, std::vector<std::string>& ResultLabels,
                      ErrorPrompt& prompt);

// The label of a quantity, empty for an index that has none.
std::string LabelOf(const std::vector<std::string>& ResultLabels, int quantity);

// Whether the plot shows a geometry quantity.
constexpr bool IsGeometryPlot(double plot) {
  return plot <= 10;
}
// Heat flux, force and moment plots, to which automatic rotation applies.
constexpr bool IsAutoRotationPlot(double plot) {
  return (plot >= 22 && plot <= 28) || (plot >= 36 && plot <= 56) || (plot >= 64 && plot <= 81);
}
// Sputtering and redeposition plots.
constexpr bool IsSputterRotationPlot(double plot) {
  return plot == 19 || plot >= 90;
}

}  // namespace orv
