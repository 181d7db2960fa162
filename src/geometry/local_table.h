#pragma once

#include <cstddef>
#include <vector>

namespace orv {

// Values of cells before placement, in single precision: (primitive k, i, j, column 1 ..), from 0 each. Memory is taken
// only for the cells that a primitive has; all other elements read 0.
class LocalTable {
 public:
  explicit LocalTable(int columns) : columns_(columns) {}

  void Clear() { pages_.clear(); }

  // Takes memory for the cells (1 .. countI, 1 .. countJ) of a primitive; values of an equally large page stay.
  void Reserve(int primitive, int countI, int countJ);

  // An element without memory is not stored, and nobody is told.
  void Set(int primitive, int i, int j, int column, double value);

  // Failure 9 for a negative index and for a column that the table does not have.
  float operator()(int primitive, int i, int j, int column) const;

 private:
  struct Page {
    int countI = 0;
    int countJ = 0;
    std::vector<float> values;
  };
  std::size_t Offset(const Page& page, int i, int j, int column) const {
    const std::size_t cell =
        static_cast<std::size_t>(i - 1) * static_cast<std::size_t>(page.countJ) + static_cast<std::size_t>(j - 1);
    return cell * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column - 1);
  }
  const Page* PageOf(int primitive, int i, int j, int column) const;

  int columns_;
  std::vector<Page> pages_;
};

}  // namespace orv
