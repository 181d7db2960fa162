#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"
#include "support/scripted_dialogs.h"
#include "view/point_lists.h"

namespace orv::testing {

// Primitives of any size and type code whose corners and values the test sets itself.
class DisplayModel {
 public:
  struct Size {
    int n = 1;
    int m = 1;
    double typeCode = 1;
  };

  explicit DisplayModel(const std::vector<Size>& sizes) : prompt(dialogs), count(static_cast<int>(sizes.size())) {
    int largestI = 5;
    int largestJ = 5;
    for (const Size& size : sizes) {
      largestI = std::max(largestI, size.n);
      largestJ = std::max(largestJ, size.m);
    }
    cells.CellData.Size(count + 10, largestI, largestJ, 120);
    cells.CellCorners.Size(count + 10, largestI, largestJ, 120);
    cells.numberPrimWithVolumic = count;
    for (int k = 1; k <= count; ++k) {
      const Size& size = sizes[static_cast<std::size_t>(k - 1)];
      cells.CellData(k, 0, 0, 1) = size.n;
      cells.CellData(k, 0, 0, 2) = size.m;
      cells.CellData(k, 0, 0, 10) = size.typeCode;
    }
  }

  // The corner c of a cell at (100 k + 10 i + j, c, -c).
  void NumberCorners() {
    ForEachCell([&](int k, int i, int j) {
      for (int c = 1; c <= 4; ++c) {
        cells.CellCorners(k, i, j, 3 * c - 2) = 100 * k + 10 * i + j;
        cells.CellCorners(k, i, j, 3 * c - 1) = c;
        cells.CellCorners(k, i, j, 3 * c) = -c;
      }
    });
  }

  // The quantity of all cells, in the order of the lists; NumberPoints as their caller sets it.
  void SetValues(int quantity, const std::vector<double>& values) {
    std::size_t n = 0;
    ForEachCell([&](int k, int i, int j) { cells.CellData(k, i, j, quantity) = values.at(n++); });
    lists.NumberPoints = static_cast<int>(n) - 1;
  }

  template <class Op>
  void ForEachCell(Op op) {
    for (int k = 1; k <= count; ++k) {
      for (int i = 1; i <= cells.CountI(k); ++i) {
        for (int j = 1; j <= cells.CountJ(k); ++j) op(k, i, j);
      }
    }
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  int count;
  Cells cells;
  PointLists lists;
};

}  // namespace orv::testing
