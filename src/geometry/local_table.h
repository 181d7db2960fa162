#pragma once

#include <cstddef>
#include <vector>

namespace orv {

// Values of cells before placement, in single precision: (primitive k 0 .. 100, i 0 .. 64, j 0 .. 64, column 1 ..).
// Memory is taken only for the cells that a primitive has; all other elements read 0.
class LocalTable {
 public:
  static constexpr int kLastPrimitive = 100;
  static constexpr int kLastCell = 64;

  explicit LocalTable(int columns) : columns_(columns) {}

  void Clear() { pages_.clear(); }

  // Takes memory for the cells (1 .. countI, 1 .. countJ) of a primitive, cut at the bounds; values of an equally large
  // page stay.
  void Reserve(int primitive, int countI, int countJ);

  // An element outside the bounds or without memory is not stored, and nobody is told.
  void Set(int primitive, int i, int j, int column, double value);

  // Failure 9 outside the bounds.
  float operator()(int primitive, int i, int j, int column) const;

 private:
  struct Page {
    int countI = 0;
    int countJ = 0;
    std::vector<float> values;
  };
  std::size_t Offset(const Page& page, int i, int j, int column) const {
    const int cell = (i - 1) * page.countJ + (j - 1);
    return static_cast<std::size_t>(cell) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column - 1);
  }
  const Page* PageOf(int primitive, int i, int j, int column) const;

  int columns_;
  std::vector<Page> pages_;
};

}  // namespace orv
