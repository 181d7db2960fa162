#pragma once

#include <array>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <limits>
#include <vector>

#include "numerics/failure.h"

namespace orv {

// Index from a number that need not be whole: rounded, halves to the even neighbour. Failure 6 when it does not fit.
template <class Number>
inline std::ptrdiff_t ToIndex(Number value) {
  if constexpr (std::floating_point<Number>) {
    const double rounded = std::nearbyint(static_cast<double>(value));
    if (!(std::abs(rounded) < 2147483648.0)) Raise(FailureNumber::Overflow);
    return static_cast<std::ptrdiff_t>(rounded);
  } else {
    return static_cast<std::ptrdiff_t>(value);
  }
}

struct Bounds {
  std::ptrdiff_t lower = 0;
  std::ptrdiff_t upper = -1;
  std::size_t count() const {
    return upper < lower ? 0 : static_cast<std::size_t>(upper) - static_cast<std::size_t>(lower) + 1;
  }
};

// Place of an element in storage order, last index fastest. Failure 9 outside the bounds.
template <std::size_t Rank, class... Index>
std::size_t ElementOffset(const std::array<Bounds, Rank>& bounds, Index... index) {
  static_assert(sizeof...(Index) == Rank);
  const std::array<std::ptrdiff_t, Rank> position = {ToIndex(index)...};
  std::size_t offset = 0;
  for (std::size_t d = 0; d < Rank; ++d) {
    if (position[d] < bounds[d].lower || position[d] > bounds[d].upper) Raise(FailureNumber::SubscriptOutOfRange);
    offset = offset * bounds[d].count() + static_cast<std::size_t>(position[d] - bounds[d].lower);
  }
  return offset;
}

// An array whose indices run from a lower to an upper bound each, last index fastest, elements initialised to T{}.
// Access by () is checked in every build: failure 9 outside the bounds.
template <class T, std::size_t Rank>
class Array {
 public:
  Array() = default;
  explicit Array(std::array<Bounds, Rank> bounds) { Size(bounds); }

  // Gives the array its bounds and clears every element. Failure 6 when the count of elements cannot be addressed.
  void Size(std::array<Bounds, Rank> bounds) {
    std::size_t total = 1;
    for (const Bounds& b : bounds) {
      constexpr auto most = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());
      if (b.count() != 0 && total > most / sizeof(T) / b.count()) {
        Raise(FailureNumber::Overflow);
      }
      total *= b.count();
    }
    values_.assign(total, T{});
    bounds_ = bounds;
  }

  const Bounds& bounds(std::size_t dimension) const { return bounds_[dimension]; }

  template <class... Index>
  T& operator()(Index... index) {
    return values_[Offset(index...)];
  }
  template <class... Index>
  const T& operator()(Index... index) const {
    return values_[Offset(index...)];
  }

  // All elements in storage order, for kernels and for filling.
  std::vector<T>& values() { return values_; }
  const std::vector<T>& values() const { return values_; }

 private:
  template <class... Index>
  std::size_t Offset(Index... index) const {
    return ElementOffset(bounds_, index...);
  }

  std::array<Bounds, Rank> bounds_{};
  std::vector<T> values_;
};

}  // namespace orv
