#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>

#include "numerics/array.h"

namespace orv {

// Gives a block of `bytes` bytes back to the operating system.
struct ReleasePages {
  std::size_t bytes = 0;
  void operator()(double* block) const;
};

// A block of doubles that are all 0 and cost memory only where they are written: fresh pages of the operating system.
class ZeroPages {
 public:
  ZeroPages() = default;

  // Takes `count` doubles. Throws std::bad_alloc when the address space does not hold them.
  explicit ZeroPages(std::size_t count);

  double* data() { return block_.get(); }
  const double* data() const { return block_.get(); }
  std::size_t size() const { return count_; }

 private:
  std::unique_ptr<double, ReleasePages> block_;
  std::size_t count_ = 0;
};

// A block of numbers whose indices run from a lower to an upper bound each, last index fastest, all 0 at first; memory
// is taken only where it is written. Access by () is checked: failure 9 outside the bounds.
template <class T, std::size_t Rank>
class PagedArray {
 public:
  // Throws std::bad_alloc when the address space does not hold the array.
  void Size(const std::array<Bounds, Rank>& bounds) {
    double total = 1;
    for (const Bounds& b : bounds) total *= static_cast<double>(b.count());
    if (total * sizeof(T) > static_cast<double>(std::numeric_limits<std::ptrdiff_t>::max()) / 16)
      throw std::bad_alloc();
    pages_ = ZeroPages();
    bounds_ = {};
    pages_ = ZeroPages((static_cast<std::size_t>(total) * sizeof(T) + sizeof(double) - 1) / sizeof(double));
    bounds_ = bounds;
  }

  const Bounds& bounds(std::size_t dimension) const { return bounds_[dimension]; }

  template <class... Index>
  T& operator()(Index... index) {
    return data()[ElementOffset(bounds_, index...)];
  }
  template <class... Index>
  const T& operator()(Index... index) const {
    return data()[ElementOffset(bounds_, index...)];
  }

 private:
  T* data() { return reinterpret_cast<T*>(pages_.data()); }
  const T* data() const { return reinterpret_cast<const T*>(pages_.data()); }

  ZeroPages pages_;
  std::array<Bounds, Rank> bounds_{};
};

}  // namespace orv
