#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"
#include "numerics/vectors.h"

// How geometry reaches the cells of one primitive: straight through the contiguous planes where the indices are known
// to lie inside the bounds, otherwise statement by statement through the checked access. Both run the same code on an
// element.
namespace orv {

inline constexpr double kFarDistance = 10000;  // start of quantity 8, above any real distance

// The cells (1 .. countI, 1 .. countJ) of a primitive.
struct CellGrid {
  int primitive = 0;
  int countI = 0;
  int countJ = 0;
};

// One cell as a generator computes it; corners[c - 1] is corner c.
struct CellShape {
  Vector3 centre;
  double area = 0;
  Vector3 normal;
  double distance = kFarDistance;
  std::array<Vector3, 4> corners;

  // The mean of the four corners.
  Vector3 MeanOfCorners() const;
  // Area of the two triangles at corners 2 and 4.
  double AreaOfCorners() const;
  // Corners of a parallelogram: centre -a -b, +a -b, +a +b, -a +b.
  void SetFlatCorners(const Vector3& a, const Vector3& b);
};

// Reads and writes whole cells of one primitive.
class CellWriter {
 public:
  CellWriter(Cells& cells, FailureBlock& block, int primitive);

  // What the arrays hold now; an element outside the bounds reads 0.
  CellShape Read(int i, int j) const;

  // Quantities 1 to 8 and corner elements 1 to 12. Each element outside the bounds is a failing statement of its own.
  void Write(int i, int j, const CellShape& shape);

  void SetQuantity(int i, int j, int quantity, double value);

 private:
  bool Inside(int i, int j) const { return i <= lastI_ && j <= lastJ_; }
  std::size_t At(int i, int j) const { return static_cast<std::size_t>(i) * rowLength_ + static_cast<std::size_t>(j); }

  Cells& cells_;
  FailureBlock& block_;
  int primitive_;
  int lastI_ = -1;  // the cells up to here lie inside both arrays
  int lastJ_ = -1;
  std::size_t rowLength_ = 0;
  std::array<double*, 9> quantity_{};
  std::array<double*, 13> corner_{};
};

// Runs op(i, j, a, b) on the elements `first` and `second` of every cell, i outer.
template <class Op>
void OnEachPair(FailureBlock& block, CellBlock& values, const CellGrid& grid, int first, int second, Op op) {
  const int k = grid.primitive;
  const bool planesInside =
      k <= values.primitives() && std::max(first, second) <= values.quantities() && grid.countJ <= values.cellsJ();
  const int insideI = planesInside ? std::min(grid.countI, values.cellsI()) : 0;
  if (insideI > 0) {
    double* a = values.plane(first, k).data();
    double* b = values.plane(second, k).data();
    for (int i = 1; i <= insideI; ++i) {
      const std::size_t row = static_cast<std::size_t>(i) * values.rowLength();
      for (int j = 1; j <= grid.countJ; ++j) {
        op(i, j, a[row + static_cast<std::size_t>(j)], b[row + static_cast<std::size_t>(j)]);
      }
    }
  }
  for (int i = insideI + 1; i <= grid.countI; ++i) {
    for (int j = 1; j <= grid.countJ; ++j) block([&] { op(i, j, values(k, i, j, first), values(k, i, j, second)); });
  }
}

// Runs op(i, j, a) on one element of every cell.
template <class Op>
void OnEachElement(FailureBlock& block, CellBlock& values, const CellGrid& grid, int element, Op op) {
  OnEachPair(block, values, grid, element, element, [&op](int i, int j, double& a, double&) { op(i, j, a); });
}

}  // namespace orv
