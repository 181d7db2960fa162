#pragma once

#include <iosfwd>

#include "analysis/run_context.h"

namespace orv {

// The tables that an engineer looks at first, aligned for a terminal: plume and heat, forces and moments with their
// worst cases, erosion, redeposition, the turn of a rotating primitive, the radio link. Tables without a value are left
// out.
void PrintEffectTables(RunContext& run, std::ostream& out);

}  // namespace orv
