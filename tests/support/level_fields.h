#pragma once

#include <cmath>
#include <functional>

#include "numerics/level_lines.h"

namespace orv::testing {

// A plate of cells with a known field, its first axis descending as those of plates do.
inline LevelLineInput FieldOnPlate(const std::function<double(double, double)>& field, int n = 25, int m = 19) {
  LevelLineInput input;
  input.X.Size({Bounds{1, n}});
  input.Y.Size({Bounds{1, m}});
  input.Z.Size({Bounds{1, n}, Bounds{1, m}});
  for (int i = 1; i <= n; ++i) input.X(i) = 2 - 4.0 * (i - 1) / (n - 1);
  for (int j = 1; j <= m; ++j) input.Y(j) = -1.5 + 3.0 * (j - 1) / (m - 1);
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= m; ++j) input.Z(i, j) = field(input.X(i), input.Y(j));
  }
  input.Title = "Density (m-3)";
  input.LabelFormat = " #.# m-3";
  return input;
}

inline double PlaneField(double x, double y) {
  return 100 + 30 * x + 20 * y;
}
inline double ConeField(double x, double y) {
  return 40 * std::hypot(x, y);
}
inline double SaddleField(double x, double y) {
  return 5 * x * y;
}

}  // namespace orv::testing
