#pragma once

#include <cstddef>
#include <memory>

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

}  // namespace orv
