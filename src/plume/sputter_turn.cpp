#include "plume/sputter_turn.h"

#include <algorithm>
#include <cmath>

#include "geometry/quantities.h"
#include "numerics/number_format.h"
#include "plume/rotation_step.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kFullTurn = 360 - 0.001;  // a last step that only repeats the first one is left out
constexpr std::array<int, 13> kStoredQuantities = {1, 2, 3, 4, 5, 6, 7, 9, 10, 15, 16, 20, 61};

}  // namespace

void SputterTurn::Run(int primitive, SurfaceMaterials& materials, int cleaningSlot, Redeposition* redeposition) {
  primitive_ = primitive;
  cleaningSlot_ = cleaningSlot;
  const char* const behind = ", which is higher than the limit = ";
  weighted_.countI = TruncatedCount(context_.cells.CountI(primitive), "X", " . ");
}

}  // namespace orv
