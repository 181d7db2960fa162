#include "numerics/zero_pages.h"

#include <limits>
#include <new>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace orv {

ZeroPages::ZeroPages(std::size_t count) : count_(count) {
  if (count == 0) return;
  if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double)) throw std::bad_alloc();
  const std::size_t bytes = count * sizeof(double);
#ifdef _WIN32
  void* block = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (block == nullptr) throw std::bad_alloc();
#else
  void* block =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);  // NOLINT
  if (block == MAP_FAILED) throw std::bad_alloc();  // NOLINT(performance-no-int-to-ptr)
#endif
  block_ = std::unique_ptr<double, ReleasePages>(static_cast<double*>(block), ReleasePages{bytes});
}

void ReleasePages::operator()(double* block) const {
#ifdef _WIN32
  VirtualFree(block, 0, MEM_RELEASE);
#else
  munmap(block, bytes);
#endif
}

}  // namespace orv
