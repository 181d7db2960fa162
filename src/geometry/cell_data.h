#pragma once

#include <cstddef>
#include <span>

#include "numerics/array.h"
#include "numerics/zero_pages.h"

namespace orv {

// Four indices, primitive k 0 .., i 0 .., j 0 .., quantity q 0 .., stored quantity by quantity: one quantity of one
// primitive is contiguous (j fastest), and a quantity that no one writes costs no memory. Elements start at 0.
class CellBlock {
 public:
  // Upper bounds of the four indices. Throws std::bad_alloc when the address space does not hold the block.
  void Size(int primitives, int cellsI, int cellsJ, int quantities);

  int primitives() const { return primitives_; }
  int cellsI() const { return cellsI_; }
  int cellsJ() const { return cellsJ_; }
  int quantities() const { return quantities_; }

  // Checked access: failure 9 outside the bounds; indices may be broken numbers and are rounded.
  template <class K, class I, class J, class Q>
  double& operator()(K k, I i, J j, Q q) {
    return block_.data()[Offset(ToIndex(k), ToIndex(i), ToIndex(j), ToIndex(q))];
  }
  template <class K, class I, class J, class Q>
  double operator()(K k, I i, J j, Q q) const {
    return block_.data()[Offset(ToIndex(k), ToIndex(i), ToIndex(j), ToIndex(q))];
  }

  // All primitives of one quantity, and one primitive of it; element (i, j) of a primitive stands at i * rowLength() +
  // j.
  std::span<double> plane(int q) { return {Begin(q, 0), planeSize() * Count(primitives_)}; }
  std::span<double> plane(int q, int k) { return {Begin(q, k), planeSize()}; }
  std::span<const double> plane(int q, int k) const {
    CheckPlane(q, k);
    return {block_.data() + PlaneOffset(q, k), planeSize()};
  }
  std::size_t rowLength() const { return Count(cellsJ_); }
  std::size_t planeSize() const { return Count(cellsI_) * Count(cellsJ_); }

 private:
  static std::size_t Count(int upper) { return static_cast<std::size_t>(upper) + 1; }
  std::size_t PlaneOffset(int q, int k) const {
    return (static_cast<std::size_t>(q) * Count(primitives_) + static_cast<std::size_t>(k)) * planeSize();
  }
  void CheckPlane(int q, int k) const {
    if (q < 0 || q > quantities_ || k < 0 || k > primitives_) Raise(FailureNumber::SubscriptOutOfRange);
  }
  double* Begin(int q, int k) {
    CheckPlane(q, k);
    return block_.data() + PlaneOffset(q, k);
  }
  std::size_t Offset(std::ptrdiff_t k, std::ptrdiff_t i, std::ptrdiff_t j, std::ptrdiff_t q) const {
    if (k < 0 || k > primitives_ || i < 0 || i > cellsI_ || j < 0 || j > cellsJ_ || q < 0 || q > quantities_) {
      Raise(FailureNumber::SubscriptOutOfRange);
    }
    return PlaneOffset(static_cast<int>(q), static_cast<int>(k)) + static_cast<std::size_t>(i) * rowLength() +
           static_cast<std::size_t>(j);
  }

  ZeroPages block_;
  int primitives_ = -1;
  int cellsI_ = -1;
  int cellsJ_ = -1;
  int quantities_ = -1;
};

// Strips of the primitives: (k, s, n), k 0 .., s 0 .., n 0 .. 120. (k, 0, 0) is the number of strips of primitive k;
// (k, s, 1..12) the four corners of strip s; (k, s, 13..20) their plume angles.
class BorderBlock {
 public:
  void Size(int primitives, int strips, int numbers) { block_.Size(primitives, strips, 0, numbers); }
  template <class K, class S, class N>
  double& operator()(K k, S s, N n) {
    return block_(k, s, 0, n);
  }
  template <class K, class S, class N>
  double operator()(K k, S s, N n) const {
    return block_(k, s, 0, n);
  }
  int primitives() const { return block_.primitives(); }
  int strips() const { return block_.cellsI(); }
  // The number n of all strips of primitive k, index s.
  std::span<const double> column(int n, int k) const { return block_.plane(n, k); }

 private:
  CellBlock block_;
};

// The arrays of a run that geometry fills and every effect reads.
struct Cells {
  CellBlock CellData;     // (primitive, i, j, quantity 0 .. 120)
  CellBlock CellCorners;  // (primitive, i, j, 1..12 corners, 13..20 their plume angles)
  BorderBlock BorderCorners;
  int MaxCellsI = 0;
  int MaxCellsJ = 0;
  double TotalCells = 0;
  int numberPrimWithVolumic = 0;

  // Cell counts of a primitive, whole numbers as loops use them.
  int CountI(int primitive) const { return LoopCount(CellData(primitive, 0, 0, 1)); }
  int CountJ(int primitive) const { return LoopCount(CellData(primitive, 0, 0, 2)); }
  static int LoopCount(double count) { return count >= 1 ? static_cast<int>(count < 1e9 ? count : 1e9) : 0; }
};

}  // namespace orv
