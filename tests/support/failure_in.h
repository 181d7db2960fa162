#pragma once

#include <functional>

#include "numerics/failure.h"

namespace orv::testing {

// The number of the failure that an operation ends with; 0 when it ends well.
inline int FailureIn(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

}  // namespace orv::testing
